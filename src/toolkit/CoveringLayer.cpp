#include "toolkit/CoveringLayer.h"

#include <QMouseEvent>

namespace ambrel {

namespace {

bool takesTab(const QWidget &widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) && widget.isEnabled() && widget.isVisible();
}

} // namespace

CoveringLayer::CoveringLayer(QWidget *parent) : QWidget(parent)
{
    setGeometry(parent->rect());
    parent->installEventFilter(this);
}

bool CoveringLayer::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        QWidget::event(event);
        event->setAccepted(!isBackgroundAt(static_cast<QMouseEvent *>(event)->position().toPoint()));
        return true;
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
        QWidget::event(event);
        event->accept();
        return true;
    default:
        return QWidget::event(event);
    }
}

bool CoveringLayer::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

bool CoveringLayer::focusNextPrevChild(bool next)
{
    QList<QWidget *> stops;
    for (auto *const layer : parentWidget()->findChildren<CoveringLayer *>(Qt::FindDirectChildrenOnly))
        stops += layer->tabStops();
    if (stops.isEmpty())
        return true;
    const auto current = stops.indexOf(window()->focusWidget());
    const auto step = next ? 1 : stops.size() - 1;
    stops[(current + step + stops.size()) % stops.size()]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

QList<QWidget *> CoveringLayer::tabStops()
{
    QList<QWidget *> stops;
    if (takesTab(*this))
        stops << this;
    for (auto *const child : findChildren<QWidget *>()) {
        if (takesTab(*child))
            stops << child;
    }
    return stops;
}

} // namespace ambrel
