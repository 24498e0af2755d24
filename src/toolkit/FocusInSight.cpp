#include "toolkit/FocusInSight.h"

#include "toolkit/LazyColumn.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

namespace ambrel {

void scrollIntoSight(QWidget &widget)
{
    for (QWidget *around = widget.parentWidget(); around; around = around->parentWidget()) {
        auto *const area = qobject_cast<QScrollArea *>(around);
        if (!area)
            continue;
        area->ensureWidgetVisible(&widget);
        if (widget.height() > area->viewport()->height())
            area->verticalScrollBar()->setValue(widget.mapTo(area->widget(), QPoint()).y());
    }
}

namespace {

bool isInSight(const QWidget &widget)
{
    QPoint centre = widget.rect().center();
    for (const QWidget *at = &widget; !at->isWindow(); at = at->parentWidget()) {
        centre = at->mapToParent(centre);
        if (!at->parentWidget()->rect().contains(centre))
            return false;
    }
    return true;
}

/// When the focus comes to it, a lazy column decides by itself which of its rows is to be seen.
void bringIntoSight(QWidget &widget)
{
    for (QWidget *around = widget.parentWidget(); around; around = around->parentWidget()) {
        if (auto *const column = qobject_cast<LazyColumn *>(around))
            column->reveal(widget);
    }
    scrollIntoSight(widget);
}

bool comesToStay(const QFocusEvent &event)
{
    const Qt::FocusReason reason = event.reason();
    return reason != Qt::MouseFocusReason && reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
           reason != Qt::MenuBarFocusReason;
}

bool presses(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Space || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// Whether the key is kept from `widget`, which has the focus.
bool handleKey(QWidget &widget, const QKeyEvent &event)
{
    const bool takesText = widget.testAttribute(Qt::WA_InputMethodEnabled);
    if (isInSight(widget) || !(takesText ? !event.text().isEmpty() : presses(event)))
        return false;
    bringIntoSight(widget);
    return !takesText;
}

} // namespace

void FocusInSight::install()
{
    QCoreApplication &application = *QCoreApplication::instance();
    if (!application.findChild<FocusInSight *>(QString(), Qt::FindDirectChildrenOnly))
        application.installEventFilter(new FocusInSight(&application));
}

bool FocusInSight::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && watched->isWidgetType()) {
        if (comesToStay(*static_cast<QFocusEvent *>(event)))
            scrollIntoSight(*static_cast<QWidget *>(watched));
    } else if (event->type() == QEvent::KeyPress && watched == QApplication::focusWidget()) {
        return handleKey(*static_cast<QWidget *>(watched), *static_cast<QKeyEvent *>(event));
    } else if (event->type() == QEvent::Resize && qobject_cast<QScrollArea *>(watched)) {
        // Once its content has followed.
        QTimer::singleShot(0, watched, [area = static_cast<QScrollArea *>(watched)] {
            if (QWidget *const focused = area->window()->focusWidget(); focused && area->isAncestorOf(focused))
                bringIntoSight(*focused);
        });
    }
    return false;
}

} // namespace ambrel
