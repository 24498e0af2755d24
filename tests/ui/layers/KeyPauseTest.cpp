// What keys do while an alert or a flash has only just come.
#include "support/Names.h"
#include "ui/layers/Covered.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <thread>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

constexpr auto never = 1h;
constexpr auto quiet = 100ms;
constexpr auto rounding = 1ms; // timers count whole milliseconds

/// As the keyboard does it: to whatever has the focus.
void press(Covered &content, Qt::Key key)
{
    QTest::keyClick(content.window.windowHandle(), key);
}
void type(Covered &content, const QString &text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, content.window.windowHandle(), Qt::Key_unknown, QString(letter), {});
}

constexpr Qt::Key dismissingKeys[] = {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space};

} // namespace

class KeyPauseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("isAlert");
        QTest::newRow("alert") << true;
        QTest::newRow("flash") << false;
    }

    void initTestCase()
    {
        AmbrelStyle::install();
        QCOMPARE(ViewTimings().keyQuiet, 700ms);
    }

    void whatIsTypedMeanwhileReachesItsField()
    {
        Covered content(never);
        auto *const name = content.named<QLineEdit>(QStringLiteral("Display name"));
        name->setFocus();
        type(content, QStringLiteral("Sam"));
        content.cover();
        type(content, QStringLiteral(" I."));
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter})
            press(content, key);
        press(content, Qt::Key_Tab);
        type(content, QStringLiteral("sam@"));
        content.refresh();
        QVERIFY(content.isCovered());
        QCOMPARE(content.state().displayName.value(), QStringLiteral("Sam I."));
        QCOMPARE(content.state().email.value(), QStringLiteral("sam@"));
    }

    void theBioGoesOnToo()
    {
        Covered content(never);
        auto *const bio = content.named<QPlainTextEdit>(QStringLiteral("Bio"));
        bio->setFocus();
        content.cover();
        type(content, QStringLiteral("Hi there"));
        press(content, Qt::Key_Return);
        QCOMPARE(content.state().profileBio.value(), QStringLiteral("Hi there\n"));
        QVERIFY(content.isCovered());
    }

    void noKeyDismissesOrPressesAnything()
    {
        Covered content(never);
        content.list({ana, ben});
        auto *const dismiss = content.dismissOf(ana);
        dismiss->setFocus();
        content.cover();
        QVERIFY(content.isFocusInLayer());
        for (const Qt::Key key : dismissingKeys)
            press(content, key);
        content.refresh();
        QVERIFY(content.isCovered());
        QCOMPARE(content.listed(), QStringList({ana, ben}));
    }

    void aButtonThatTabHasReachedMeanwhileIsNotPressed()
    {
        Covered content(never);
        content.named<QPlainTextEdit>(QStringLiteral("Bio"))->setFocus();
        content.cover();
        press(content, Qt::Key_Tab);
        QVERIFY(content.button(QStringLiteral("Sign Up"))->hasFocus());
        press(content, Qt::Key_Space);
        press(content, Qt::Key_Return);
        QVERIFY(!content.state().isBusy);
        QCOMPARE(content.state().statusText.value(), QStringLiteral("Ready."));
    }

    void everyKeyBeginsTheWaitAnew()
    {
        Covered content(quiet);
        auto *const email = content.named<QLineEdit>(QStringLiteral("Email"));
        email->setFocus();
        content.cover();
        std::this_thread::sleep_for(quiet / 2); // no timer goes off meanwhile
        QElapsedTimer sinceLastKey;
        sinceLastKey.start();
        QTest::keyClicks(email, QStringLiteral("sam@"));
        QTRY_VERIFY(content.isFocusInLayer());
        QVERIFY(std::chrono::milliseconds(sinceLastKey.elapsed()) >= quiet - rounding);
        QCOMPARE(content.state().email.value(), QStringLiteral("sam@"));
        press(content, Qt::Key_Escape);
        QVERIFY(!content.isCovered());
        content.refresh();
        QVERIFY(email->hasFocus());
    }

    void timeInTheBackgroundDoesNotCount()
    {
        Covered content(quiet);
        content.named<QLineEdit>(QStringLiteral("Email"))->setFocus();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        content.cover();
        QTest::qWait(2 * int(quiet.count()));
        QVERIFY(!content.isFocusInLayer());
        content.window.activateWindow();
        QElapsedTimer sinceActivation;
        sinceActivation.start();
        QTRY_VERIFY(content.isFocusInLayer());
        QVERIFY(std::chrono::milliseconds(sinceActivation.elapsed()) >= quiet - rounding);
    }

    void theMouseWorksAtOnce()
    {
        Covered content(never);
        auto *const email = content.named<QLineEdit>(QStringLiteral("Email"));
        email->setFocus();
        content.cover();
        auto *const dismiss = content.button(QStringLiteral("Dismiss"));
        QTest::mouseClick(dismiss ? static_cast<QWidget *>(dismiss) : content.view->findChild<CoveringLayer *>(),
                          Qt::LeftButton);
        QVERIFY(!content.isCovered());
        content.refresh();
        QVERIFY(email->hasFocus());
        type(content, QStringLiteral("s"));
        QCOMPARE(content.state().email.value(), QStringLiteral("s"));
        press(content, Qt::Key_Tab); // all keys work again
        press(content, Qt::Key_Tab);
        press(content, Qt::Key_Tab);
        QVERIFY(content.button(QStringLiteral("Sign Up"))->hasFocus());
    }

    void aNewerMessageBeginsTheWaitAnew()
    {
        Covered content;
        content.cover();
        auto newer = SeeMeMessage();
        newer.body = QStringLiteral("No, behind you!");
        content.state().incomingSeeMe = newer;
        QCoreApplication::sendPostedEvents(); // no timer goes off meanwhile
        press(content, Qt::Key_Escape);
        QVERIFY(content.state().incomingSeeMe.value());
        content.refresh();
        press(content, Qt::Key_Escape);
        QVERIFY(!content.state().incomingSeeMe.value());
    }
};

QTEST_MAIN(KeyPauseTest)
#include "KeyPauseTest.moc"
