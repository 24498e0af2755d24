#include "toolkit/ReducedMotion.h"

#include "ui/layers/SeeMeFlashOverlay.h"
#include "ui/look/AmbrelLogo.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPointer>
#include <QTest>

using namespace ambrel;

namespace {

const auto group = QStringLiteral("org.gnome.desktop.interface");
const auto key = QStringLiteral("enable-animations");

/// A connection of the portal's own, as if it were another program.
QDBusConnection portalBus()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
}

} // namespace

/// A desktop's settings portal with one setting.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    bool hasAnimations = false;

public Q_SLOTS:
    QDBusVariant Read(const QString &askedGroup, const QString &askedKey, const QDBusMessage &call) // NOLINT
    {
        if (askedGroup == group && askedKey == key)
            return QDBusVariant(QVariant::fromValue(QDBusVariant(hasAnimations)));
        call.setDelayedReply(true);
        portalBus().send(call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("unknown")));
        return {};
    }

Q_SIGNALS:
    void SettingChanged(const QString &changedGroup, const QString &changedKey, const QDBusVariant &value); // NOLINT
};

class ReducedMotionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheDesktopAndSkipsTheFade()
    {
        QVERIFY(!isMotionReduced()); // nobody has been asked

        FakePortal portal;
        auto bus = portalBus();
        QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                                   QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
        QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
        watchReducedMotion();
        QTRY_VERIFY(isMotionReduced());

        QWidget window;
        window.resize(400, 300);
        window.show();
        const QPointer<SeeMeFlashOverlay> overlay = new SeeMeFlashOverlay([] {}, {}, &window);
        QVERIFY(overlay->findChild<AmbrelLogo *>()->isVisible()); // whole at once
        overlay->remove();
        QVERIFY(overlay->isHidden()); // gone at once
        QTRY_VERIFY(!overlay);

        Q_EMIT portal.SettingChanged(group, key, QDBusVariant(true));
        QTRY_VERIFY(!isMotionReduced());
        const QPointer<SeeMeFlashOverlay> fading = new SeeMeFlashOverlay([] {}, {}, &window);
        QVERIFY(!fading->findChild<AmbrelLogo *>()->isVisible()); // a picture of it fades in first
        QTRY_VERIFY(fading->findChild<AmbrelLogo *>()->isVisible());
        fading->remove();
        QVERIFY(!fading->isHidden()); // it fades out
        QTRY_VERIFY(!fading);
    }
};

QTEST_MAIN(ReducedMotionTest)
#include "ReducedMotionTest.moc"
