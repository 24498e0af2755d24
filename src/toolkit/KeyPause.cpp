#include "toolkit/KeyPause.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace ambrel {

KeyPause::KeyPause(QWidget &window, std::chrono::milliseconds quiet) : m_window(window)
{
    m_quiet.setSingleShot(true);
    m_quiet.setTimerType(Qt::PreciseTimer);
    m_quiet.setInterval(quiet);
    connect(&m_quiet, &QTimer::timeout, this, [this] {
        end();
        Q_EMIT over();
    });
}

void KeyPause::begin()
{
    m_isOn = true;
    QCoreApplication::instance()->installEventFilter(this);
    if (m_window.isActiveWindow())
        m_quiet.start();
}

void KeyPause::end()
{
    m_isOn = false;
    m_quiet.stop();
    QCoreApplication::instance()->removeEventFilter(this);
}

bool KeyPause::eventFilter(QObject *watched, QEvent *event)
{
    const auto *const widget = qobject_cast<QWidget *>(watched);
    if (!widget || widget->window() != &m_window)
        return false;
    switch (event->type()) {
    case QEvent::WindowActivate:
        m_quiet.start();
        return false;
    case QEvent::WindowDeactivate:
        m_quiet.stop();
        return false;
    case QEvent::KeyPress:
        m_quiet.start();
        return !takesText(widget);
    case QEvent::InputMethod:
        m_quiet.start();
        return false;
    default:
        return false;
    }
}

bool takesText(const QWidget *widget)
{
    return widget && widget->testAttribute(Qt::WA_InputMethodEnabled);
}

} // namespace ambrel
