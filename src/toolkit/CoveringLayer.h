#pragma once

#include <QWidget>

namespace ambrel {

/// Lies over all of its parent, keeps clicks and the wheel from what is beneath, and lets Tab move only within the
/// layers of that parent.
class CoveringLayer : public QWidget
{
    Q_OBJECT

public:
    explicit CoveringLayer(QWidget *parent);

    /// Puts the focus where this layer's keys are handled, with Qt::PopupFocusReason, because it will be given back.
    virtual void takeFocus() = 0;

protected:
    /// Where a press is left to the window, which is dragged by it; nowhere by default. Nothing beneath gets it.
    virtual bool isBackgroundAt(QPoint) const { return false; }

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QList<QWidget *> tabStops();
};

} // namespace ambrel
