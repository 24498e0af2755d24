#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>

class QWidget;

namespace ambrel {

/// Keeps the keys of a window from something that has just appeared in it, until it has been there for a while, in the
/// active window, without any key going down: a key that was meant for something else must not dismiss it unseen. What
/// is typed meanwhile goes on into the text field that has the focus; every other key does nothing. Main thread only.
class KeyPause : public QObject
{
    Q_OBJECT

public:
    /// `window` must outlive this. `quiet` is how long no key must go down.
    KeyPause(QWidget &window, std::chrono::milliseconds quiet);

    /// Begins to wait, from the start if it waits already.
    void begin();
    /// Waits no longer.
    void end();
    bool isOn() const { return m_isOn; }

Q_SIGNALS:
    /// It has been quiet for long enough, and keys go where they usually go again.
    void over();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &m_window;
    QTimer m_quiet;
    bool m_isOn = false;
};

/// Whether somebody who types writes into `widget`. Null is nothing to write into.
bool takesText(const QWidget *widget);

} // namespace ambrel
