// The client-side frame on a Wayland compositor without input devices: the compositor sizes and maximises the window,
// the pointer is the test's own.
#include "toolkit/FramedWindow.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <csignal>
#include <sys/prctl.h>

using namespace ambrel;

class WindowFrameWaylandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<FramedWindow>();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QCOMPARE(m_window->size(), QSize(400, 300));
    }

    void contentFillsTheWholeWindow()
    {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
        QCOMPARE(m_window->windowHandle()->frameMargins(), QMargins());
        QCOMPARE(m_window->frameGeometry(), m_window->geometry());
    }

    void doubleClickOnTheBackgroundMaximisesAndRestores()
    {
        const QPoint background(200, 270);
        QTest::mouseDClick(m_window->windowHandle(), Qt::LeftButton, {}, background);
        QTRY_COMPARE(m_window->width(), m_window->screen()->geometry().width());
        QVERIFY(m_window->isMaximized());
        QTest::mouseDClick(m_window->windowHandle(), Qt::LeftButton, {}, background);
        QTRY_COMPARE(m_window->size(), QSize(400, 300));
    }

    void controlsMaximiseRestoreAndClose()
    {
        const auto buttons = m_window->controls.findChildren<QPushButton *>();
        QTest::mouseClick(buttons.at(1), Qt::LeftButton);
        QTRY_COMPARE(m_window->width(), m_window->screen()->geometry().width());
        QTRY_COMPARE(buttons.at(1)->accessibleName(), QStringLiteral("Restore"));
        QTest::mouseClick(buttons.at(1), Qt::LeftButton);
        QTRY_COMPARE(m_window->size(), QSize(400, 300));
        QTRY_COMPARE(buttons.at(1)->accessibleName(), QStringLiteral("Maximize"));
        QTest::mouseClick(buttons.at(2), Qt::LeftButton);
        QTRY_VERIFY(!m_window->isVisible());
    }

    void gripResizesAndRefusesToShrinkBelowTheMinimum()
    {
        const auto pull = [this](QPoint distance) {
            const QPoint corner(m_window->width() - 2, m_window->height() - 2);
            QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, corner);
            QTest::mouseMove(m_window->windowHandle(), corner - QPoint(1, 1));
            QTest::mouseMove(m_window->windowHandle(), corner - QPoint(1, 1) + distance);
            QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, corner - QPoint(1, 1) + distance);
        };
        pull({60, 40});
        QTRY_COMPARE(m_window->size(), QSize(460, 340));
        pull({-400, -300});
        QTRY_COMPARE(m_window->size(), m_window->minimumSize());
    }

    void draggingTheBackgroundLeavesTheWindowUsable()
    {
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, {200, 270});
        QTest::mouseMove(m_window->windowHandle(), {240, 270});
        QTest::mouseMove(m_window->windowHandle(), {260, 280});
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, {260, 280});
        int clicks = 0;
        connect(&m_window->button, &QPushButton::clicked, this, [&clicks] { ++clicks; });
        QTest::mouseClick(&m_window->button, Qt::LeftButton);
        QCOMPARE(clicks, 1);
        QCOMPARE(m_window->size(), QSize(400, 300));
    }

private:
    std::unique_ptr<FramedWindow> m_window;
};

/// The toolkit's Wayland plug-in does not give every proxy object back at exit.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libwayland-client.so";
}

// The compositor must be there before the application is.
int main(int argumentCount, char **arguments)
{
    const QString socket = QStringLiteral("window-frame-test");
    QProcess compositor;
    compositor.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    compositor.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); }); // also when the test crashes
    compositor.start(
        QStringLiteral("weston"),
        {QStringLiteral("--backend=headless-backend.so"), QStringLiteral("--socket=") + socket,
         QStringLiteral("--width=1600"), QStringLiteral("--height=1000"), QStringLiteral("--idle-time=0"),
         QStringLiteral("--no-config"),
         QStringLiteral("--log=") + qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/weston.log")});
    qputenv("WAYLAND_DISPLAY", socket.toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "wayland");
    const QString path = QDir(qEnvironmentVariable("XDG_RUNTIME_DIR")).filePath(socket);
    if (!compositor.waitForStarted() || !QTest::qWaitFor([&path] { return QFile::exists(path); }, 10'000))
        qFatal("The compositor does not start.");

    int result = 0;
    {
        QApplication application(argumentCount, arguments);
        WindowFrameWaylandTest test;
        result = QTest::qExec(&test, argumentCount, arguments);
    }
    compositor.terminate();
    compositor.waitForFinished();
    return result;
}

#include "WindowFrameWaylandTest.moc"
