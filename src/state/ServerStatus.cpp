#include "state/AmbrelAppState.h"
#include "state/ErrorDescription.h"

namespace ambrel {

namespace {

QString serverLine(const HealthResponse &health)
{
    const QString name = health.name.value_or(QStringLiteral("Ambrel"));
    if (!health.ok)
        return name + QStringLiteral(" responded, but is not healthy.");
    const QString version = health.version ? QStringLiteral(" v") + *health.version : QString();
    return name + version + QStringLiteral(" is online.");
}

QString betaLine(const AppVersionResponse &version)
{
    return QStringLiteral("Android beta ") + version.versionName +
           (version.apkAvailable ? QStringLiteral(" is available.")
                                 : QStringLiteral(" is advertised, but no APK is uploaded."));
}

} // namespace

QCoro::Task<> AmbrelAppState::checkServerStatus()
{
    const auto self = shared_from_this();
    saveSettings();
    isBusy = true;

    const auto client = api;
    try {
        const auto health = co_await client->call(endpoints::health);
        const auto version = co_await client->call(endpoints::appVersion);
        serverStatusText = serverLine(health);
        betaStatusText = betaLine(version);
    } catch (...) {
        serverStatusText = currentErrorDescription();
        betaStatusText = QStringLiteral("Android beta status unavailable.");
    }
    isBusy = false;
}

} // namespace ambrel
