#include "gallery/SceneWindow.h"

#include "ui/MatchViews.h"
#include "ui/window/ViewEnvironment.h"

#include <QCursor>
#include <QSettings>
#include <QTest>

namespace ambrel {

namespace {

const QString nowhere = QStringLiteral("http://127.0.0.1:9");

void makeNew(AmbrelAppState &state)
{
    state.serverBaseURL = QStringLiteral("https://ambrel.example"); // only to be seen: nothing is sent
    for (auto field : {&AmbrelAppState::userId, &AmbrelAppState::displayName, &AmbrelAppState::email,
                       &AmbrelAppState::phone, &AmbrelAppState::profileBio})
        state.*field = QString();
    state.latitudeText = QStringLiteral("39.0458");
    state.longitudeText = QStringLiteral("-84.5086");
    state.discoverable = true;
    state.matches = QList<MatchResult>();
    state.selectedMatch = std::nullopt;
    state.incomingSeeMe = std::nullopt;
    state.showSeeMeFlash = false;
    state.isBusy = false;
    state.isLive = false;
    state.statusText = QStringLiteral("Ready.");
    state.serverStatusText = QStringLiteral("Server not checked.");
    state.betaStatusText = QStringLiteral("Android beta not checked.");
}

} // namespace

SceneApplication::SceneApplication(int &argc, char **argv)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    QSettings(QStringLiteral("Ambrel"), QStringLiteral("Ambrel")).setValue(QStringLiteral("serverBaseURL"), nowhere);
    m_application = std::make_unique<AmbrelMacApp>(argc, argv);
    QApplication::setCursorFlashTime(0); // carets stand still
}

SceneWindow::SceneWindow(const Scene &scene, const QSize &size)
    : m_scene(scene), m_window(static_cast<AmbrelMacApp *>(QCoreApplication::instance())->openWindow())
{
    m_window->resize(size.isEmpty() ? scene.size : size);
    QCursor::setPos(m_window->screen()->geometry().bottomRight()); // hovers nothing
    m_window->activateWindow();
    if (!QTest::qWaitForWindowActive(m_window.get()))
        qFatal("the window does not open");
    makeNew(state());
    QCoreApplication::processEvents();
    if (auto *const field = m_window->focusWidget())
        field->clearFocus(); // its ring and its caret belong to few scenes
    scene.arrange(state());
    settle();
    if (scene.act)
        scene.act(*m_window);
}

AmbrelAppState &SceneWindow::state() const
{
    return ViewEnvironment::of(*m_window).state();
}

void SceneWindow::settle() const
{
    QCoreApplication::processEvents();
    m_window->grab(); // lays everything out and orders the photos
    if (!QTest::qWaitFor([this] { return allPhotosAreThere(*m_window); }, 20'000))
        qFatal("a photo does not come");
    QCoreApplication::processEvents();
    if (m_scene.isMoment && !QTest::qWaitFor([this] { return m_scene.isMoment(*m_window); }))
        qFatal("the moment does not come");
}

QImage SceneWindow::picture() const
{
    settle();
    return m_window->grab().toImage();
}

QRect SceneWindow::placeOf(const QWidget &view) const
{
    return {view.mapTo(m_window.get(), QPoint()), view.size()};
}

} // namespace ambrel
