#pragma once

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace ambrel {

/// Sends what a key sends while it is held down, once. True if somebody took it.
inline bool repeatKey(QWidget &widget, Qt::Key key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

} // namespace ambrel
