#include "support/ScriptedServer.h"
#include "toolkit/FocusRing.h"
#include "toolkit/Switch.h"
#include "ui/Pixels.h"
#include "ui/ViewFixture.h"
#include "ui/look/Theme.h"
#include "ui/sidebar/SidebarView.h"
#include "ui/sidebar/StatusLine.h"

#include <QAccessible>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>

using namespace ambrel;

namespace {

using Sidebar = ViewFixture<SidebarView>;
constexpr QSize tall{340, 860};

/// The label that a screen reader knows by this description.
QWidget *statusLine(Sidebar &sidebar, const QString &description)
{
    for (auto *const label : sidebar.window.findChildren<QWidget *>()) {
        if (label->accessibleDescription() == description)
            return label;
    }
    return nullptr;
}

} // namespace

class SidebarTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void switchIsBoundBothWays()
    {
        Sidebar sidebar(tall);
        auto *const discoverable = sidebar.button(QStringLiteral("Discoverable"));
        QVERIFY(discoverable->isChecked());
        discoverable->setFocus();
        QTest::keyClick(discoverable, Qt::Key_Space);
        QCOMPARE(sidebar.state().discoverable.value(), false);
        sidebar.state().discoverable = true;
        sidebar.refresh();
        QVERIFY(discoverable->isChecked());
    }

    void busyDisablesAllThreeButtonsWithTheirBusyLabelsWhicheverOperationSetIt()
    {
        Sidebar sidebar(tall);
        const QList<QAbstractButton *> buttons{sidebar.button(QStringLiteral("Sign Up")),
                                               sidebar.button(QStringLiteral("Log In")),
                                               sidebar.button(QStringLiteral("Check Server"))};
        const QStringList busyLabels{QStringLiteral("Working..."), QStringLiteral("Working..."),
                                     QStringLiteral("Checking...")};
        sidebar.state().isBusy = true;
        sidebar.refresh();
        for (int i = 0; i < buttons.size(); ++i) {
            QVERIFY(!buttons[i]->isEnabled());
            QCOMPARE(buttons[i]->text(), busyLabels[i]);
        }
        QVERIFY(sidebar.button(QStringLiteral("Go Live"))->isEnabled());

        sidebar.state().isBusy = false;
        sidebar.refresh();
        for (auto *const button : buttons)
            QVERIFY(button->isEnabled());
        QCOMPARE(buttons[0]->text(), QStringLiteral("Sign Up"));
        QCOMPARE(buttons[1]->text(), QStringLiteral("Log In"));
        QCOMPARE(buttons[2]->text(), QStringLiteral("Check Server"));
    }

    void whileLiveThePrimaryButtonReadsRefreshAndStartsAgain()
    {
        Sidebar sidebar(tall);
        sidebar.state().userId = QStringLiteral("sam");
        QTest::mouseClick(sidebar.button(QStringLiteral("Go Live")), Qt::LeftButton);
        QVERIFY(sidebar.state().isLive);
        sidebar.refresh();
        auto *const refreshButton = sidebar.button(QStringLiteral("Refresh"));
        QVERIFY(refreshButton);

        sidebar.state().discoverable = false; // starting again sets it
        QTest::mouseClick(refreshButton, Qt::LeftButton);
        QVERIFY(sidebar.state().discoverable);
        QVERIFY(sidebar.state().isLive);
    }

    void longStatusTextWrapsInsideTheColumnAndStaysLeftAligned()
    {
        Sidebar sidebar(tall);
        auto *const status = statusLine(sidebar, QStringLiteral("Status"));
        const int lineHeight = status->height();
        sidebar.state().statusText = QStringLiteral("The server is taking longer than usual to answer. ").repeated(4);
        sidebar.refresh();
        QTRY_VERIFY(status->height() >= 3 * lineHeight);
        QTRY_COMPARE(status->mapTo(&sidebar.window, QPoint(0, status->height())).y(), sidebar.window.height() - 18);
        QCOMPARE(sidebar.view->width(), 340);
        QCOMPARE(status->mapTo(&sidebar.window, QPoint()).x(), 18);
        QVERIFY(status->mapTo(&sidebar.window, QPoint(status->width(), 0)).x() <= 340 - 18);

        // Every line begins at the left edge: something dark stands in the first letters' columns of the first and
        // last.
        const QImage image = sidebar.window.grab().toImage();
        const QRect area(status->mapTo(&sidebar.window, QPoint()), status->size());
        for (const int y : {area.top(), area.bottom() - lineHeight + 1}) {
            int darkest = 255;
            for (int x = area.left(); x < area.left() + 12; ++x) {
                for (int line = y; line < y + lineHeight; ++line)
                    darkest = std::min(darkest, image.pixelColor(x, line).lightness());
            }
            QVERIFY(darkest < 140);
        }
    }

    void clearingTheServerFieldEmptiesTheAddressAtOnce()
    {
        Sidebar sidebar(tall);
        auto *const server = sidebar.named<QLineEdit>(QStringLiteral("Server"));
        QVERIFY(!sidebar.state().serverBaseURL->isEmpty());
        server->setFocus();
        server->selectAll();
        QTest::keyClick(server, Qt::Key_Delete);
        QCOMPARE(sidebar.state().serverBaseURL.value(), QString());
        sidebar.refresh();
        QCOMPARE(server->text(), QString()); // and stays empty
    }

    void everyButtonStartsItsOwnOperation_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("Sign Up") << QStringLiteral("Sign Up") << QByteArray("POST") << QByteArray("/api/signup");
        QTest::newRow("Log In") << QStringLiteral("Log In") << QByteArray("POST") << QByteArray("/api/login");
        QTest::newRow("Check Server") << QStringLiteral("Check Server") << QByteArray("GET") << QByteArray("/health");
    }

    void everyButtonStartsItsOwnOperation()
    {
        QFETCH(const QString, label);
        QFETCH(const QByteArray, method);
        QFETCH(const QByteArray, path);
        ScriptedServer server; // fails the test when anything else is asked for
        server.on(method, path, ScriptedReply::json(R"({"error":"no"})", 409));
        Sidebar sidebar(tall, {{QStringLiteral("userId"), QStringLiteral("sam")},
                               {QStringLiteral("displayName"), QStringLiteral("Sam")}});
        sidebar.state().serverBaseURL = server.url();
        sidebar.state().saveSettings();
        QTest::mouseClick(sidebar.button(label), Qt::LeftButton);
        QVERIFY(sidebar.state().isBusy);
        QTRY_VERIFY(!sidebar.state().isBusy);
        QCOMPARE(server.count(method, path), 1);
    }

    void pauseIsNeverDisabledAndStopsTheLiveState()
    {
        Sidebar sidebar(tall);
        auto *const pause = sidebar.button(QStringLiteral("Pause"));
        QVERIFY(pause->isEnabled());
        sidebar.state().isBusy = true;
        sidebar.state().isLive = true;
        sidebar.refresh();
        QVERIFY(pause->isEnabled());
        pause->setFocus();
        QTest::keyClick(pause, Qt::Key_Return);
        QVERIFY(!sidebar.state().isLive);
        QCOMPARE(sidebar.state().statusText.value(), QStringLiteral("Paused."));
    }

    void buttonGetsTheFocusBackWhenItIsNoLongerBusy()
    {
        Sidebar sidebar(tall);
        auto *const check = sidebar.button(QStringLiteral("Check Server"));
        check->setFocus();
        sidebar.state().isBusy = true;
        sidebar.refresh();
        QVERIFY(!check->hasFocus());
        sidebar.state().isBusy = false;
        sidebar.refresh();
        QVERIFY(check->hasFocus());

        sidebar.state().isBusy = true;
        sidebar.refresh();
        auto *const email = sidebar.named<QLineEdit>(QStringLiteral("Email"));
        email->setFocus(); // the user moves on
        sidebar.state().isBusy = false;
        sidebar.refresh();
        QVERIFY(email->hasFocus());
    }

    void aButtonThatWasClickedShowsNoFocusRingWhenItIsNoLongerBusy()
    {
        Sidebar sidebar(tall);
        for (const char *const label : {"Sign Up", "Log In", "Check Server"}) {
            auto *const button = sidebar.button(QString::fromLatin1(label));
            sidebar.named<QLineEdit>(QStringLiteral("Email"))->setFocus();
            QCursor::setPos(1910, 1190);
            const QImage unfocused = button->grab().toImage();
            button->setFocus(Qt::MouseFocusReason);
            sidebar.state().isBusy = true;
            sidebar.refresh();
            sidebar.state().isBusy = false;
            sidebar.refresh();
            QVERIFY(button->hasFocus());
            QCOMPARE(button->grab().toImage(), unfocused);
        }
    }

    void boxesKeepTheirNaturalHeightAtEverySize()
    {
        Sidebar sidebar({340, 680});
        const auto boxes = sidebar.window.findChildren<QGroupBox *>();
        QCOMPARE(boxes.size(), 2);
        const QList<int> heights{boxes[0]->height(), boxes[1]->height()};
        const auto fields = boxes[0]->findChildren<QLineEdit *>();
        auto *const status = statusLine(sidebar, QStringLiteral("Status"));
        for (int height = 680; height <= 2000; height += 120) {
            sidebar.window.resize(340, height);
            QTRY_COMPARE(sidebar.view->height(), height);
            QCOMPARE((QList<int>{boxes[0]->height(), boxes[1]->height()}), heights);
            QCOMPARE(boxes[1]->y() - boxes[0]->geometry().bottom() - 1, 16);
            for (qsizetype i = 1; i < fields.size(); ++i)
                QCOMPARE(fields[i]->y() - fields[i - 1]->geometry().bottom() - 1, 10);
            QCOMPARE(status->mapTo(&sidebar.window, QPoint(0, status->height())).y(), height - 18);
        }
    }

    void selectedTextIsQuietWhereTheFocusIsNot()
    {
        Sidebar sidebar(tall);
        auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        sidebar.state().profileBio = QString(QChar(0x2007)).repeated(30); // blanks as wide as digits
        sidebar.refresh();
        bio->setFocus();
        bio->selectAll();
        const QPoint inText(60, 16);
        COMPARE_COLORS(shownAt(*bio, inText), theme::ambrelRed);
        sidebar.named<QLineEdit>(QStringLiteral("Email"))->setFocus();
        COMPARE_COLORS(shownAt(*bio, inText), theme::quietSelection);
    }

    void everyControlIsReachedWithTabInReadingOrder()
    {
        Sidebar sidebar(tall);
        sidebar.named<QLineEdit>(QStringLiteral("User ID"))->setFocus();
        QStringList visited;
        for (int i = 0; i < 14; ++i) {
            const auto *const focused = QApplication::focusWidget();
            const auto *const button = qobject_cast<const QAbstractButton *>(focused);
            visited << (button ? button->text() : focused->accessibleName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(
            visited.join(QLatin1String(", ")),
            QStringLiteral("User ID, Display name, Email, Phone, Bio, Sign Up, Log In, Server, Latitude, Longitude, "
                           "Discoverable, Go Live, Pause, Check Server"));
        QCOMPARE(QApplication::focusWidget()->accessibleName(), QStringLiteral("User ID")); // and around
    }

    void lowWindowScrollsAndTabKeepsTheFocusedControlInSight()
    {
        Sidebar sidebar({340, 400});
        auto *const area = sidebar.window.findChild<QScrollArea *>();
        QVERIFY(area->verticalScrollBar()->maximum() > 0);
        QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
        auto *const first = sidebar.named<QLineEdit>(QStringLiteral("User ID"));
        const int fullWidth = first->width();
        first->setFocus();
        for (int i = 0; i < 14; ++i) {
            const auto *const focused = QApplication::focusWidget();
            const QRect place(focused->mapTo(area->viewport(), QPoint()), focused->size());
            QVERIFY2(area->viewport()->rect().contains(place), qPrintable(focused->accessibleName()));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        sidebar.window.resize(tall);
        QTRY_COMPARE(area->verticalScrollBar()->maximum(), 0);
        QTRY_COMPARE(first->width(), fullWidth); // the scroll bar takes nothing from the fields
    }

    void statusStaysInSightWhileTheFormsScroll()
    {
        Sidebar sidebar({340, 400});
        sidebar.state().statusText = QStringLiteral("Add a display name.");
        sidebar.refresh();
        const auto *const status = statusLine(sidebar, QStringLiteral("Status"));
        auto *const forms = sidebar.window.findChild<QScrollArea *>()->verticalScrollBar();
        for (const int position : {0, forms->maximum()}) {
            forms->setValue(position);
            QVERIFY(!status->visibleRegion().isEmpty());
            QCOMPARE(status->visibleRegion().boundingRect(), status->rect());
            QCOMPARE(status->mapTo(&sidebar.window, QPoint(0, status->height())).y(), 400 - 18);
        }
    }

    void aLongAnswerOfTheServerIsScrolledIntoSightForWhoAskedForIt()
    {
        ScriptedServer server;
        const QByteArray name = QByteArray("Somewhere ").repeated(12);
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true,"name":")" + name + R"("})"));
        server.on(
            "GET", "/api/app-version",
            ScriptedReply::json(
                R"({"versionCode":1,"versionName":"1","downloadUrl":"","apkAvailable":true,"phoneVerificationAvailable":false})"));
        Sidebar sidebar({340, 680});
        sidebar.state().serverBaseURL = server.url();
        auto *const area = sidebar.window.findChild<QScrollArea *>();
        const auto isSeen = [&](const QString &description) {
            const auto *const line = statusLine(sidebar, description);
            const QRect place(line->mapTo(area->viewport(), QPoint()), line->size());
            return area->viewport()->rect().contains(place);
        };
        const auto isWholeAnswerSeen = [&] {
            return isSeen(QStringLiteral("Server status")) && isSeen(QStringLiteral("Android beta status"));
        };
        auto *const check = sidebar.button(QStringLiteral("Check Server"));
        QTest::mouseClick(check, Qt::LeftButton);
        QTRY_VERIFY(isWholeAnswerSeen());
        QTRY_VERIFY(check->isEnabled());

        sidebar.state().serverStatusText = QStringLiteral("Server not checked.");
        sidebar.refresh();
        check->click();
        sidebar.named<QLineEdit>(QStringLiteral("User ID"))->setFocus(); // goes on elsewhere
        area->verticalScrollBar()->setValue(0);
        QTRY_VERIFY(check->isEnabled());
        QTest::qWait(20); // what is due happens
        QCOMPARE(area->verticalScrollBar()->value(), 0);
    }

    void veryLongStatusScrollsByItselfWithTheKeyboardToo()
    {
        Sidebar sidebar(tall);
        sidebar.state().statusText =
            QStringLiteral("The server is taking longer than usual to answer. ").repeated(2000);
        sidebar.refresh();
        const auto *const line = sidebar.view->findChild<StatusLine *>();
        QTRY_VERIFY(line->verticalScrollBar()->maximum() > 0);
        QVERIFY(line->height() <= 120);

        sidebar.button(QStringLiteral("Check Server"))->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(line->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
        QVERIFY(line->verticalScrollBar()->value() > 0);

        sidebar.state().statusText = QStringLiteral("Paused.");
        sidebar.refresh();
        QTRY_COMPARE(line->verticalScrollBar()->maximum(), 0);
        QCOMPARE(line->focusPolicy(), Qt::NoFocus);
    }

    void textsFromTheServerAreShownAsTheyStand()
    {
        Sidebar sidebar(tall);
        const QString hostile = QStringLiteral("<b>x</b><img src=\"file:///etc/passwd\"> &lt; & width=20000");
        sidebar.state().statusText = hostile;
        sidebar.state().serverStatusText = hostile;
        sidebar.state().betaStatusText = QStringLiteral("M").repeated(5000);
        sidebar.refresh();
        for (const char *const description : {"Status", "Server status"}) {
            auto *const line = statusLine(sidebar, QString::fromLatin1(description));
            const auto *const accessible = QAccessible::queryAccessibleInterface(line);
            QCOMPARE(accessible->text(QAccessible::Name), hostile);
            QCOMPARE(accessible->text(QAccessible::Description), QString::fromLatin1(description));
        }
        QCOMPARE(sidebar.view->width(), 340);
        QVERIFY(statusLine(sidebar, QStringLiteral("Android beta status"))->width() <= 304);
    }

    void editorHasItsOutlineAndTheSwitchEndsWhereTheFieldsEnd()
    {
        Sidebar sidebar(tall);
        auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        COMPARE_COLORS(shownAt(*bio, {bio->width() / 2, 0}), QColor(217, 217, 217)); // black at 15 % over white
        COMPARE_COLORS(shownAt(*bio, {bio->width() / 2, 1}), QColor(Qt::white));
        const auto *const server = sidebar.named<QLineEdit>(QStringLiteral("Server"));
        const auto *const discoverable = sidebar.window.findChild<Switch *>();
        QCOMPARE(discoverable->x(), server->x());
        QCOMPARE(discoverable->geometry().right() - focusRingReach, server->geometry().right());
    }

    void fieldsAreWhiteOnADarkDesktop()
    {
        QPalette dark(QColor(20, 20, 20));
        QApplication::setPalette(dark); // what the desktop had before the application chose its own
        AmbrelStyle::install();
        Sidebar sidebar(tall);
        auto *const field = sidebar.named<QLineEdit>(QStringLiteral("Email"));
        QCOMPARE(field->palette().color(QPalette::Text), theme::primaryText);
        QCOMPARE(field->palette().color(QPalette::PlaceholderText), theme::placeholderText);
        COMPARE_COLORS(shownAt(*field, {field->width() - 10, 14}), QColor(Qt::white));
    }
};

QTEST_MAIN(SidebarTest)
#include "SidebarTest.moc"
