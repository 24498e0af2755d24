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

    /// Puts the focus where this layer's keys are handled; for Qt::PopupFocusReason, because it is given back.
    virtual void takeFocus() = 0;

protected:
    /// Where a press is left to the window, which moves by it; nowhere at first. What is beneath gets no such press.
    virtual bool isBackgroundAt(QPoint) const { return false; }

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QList<QWidget *> tabStops();
};

} // namespace ambrel
