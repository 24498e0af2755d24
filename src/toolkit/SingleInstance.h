#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace ambrel {

/// Lets a program run once: whoever starts it again sees the window that is there. Without a session bus every start
/// is the first. Main thread.
class SingleInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Claims `name`, which must have the form of a bus name. Where another process has it, tells that one instead, and
    /// waits a few seconds at most.
    explicit SingleInstance(QString name);
    ~SingleInstance() override;

    bool isFirst() const { return m_isFirst; }

public Q_SLOTS:
    /// Called over the bus when the program is started again.
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData); // NOLINT: the bus's own name for it

Q_SIGNALS:
    /// The window is to come to the front.
    void startedAgain();

private:
    void wakeFirst() const;

    const QString m_name;
    bool m_isFirst = true;
};

} // namespace ambrel
