// Where the focus is while the alert or the flash covers the window, and where it is afterwards.
#include "support/Names.h"
#include "ui/HeldKey.h"
#include "ui/layers/Covered.h"

#include <QLineEdit>
#include <QScrollBar>

using namespace ambrel;

class LayerFocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("isAlert");
        QTest::newRow("alert") << true;
        QTest::newRow("flash") << false;
    }

    void initTestCase() { AmbrelStyle::install(); }

    void comesBackToTheSamePersonsButton()
    {
        Covered content;
        content.list({ana, ben, cleo, dan});
        const QPointer<QAbstractButton> dismiss = content.dismissOf(ben);
        dismiss->setFocus(Qt::ShortcutFocusReason);
        content.cover();
        content.list({eve, fay, cleo, dan, ben});
        content.list({fay, cleo, ana, dan, ben});
        QVERIFY(content.isFocusInLayer());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(content.dismissOf(ben)->hasFocus());
        QCOMPARE(content.dismissOf(ben), dismiss.data());
    }

    void comesToTheHeirWhenThePersonHasGone_data()
    {
        QTest::addColumn<bool>("isWindowActive");
        QTest::newRow("in the active window") << true;
        QTest::newRow("in the background") << false;
    }

    void comesToTheHeirWhenThePersonHasGone()
    {
        QFETCH(bool, isWindowActive);
        Covered content;
        content.list({ana, ben, cleo, dan});
        content.dismissOf(ben)->setFocus(Qt::ShortcutFocusReason);
        QWidget other;
        if (!isWindowActive) {
            other.show();
            other.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&other));
        }
        content.cover();
        content.list({ana, cleo, dan, eve, fay});
        content.uncover();
        content.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&content.window));
        QTRY_VERIFY(content.card(cleo)->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        content.refresh();
        QCOMPARE(content.listed(), QStringList({ana, cleo, dan, eve, fay}));
        QCOMPARE(content.state().selectedMatch.value()->displayName, cleo);
    }

    void comesToTheListWhenItHasBecomeEmpty()
    {
        Covered content;
        content.list({ana, ben});
        content.dismissOf(ben)->setFocus(Qt::ShortcutFocusReason);
        content.cover();
        content.list({});
        content.uncover();
        QVERIFY(content.column().hasFocus());
        content.list({eve});
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(content.card(eve)->hasFocus());
    }

    void comesBackWithoutScrollingTheListOrThePanel()
    {
        Covered content;
        content.window.resize(980, 680);
        QStringList crowd;
        for (int i = 0; i < 50; ++i)
            crowd << QStringLiteral("Person %1").arg(i);
        content.list(crowd);
        auto *const panelArea = qobject_cast<QAbstractScrollArea *>(
            content.column().parentWidget()->parentWidget()->parentWidget()->parentWidget());
        QTRY_VERIFY(panelArea->horizontalScrollBar()->maximum() > 100);
        QTest::mouseClick(content.card(crowd[0]), Qt::LeftButton, {}, {20, 5});
        QVERIFY(content.card(crowd[0])->hasFocus());
        content.column().verticalScrollBar()->setValue(1'000);
        panelArea->horizontalScrollBar()->setValue(panelArea->horizontalScrollBar()->maximum());

        content.cover();
        content.uncover();
        QVERIFY(content.card(crowd[0])->hasFocus());
        QCOMPARE(content.column().verticalScrollBar()->value(), 1'000);
        QCOMPARE(panelArea->horizontalScrollBar()->value(), panelArea->horizontalScrollBar()->maximum());
    }

    void comesBackWithTheRingThatItHad_data()
    {
        QTest::addColumn<Qt::FocusReason>("reason");
        QTest::newRow("none after a click") << Qt::MouseFocusReason;
        QTest::newRow("one after Tab") << Qt::TabFocusReason;
    }

    void comesBackWithTheRingThatItHad()
    {
        QFETCH(Qt::FocusReason, reason);
        Covered content;
        content.list({ana, ben, cleo});
        for (QWidget *const widget :
             {static_cast<QWidget *>(content.card(ana)), static_cast<QWidget *>(content.dismissOf(ana))}) {
            widget->setFocus(reason);
            const QImage before = content.card(ana)->grab().toImage();
            content.cover();
            content.uncover();
            QVERIFY(widget->hasFocus());
            QCOMPARE(content.card(ana)->grab().toImage(), before);
        }
    }

    void comesBackToAFieldWithItsSelection()
    {
        Covered content;
        auto *const email = content.named<QLineEdit>(QStringLiteral("Email"));
        email->setFocus();
        QTest::keyClicks(email, QStringLiteral("sam@example.org"));
        email->setSelection(0, 3);
        content.cover();
        QVERIFY(!email->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(email->hasFocus());
        QCOMPARE(email->selectedText(), QStringLiteral("sam"));
    }

    void escapeEnterAndSpaceDismiss()
    {
        Covered content;
        for (const auto key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            content.cover();
            QVERIFY(content.isFocusInLayer());
            QTest::keyClick(QApplication::focusWidget(), key);
            QVERIFY(!content.isCovered());
            content.refresh();
            QVERIFY(!content.isFocusInLayer());
        }
    }

    void nothingBeneathTakesIt()
    {
        Covered content;
        content.list({ana, ben});
        auto *const email = content.named<QLineEdit>(QStringLiteral("Email"));
        content.dismissOf(ben)->setFocus();
        content.cover();
        for (QWidget *const widget : {static_cast<QWidget *>(email), static_cast<QWidget *>(content.card(ana))}) {
            widget->setFocus();
            QVERIFY(content.isFocusInLayer());
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(content.isFocusInLayer());
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("x"));
        QCOMPARE(email->text(), QString());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        content.refresh();
        QVERIFY(!content.isCovered());
    }

    void aButtonThatIsHeldDownIsLetGo()
    {
        Covered content;
        content.list({ana, ben});
        auto *const dismiss = content.dismissOf(ana);
        dismiss->setFocus();
        QTest::keyPress(dismiss, Qt::Key_Space);
        QVERIFY(dismiss->isDown());
        content.cover();
        QVERIFY(!dismiss->isDown());
        QTest::keyRelease(QApplication::focusWidget(), Qt::Key_Space);
        content.uncover();
        QTest::keyRelease(dismiss, Qt::Key_Space);
        content.refresh();
        QCOMPARE(content.listed(), QStringList({ana, ben}));
    }

    void aHeldEnterDismissesNothing()
    {
        Covered content;
        content.cover();
        for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Space}) {
            QVERIFY(repeatKey(*QApplication::focusWidget(), key));
            for (auto *const layer : content.view->findChildren<CoveringLayer *>())
                repeatKey(*layer, key);
            content.refresh();
            QVERIFY(content.isCovered());
            QVERIFY(content.isFocusInLayer());
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(!content.isCovered());
    }
};

QTEST_MAIN(LayerFocusTest)
#include "LayerFocusTest.moc"
