#include "ui/window/AmbrelMacApp.h"

#include "state/AmbrelAppState.h"
#include "state/SettingsFile.h"
#include "toolkit/AccessibleRole.h"
#include "toolkit/ClientSideFrame.h"
#include "toolkit/EndingSignals.h"
#include "toolkit/FocusInSight.h"
#include "toolkit/ReducedMotion.h"
#include "toolkit/ScreenFit.h"
#include "toolkit/WindowEdge.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/AmbrelStyle.h"
#include "ui/look/Theme.h"
#include "ui/window/ContentView.h"
#include "ui/window/ViewEnvironment.h"

#include <QCryptographicHash>
#include <QIcon>
#include <QLoggingCategory>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <clocale>

namespace ambrel {

namespace {

QIcon markAsIcon()
{
    constexpr int size = 128;
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    AmbrelLogo::paint(painter, size, false);
    return {picture};
}

/// One name for all that share the settings.
QString instanceName()
{
    const QByteArray settings = SettingsFile().name().toUtf8();
    return QStringLiteral("example.ambrel.Ambrel.settings-") +
           QString::fromLatin1(QCryptographicHash::hash(settings, QCryptographicHash::Sha1).toHex().left(16));
}

void bringToFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

QRect comfortableGeometry(const QScreen &screen)
{
    const QRect available = screen.availableGeometry();
    QRect geometry(QPoint(), (theme::windowComfortableSize * theme::textScale()).boundedTo(available.size()));
    geometry.moveCenter(available.center());
    return geometry;
}

} // namespace

AmbrelMacApp::AmbrelMacApp(int &argc, char **argv) : QApplication(argc, argv)
{
    std::setlocale(LC_NUMERIC, "C"); // NOLINT: no other thread yet; undoes the user's decimal comma
    setOrganizationName(QStringLiteral("Ambrel"));
    setApplicationName(QStringLiteral("Ambrel"));
    setDesktopFileName(QStringLiteral("example.ambrel.Ambrel"));
    setWindowIcon(markAsIcon());
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false")); // a broken photo is shown as locked
    AmbrelStyle::install();
    FocusInSight::install();
    m_instance.emplace(instanceName());
    if (m_instance->isFirst())
        m_state = AmbrelAppState::create(m_sound);
    quitOnEndingSignals();
}

AmbrelMacApp::~AmbrelMacApp()
{
    if (!m_state)
        return;
    m_state->shutDown();
    processEvents(); // lets sleeping tasks wake up and end
}

std::unique_ptr<QWidget> AmbrelMacApp::openWindow()
{
    if (!m_state)
        return nullptr;
    auto window = std::make_unique<QWidget>();
    setAccessibleRole(*window, QAccessible::Window);
    window->setWindowTitle(QStringLiteral("Ambrel"));
    window->setGeometry(comfortableGeometry(*primaryScreen()));
    new ClientSideFrame(*window);                                    // owned by the window
    new ScreenFit(*window, theme::windowMinimumSize);                // the same
    new WindowEdge(*window, theme::windowRadius, theme::windowEdge); // the same
    ViewEnvironment::inject(*window, m_state);

    auto *const layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new ContentView(window.get()));
    window->show();
    connect(&*m_instance, &SingleInstance::startedAgain, window.get(),
            [raised = window.get()] { bringToFront(*raised); });
    QTimer::singleShot(0, window.get(), watchReducedMotion); // after the first frame
    return window;
}

} // namespace ambrel
