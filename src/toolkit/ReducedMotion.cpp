#include "toolkit/ReducedMotion.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <algorithm>
#include <array>

namespace ambrel {

namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String path("/org/freedesktop/portal/desktop");
constexpr QLatin1String settingsInterface("org.freedesktop.portal.Settings");

/// One desktop's way of saying that animations are unwanted.
struct MotionSetting
{
    const char *group;
    const char *key;
    bool (*asksForCalm)(const QVariant &value);
};

constexpr std::array settings{
    MotionSetting{"org.freedesktop.appearance", "reduced-motion", [](const QVariant &v) { return v.toUInt() == 1; }},
    MotionSetting{"org.gnome.desktop.interface", "enable-animations", [](const QVariant &v) { return !v.toBool(); }},
    MotionSetting{"org.kde.kdeglobals.KDE", "AnimationDurationFactor",
                  [](const QVariant &v) { return !v.toString().isEmpty() && v.toDouble() == 0.0; }},
};

/// What the portal answered so far, one flag per setting.
class MotionWatch : public QObject
{
    Q_OBJECT

public:
    explicit MotionWatch(QObject *parent) : QObject(parent)
    {
        auto bus = QDBusConnection::sessionBus();
        bus.connect(service, path, settingsInterface, QStringLiteral("SettingChanged"), this,
                    SLOT(noteChangeIn(QDBusMessage)));
        for (const MotionSetting &setting : settings)
            ask(setting);
    }

    bool isReduced() const
    {
        return std::any_of(m_asksForCalm.begin(), m_asksForCalm.end(), [](bool asks) { return asks; });
    }

private Q_SLOTS:
    void noteChangeIn(const QDBusMessage &signal)
    {
        const QVariantList change = signal.arguments();
        if (change.size() == 3)
            note(change[0].toString(), change[1].toString(), change[2]);
    }

private:
    void note(const QString &group, const QString &key, const QVariant &value)
    {
        for (std::size_t i = 0; i < settings.size(); ++i) {
            if (group == QLatin1String(settings[i].group) && key == QLatin1String(settings[i].key))
                m_asksForCalm[i] = settings[i].asksForCalm(unwrapped(value));
        }
    }

    static QVariant unwrapped(QVariant value)
    {
        while (value.metaType() == QMetaType::fromType<QDBusVariant>())
            value = value.value<QDBusVariant>().variant();
        return value;
    }

    void ask(const MotionSetting &setting)
    {
        const QString group = QLatin1String(setting.group);
        const QString key = QLatin1String(setting.key);
        auto message = QDBusMessage::createMethodCall(service, path, settingsInterface, QStringLiteral("Read"));
        message << group << key;
        auto *const answer =
            new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this); // deletes itself below
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, group, key] {
            const QDBusPendingReply<QDBusVariant> reply = *answer;
            if (!reply.isError())
                note(group, key, reply.value().variant());
            answer->deleteLater();
        });
    }

    std::array<bool, settings.size()> m_asksForCalm{};
};

MotionWatch *watch()
{
    return QCoreApplication::instance()->findChild<MotionWatch *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

void watchReducedMotion()
{
    if (!watch())
        new MotionWatch(QCoreApplication::instance()); // owned by the application
}

bool isMotionReduced()
{
    const auto *const known = watch();
    return known && known->isReduced();
}

} // namespace ambrel

#include "ReducedMotion.moc"
