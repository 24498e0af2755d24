#include "toolkit/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <utility>

namespace ambrel {

namespace {

constexpr QLatin1String objectPath("/instance");
constexpr int maxWait = 3000; ///< milliseconds
constexpr const char *tokenVariable = "XDG_ACTIVATION_TOKEN";

QString tokenKey()
{
    return QStringLiteral("activation-token");
}

} // namespace

SingleInstance::SingleInstance(QString name) : m_name(std::move(name))
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots); // before anybody can find it
    bus.interface()->setTimeout(maxWait);
    m_isFirst = bus.registerService(m_name);
    if (!m_isFirst)
        wakeFirst();
}

SingleInstance::~SingleInstance()
{
    auto bus = QDBusConnection::sessionBus();
    if (m_isFirst && bus.isConnected())
        bus.unregisterService(m_name);
}

/// Hands on the permission to come to the front, which the desktop gave to this process.
void SingleInstance::wakeFirst() const
{
    auto call = QDBusMessage::createMethodCall(m_name, objectPath, QStringLiteral("org.freedesktop.Application"),
                                               QStringLiteral("Activate"));
    call << QVariantMap{{tokenKey(), qEnvironmentVariable(tokenVariable)}};
    QDBusConnection::sessionBus().call(call, QDBus::Block, maxWait);
}

void SingleInstance::Activate(const QVariantMap &platformData)
{
    const QString token = platformData.value(tokenKey()).toString();
    if (!token.isEmpty())
        qputenv(tokenVariable, token.toUtf8()); // where the toolkit looks for it
    Q_EMIT startedAgain();
}

} // namespace ambrel
