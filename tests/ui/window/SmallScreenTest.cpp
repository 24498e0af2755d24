// The window on a screen that is smaller than it is to be: 1920 x 1200 pixels at a scale of two.
#include "toolkit/WindowControls.h"
#include "ui/sidebar/StatusLine.h"
#include "ui/window/AmbrelMacApp.h"

#include <QAbstractButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

using namespace ambrel;

namespace {

AmbrelMacApp &application()
{
    return *static_cast<AmbrelMacApp *>(QCoreApplication::instance());
}

} // namespace

class SmallScreenTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = application().openWindow();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void theWindowIsNeverLargerThanTheScreen()
    {
        const QRect screen = m_window->screen()->availableGeometry();
        QVERIFY(screen.height() < 680);
        QCOMPARE(m_window->size(), screen.size());
        QVERIFY(screen.contains(m_window->geometry()));
        m_window->resize(100, 100);
        QTRY_COMPARE(m_window->size(), QSize(960, 600));
    }

    void everythingComesIntoReach()
    {
        QList<const QWidget *> reached;
        while (QApplication::focusWidget() && !reached.contains(QApplication::focusWidget())) {
            const QWidget &focused = *QApplication::focusWidget();
            reached << &focused;
            QVERIFY2(m_window->rect().contains(focused.mapTo(m_window.get(), focused.rect().center())),
                     qPrintable(focused.accessibleName()));
            QTest::keyClick(m_window->windowHandle(), Qt::Key_Tab);
            QCoreApplication::processEvents();
        }
        const auto isReached = [&reached](const QString &label) {
            return std::any_of(reached.begin(), reached.end(), [&label](const QWidget *widget) {
                const auto *const button = qobject_cast<const QAbstractButton *>(widget);
                return button && (button->text() == label || button->accessibleName() == label);
            });
        };
        for (const char *const label : {"Sign Up", "Go Live", "Check Server", "Close"})
            QVERIFY2(isReached(QString::fromLatin1(label)), label);
    }

    void theStatusLineCanBeScrolledToAndComesIntoSightWithAnAnswer()
    {
        const auto *const status = m_window->findChild<StatusLine *>();
        const auto isShown = [&] {
            const QRect place(status->mapTo(m_window.get(), QPoint()), status->size());
            return m_window->rect().contains(place);
        };
        const auto scrollTo = [status](QAbstractSlider::SliderAction end) {
            for (QWidget *around = status->parentWidget(); around; around = around->parentWidget()) {
                if (auto *const area = qobject_cast<QScrollArea *>(around))
                    area->verticalScrollBar()->triggerAction(end);
            }
        };
        QVERIFY(!isShown());
        scrollTo(QAbstractSlider::SliderToMaximum);
        QVERIFY(isShown());
        scrollTo(QAbstractSlider::SliderToMinimum);
        for (auto *const button : m_window->findChildren<QAbstractButton *>()) {
            if (button->text() == QStringLiteral("Go Live"))
                QTest::mouseClick(button, Qt::LeftButton);
        }
        QTRY_VERIFY(isShown()); // "Sign up or log in first."
    }

private:
    std::unique_ptr<QWidget> m_window;
};

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    AmbrelMacApp app(argc, argv);
    SmallScreenTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SmallScreenTest.moc"
