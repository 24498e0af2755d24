#include "toolkit/Switch.h"

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QSignalSpy>
#include <QTest>

using namespace ambrel;

namespace {

const SwitchColors colors{Qt::green, Qt::gray, Qt::white, Qt::blue};

/// A switch on screen, with colours that cannot be mistaken.
class SwitchOnScreen : public Switch
{
public:
    SwitchOnScreen() : Switch(QStringLiteral("Discoverable"))
    {
        setColors(colors);
        resize(sizeHint());
        show();
        activateWindow();
    }
    QColor at(QPoint place) { return grab().toImage().pixelColor(place); }
    QPoint trackLeft() const { return {width() - 3 - 32, height() / 2}; }
    QPoint trackRight() const { return {width() - 3 - 6, height() / 2}; }
};

} // namespace

class SwitchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QCursor::setPos(1900, 1100); }

    void showsItsStateByColourAndKnob()
    {
        SwitchOnScreen toggle;
        QVERIFY(QTest::qWaitForWindowExposed(&toggle));
        QCOMPARE(toggle.at(toggle.trackLeft()), colors.knob);
        QCOMPARE(toggle.at(toggle.trackRight()), colors.trackOff);
        toggle.setChecked(true);
        QCOMPARE(toggle.at(toggle.trackLeft()), colors.trackOn);
        QCOMPARE(toggle.at(toggle.trackRight()), colors.knob);
    }

    void clickAnywhereTurnsIt()
    {
        SwitchOnScreen toggle;
        QVERIFY(QTest::qWaitForWindowExposed(&toggle));
        QSignalSpy toggled(&toggle, &Switch::toggled);
        QTest::mouseClick(&toggle, Qt::LeftButton, {}, {3, toggle.height() / 2});
        QVERIFY(toggle.isChecked());
        QTest::mouseClick(&toggle, Qt::LeftButton, {}, toggle.trackRight());
        QVERIFY(!toggle.isChecked());
        QCOMPARE(toggled.count(), 2);
    }

    void spaceTurnsIt()
    {
        SwitchOnScreen toggle;
        QVERIFY(QTest::qWaitForWindowActive(&toggle));
        toggle.setFocus();
        QTest::keyClick(&toggle, Qt::Key_Space);
        QVERIFY(toggle.isChecked());
        QTest::keyClick(&toggle, Qt::Key_Space);
        QVERIFY(!toggle.isChecked());
    }

    void disabledSwitchStays()
    {
        SwitchOnScreen toggle;
        toggle.setEnabled(false);
        QVERIFY(QTest::qWaitForWindowExposed(&toggle));
        QTest::mouseClick(&toggle, Qt::LeftButton);
        QVERIFY(!toggle.isChecked());
        QVERIFY(toggle.at(toggle.trackRight()) != colors.trackOff);
    }

    void showsHoverPressAndFocus()
    {
        SwitchOnScreen toggle;
        QVERIFY(QTest::qWaitForWindowActive(&toggle));
        const QPoint ring(toggle.width() - 3 - 19, toggle.height() / 2 - 11 - 2);
        toggle.setFocus();
        QCOMPARE(toggle.at(ring), colors.focusRing);
        toggle.clearFocus();
        QVERIFY(toggle.at(ring) != colors.focusRing);
        toggle.setFocus(Qt::MouseFocusReason); // a click shows by itself where the focus is
        QVERIFY(toggle.at(ring) != colors.focusRing);

        QTest::mouseMove(&toggle, {5, 5});
        QTRY_VERIFY(toggle.underMouse());
        const QColor hovered = toggle.at(toggle.trackRight());
        QVERIFY(hovered != colors.trackOff);
        QTest::mousePress(&toggle, Qt::LeftButton);
        const QColor pressed = toggle.at(toggle.trackRight());
        QVERIFY(pressed != hovered && pressed != colors.trackOff);
        QTest::mouseRelease(&toggle, Qt::LeftButton);
    }

    void isACheckBoxWithItsStateToScreenReaders()
    {
        SwitchOnScreen toggle;
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&toggle);
        QCOMPARE(accessible->role(), QAccessible::CheckBox);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Discoverable"));
        QVERIFY(accessible->state().checkable && !accessible->state().checked);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(toggle.isChecked());
        QVERIFY(accessible->state().checked);
    }

    void mirrorsInRightToLeftLayout()
    {
        SwitchOnScreen toggle;
        toggle.setLayoutDirection(Qt::RightToLeft);
        QVERIFY(QTest::qWaitForWindowExposed(&toggle));
        toggle.setChecked(true);
        QCOMPARE(toggle.at({3 + 6, toggle.height() / 2}), colors.knob);
        QCOMPARE(toggle.at({3 + 32, toggle.height() / 2}), colors.trackOn);
    }

    void standsAtTheRightEdgeWhenItIsWide()
    {
        SwitchOnScreen toggle;
        toggle.resize(400, toggle.height());
        QVERIFY(QTest::qWaitForWindowExposed(&toggle));
        QCOMPARE(toggle.at({400 - 3 - 6, toggle.height() / 2}), colors.trackOff);
    }
};

QTEST_MAIN(SwitchTest)
#include "SwitchTest.moc"
