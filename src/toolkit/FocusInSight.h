#pragma once

#include <QObject>

class QWidget;

namespace ambrel {

/// Scrolls every area around `widget` until it is in sight, or its upper end if it is higher than the area. Main
/// thread.
void scrollIntoSight(QWidget &widget);

/// Scrolls what has the focus into sight, in every scroll area of the application: when the focus comes to it other
/// than by the mouse or back from a popup, when an area changes its size, and when somebody types at what has been
/// scrolled away. A key that would press an unseen control only shows it. Owned by the application. Main thread only.
class FocusInSight : public QObject
{
    Q_OBJECT

public:
    /// Starts it; does nothing the second time.
    static void install();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using QObject::QObject;
};

} // namespace ambrel
