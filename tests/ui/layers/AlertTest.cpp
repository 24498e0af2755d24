#include "toolkit/Switch.h"
#include "ui/MatchViews.h"
#include "ui/ViewFixture.h"
#include "ui/layers/SeeMeAlert.h"
#include "ui/layers/SeeMeFlashOverlay.h"
#include "ui/look/AmbrelBackground.h"
#include "ui/people/MatchCard.h"
#include "ui/window/ContentView.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>

using namespace ambrel;

namespace {

using Content = ViewFixture<ContentView>;
constexpr QSize windowSize{980, 680};
constexpr QPoint beside{60, 60};

SeeMeMessage messageWith(const QString &body)
{
    return {.id = QStringLiteral("1"),
            .fromUserId = QStringLiteral("ana"),
            .toUserId = QStringLiteral("sam"),
            .body = body,
            .createdAt = std::nullopt};
}

QPointer<SeeMeAlert> alertOf(Content &content)
{
    for (auto *const alert : content.window.findChildren<SeeMeAlert *>()) {
        if (alert->isVisible())
            return alert;
    }
    return nullptr;
}

QPointer<SeeMeAlert> showAlert(Content &content, const QString &body)
{
    content.state().incomingSeeMe = messageWith(body);
    content.refresh();
    return alertOf(content);
}

bool isFlashShown(Content &content)
{
    return content.window.findChild<SeeMeFlashOverlay *>();
}

/// The names of the static texts in the alert, in order.
QStringList textsOf(SeeMeAlert &alert)
{
    QStringList texts;
    const std::function<void(QAccessibleInterface *)> collect = [&](QAccessibleInterface *item) {
        if (item->role() == QAccessible::StaticText)
            texts << item->text(QAccessible::Name);
        for (int i = 0; i < item->childCount(); ++i)
            collect(item->child(i));
    };
    collect(QAccessible::queryAccessibleInterface(&alert));
    return texts;
}

/// As a screen reader does it.
void press(QWidget &widget, const QString &action)
{
    QAccessible::queryAccessibleInterface(&widget)->actionInterface()->doAction(action);
}

} // namespace

class AlertTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void withFlashAndAlertBothShownDismissingOneLeavesTheOther_data()
    {
        QTest::addColumn<bool>("alertFirst");
        QTest::newRow("alert dismissed first") << true;
        QTest::newRow("flash dismissed first") << false;
    }

    void withFlashAndAlertBothShownDismissingOneLeavesTheOther()
    {
        QFETCH(bool, alertFirst);
        Content content(windowSize);
        content.state().showSeeMeFlash = true;
        auto alert = showAlert(content, QStringLiteral("Look left!"));
        QVERIFY(alert);
        QVERIFY(isFlashShown(content));
        QCOMPARE(content.window.childAt(beside), alert.data()); // the alert lies above

        if (alertFirst) {
            QTest::mouseClick(content.button(QStringLiteral("Dismiss")), Qt::LeftButton);
            content.refresh();
            QVERIFY(!alertOf(content));
            QVERIFY(content.state().showSeeMeFlash);
            QVERIFY(content.window.findChild<SeeMeFlashOverlay *>()->hasFocus());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            QTRY_VERIFY(!isFlashShown(content));
        } else {
            QTest::mouseClick(alert, Qt::LeftButton, {}, beside);
            QTRY_VERIFY(!isFlashShown(content));
            QVERIFY(content.state().incomingSeeMe.value());
            QVERIFY(alertOf(content));
            QTest::mouseClick(alert, Qt::LeftButton, {}, beside); // now there is nothing beneath to dismiss
            content.refresh();
            QVERIFY(alertOf(content));
        }
    }

    void messageWithAnEmptyBodyShowsAnEmptyMessage()
    {
        Content content(windowSize);
        const auto alert = showAlert(content, QString());
        QVERIFY(alert);
        QCOMPARE(textsOf(*alert), QStringList({QStringLiteral("Can you see me?"), QString()}));
    }

    void showsTheBodyUntilItIsDismissed()
    {
        Content content(windowSize);
        const auto alert = showAlert(content, QStringLiteral("Look left!"));
        QCOMPARE(textsOf(*alert), QStringList({QStringLiteral("Can you see me?"), QStringLiteral("Look left!")}));
        auto *const accessible = QAccessible::queryAccessibleInterface(alert);
        QCOMPARE(accessible->role(), QAccessible::Dialog);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Can you see me?"));

        QTest::mouseClick(content.button(QStringLiteral("Dismiss")), Qt::LeftButton);
        QVERIFY(!content.state().incomingSeeMe.value());
        QTRY_VERIFY(!alert);
    }

    void followsAMessageThatReplacesTheOneShown()
    {
        Content content(windowSize);
        const auto alert = showAlert(content, QStringLiteral("first"));
        showAlert(content, QStringLiteral("second"));
        QCOMPARE(alertOf(content), alert); // the same sheet
        QCOMPARE(textsOf(*alert).last(), QStringLiteral("second"));
    }

    void comesBackWhenTheServerReportsTheMessageAgain()
    {
        Content content(windowSize);
        showAlert(content, QStringLiteral("again"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        content.refresh();
        QVERIFY(!alertOf(content));
        QVERIFY(showAlert(content, QStringLiteral("again")));
    }

    void keepsClicksAndTabFromTheContentButNotTheEventLoop()
    {
        Content content(windowSize);
        auto *const email = content.named<QLineEdit>(QStringLiteral("Email"));
        const auto alert = showAlert(content, QStringLiteral("Hi"));
        const QPoint overEmail = email->mapTo(&content.window, email->rect().center());
        QCOMPARE(content.window.childAt(overEmail), alert.data());
        QTest::mouseClick(alert, Qt::LeftButton, {}, overEmail);
        QVERIFY(!email->hasFocus());
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QVERIFY(alert->isAncestorOf(QApplication::focusWidget()));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
            QVERIFY(alert->isAncestorOf(QApplication::focusWidget()));
        }
        content.state().statusText = QStringLiteral("2 nearby."); // what the loops do meanwhile still shows
        content.refresh();
        bool isShown = false;
        for (const auto *const line : content.window.findChildren<QWidget *>()) {
            if (line->accessibleDescription() == QStringLiteral("Status"))
                isShown = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(line))->text(QAccessible::Name) ==
                          QStringLiteral("2 nearby.");
        }
        QVERIFY(isShown);
    }

    void isAModalDialogThatItsMessageDescribes()
    {
        Content content(windowSize);
        const auto alert = showAlert(content, QStringLiteral("first"));
        const auto *const accessible = QAccessible::queryAccessibleInterface(alert);
        QVERIFY(accessible->state().modal);
        QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("first"));

        showAlert(content, QStringLiteral("second"));
        QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("second"));
    }

    void whatLiesBeneathCannotBePressedButLooksAsBefore()
    {
        Content content(windowSize);
        content.state().userId = QStringLiteral("sam");
        content.state().matches = {person(QStringLiteral("Ana"))};
        content.refresh();
        auto *const columns = content.window.findChild<AmbrelBackground *>();
        auto *const card = columns->findChild<MatchCard *>();
        auto *const discoverable = columns->findChild<Switch *>();
        auto *const keep = content.button(QStringLiteral("Continue"));
        const auto pressAll = [&] {
            press(*discoverable, QAccessibleActionInterface::toggleAction());
            press(*card, QAccessibleActionInterface::pressAction());
            press(*keep, QAccessibleActionInterface::pressAction());
        };
        QApplication::focusWidget()->clearFocus();
        const QImage before = columns->grab().toImage();

        const auto alert = showAlert(content, QStringLiteral("Hi"));
        QCOMPARE(columns->grab().toImage(), before);
        pressAll();
        QVERIFY(discoverable->isChecked());
        QVERIFY(!content.state().selectedMatch.value());
        QVERIFY(!keep->isDown()); // a button that is pressed this way clicks a moment later

        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(!alert);
        QCOMPARE(content.state().statusText.value(), QStringLiteral("Ready."));
        pressAll(); // all of it works again
        QVERIFY(!discoverable->isChecked());
        QVERIFY(content.state().selectedMatch.value());
        QTRY_COMPARE(content.state().statusText.value(), QStringLiteral("Keeping Ana visible."));
    }

    void hostileMessagesAreShownAsTheyStandAndStayInTheWindow()
    {
        Content content(windowSize);
        const QString markup = QStringLiteral("<h1>Hi</h1><img src=\"file:///etc/passwd\"> & \u202Eabc");
        const auto alert = showAlert(content, markup);
        QCOMPARE(textsOf(*alert).last(), markup);

        for (const QString &body : {QStringLiteral("W").repeated(5000), QStringLiteral("word\n").repeated(400)}) {
            showAlert(content, body);
            auto *const dismiss = content.button(QStringLiteral("Dismiss"));
            QTRY_VERIFY(
                content.window.rect().contains(QRect(dismiss->mapTo(&content.window, QPoint()), dismiss->size())));
            QCOMPARE(content.window.size(), windowSize);
            auto *const bar = alert->findChild<QScrollArea *>()->verticalScrollBar();
            QVERIFY(bar->maximum() > 0);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
            QVERIFY(bar->value() > 0);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageUp);
            QCOMPARE(bar->value(), 0);
        }
    }
};

QTEST_MAIN(AlertTest)
#include "AlertTest.moc"
