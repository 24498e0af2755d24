#include "ui/HeldKey.h"
#include "ui/Pixels.h"
#include "ui/look/AmbrelButton.h"
#include "ui/look/Theme.h"

#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTest>

using namespace ambrel;

namespace {

const QColor ground(40, 90, 160);

/// A window with a plain ground and a row of buttons.
template <typename Left, typename Right>
struct ButtonRow
{
    QWidget window;
    Left *left;
    Right *right;

    ButtonRow(const QString &leftLabel, const QString &rightLabel, int width = 300)
        : left(new Left(leftLabel, &window)), right(new Right(rightLabel, &window))
    {
        QPalette palette;
        palette.setColor(QPalette::Window, ground);
        window.setPalette(palette);
        auto *const row = new QHBoxLayout(&window);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(theme::buttonRowSpacing);
        row->addWidget(left);
        row->addWidget(right);
        window.resize(width, 40);
        window.move(20, 20);
        window.show();
        const bool isShown = QTest::qWaitForWindowExposed(&window);
        Q_ASSERT(isShown);
        QCursor::setPos(1800, 1100); // nothing is hovered
        QCoreApplication::processEvents();
    }
};

using Row = ButtonRow<AmbrelPrimaryButton, AmbrelSecondaryButton>;

/// Where a button shows its background and no letter.
constexpr QPoint besideLabel{8, 20};

bool showsRing(const QWidget &button)
{
    return distance(shownAt(button, {20, 3}), shownAt(button, besideLabel)) > 4;
}

} // namespace

class ButtonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoButtonsSideBySideShareTheRowEqually()
    {
        Row mixed(QStringLiteral("Go"), QStringLiteral("A label that is much longer than its share"));
        QCOMPARE(mixed.left->width(), 146);
        QCOMPARE(mixed.right->width(), 146);
        QCOMPARE(mixed.left->height(), 40);

        ButtonRow<AmbrelSecondaryButton, AmbrelSecondaryButton> alike(QStringLiteral("Continue"), QStringLiteral("No"));
        QCOMPARE(alike.left->width(), alike.right->width());
    }

    void primaryButtonIsSolidRedAtRest()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        COMPARE_COLORS(shownAt(*row.left, besideLabel), QColor(200, 63, 50));
    }

    void holdingAPrimaryButtonShowsTheRedAt78PercentUntilRelease()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        QTest::mousePress(row.left, Qt::LeftButton, {}, besideLabel);
        COMPARE_COLORS(shownAt(*row.left, besideLabel), over(QColor::fromRgbF(0.784F, 0.247F, 0.196F, 0.78F), ground));
        QTest::mouseRelease(row.left, Qt::LeftButton, {}, besideLabel);
        QCursor::setPos(1800, 1100);
        QTRY_COMPARE(shownAt(*row.left, besideLabel), QColor(200, 63, 50));
    }

    void secondaryButtonIsTranslucentWhite()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        COMPARE_COLORS(shownAt(*row.right, besideLabel), over(QColor::fromRgbF(1, 1, 1, 0.74F), ground));
        QTest::mousePress(row.right, Qt::LeftButton, {}, besideLabel);
        COMPARE_COLORS(shownAt(*row.right, besideLabel), over(QColor::fromRgbF(1, 1, 1, 0.55F), ground));
        QTest::mouseRelease(row.right, Qt::LeftButton, {}, besideLabel);
    }

    void labelsHaveTheirExactColors()
    {
        Row row(QString(QChar(0x2588)).repeated(4), QString(QChar(0x2588)).repeated(4)); // solid blocks
        COMPARE_COLORS(shownAt(*row.left, row.left->rect().center()), QColor(Qt::white));
        COMPARE_COLORS(shownAt(*row.right, row.right->rect().center()), QColor::fromRgbF(0.52F, 0.1F, 0.06F));
    }

    void disabledButtonsLookLikeEnabledOnes()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        row.left->clearFocus();
        const QImage enabled = row.window.grab().toImage();
        row.left->setEnabled(false);
        row.right->setEnabled(false);
        row.right->clearFocus();
        QCOMPARE(row.window.grab().toImage(), enabled);
    }

    void enterAndSpaceBothActivateOnce()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        const QSignalSpy clicks(row.left, &QPushButton::clicked);
        row.left->setFocus();
        QTest::keyClick(row.left, Qt::Key_Return);
        QCOMPARE(clicks.size(), 1);
        QTest::keyClick(row.left, Qt::Key_Enter);
        QCOMPARE(clicks.size(), 2);
        QTest::keyClick(row.left, Qt::Key_Space);
        QCOMPARE(clicks.size(), 3);
        for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
            QVERIFY(repeatKey(*row.left, key)); // and nobody around the button gets to see it
            QCOMPARE(clicks.size(), 3);
        }
        QTest::keyPress(row.left, Qt::Key_Space);
        QVERIFY(repeatKey(*row.left, Qt::Key_Space));
        QTest::keyRelease(row.left, Qt::Key_Space);
        QCOMPARE(clicks.size(), 4);
        row.left->setEnabled(false);
        QTest::keyClick(row.left, Qt::Key_Return);
        QCOMPARE(clicks.size(), 4);
    }

    void hoveringShows()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        const QColor rest = shownAt(*row.left, besideLabel);
        QTest::mouseMove(row.left, besideLabel);
        QTRY_VERIFY(distance(shownAt(*row.left, besideLabel), rest) > 4);
    }

    void focusShowsARing()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        row.window.activateWindow();
        const QPoint onRing(20, 3);
        row.left->setFocus();
        QTRY_VERIFY(row.left->hasFocus());
        COMPARE_COLORS(shownAt(*row.left, onRing), QColor(Qt::white));
        row.right->setFocus();
        COMPARE_COLORS(shownAt(*row.left, onRing), QColor(200, 63, 50));
        COMPARE_COLORS(shownAt(*row.right, onRing), QColor::fromRgbF(0.52F, 0.1F, 0.06F));
    }

    void ringShowsForTheKeyboardButNotForAClick()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        row.window.activateWindow();
        QTRY_VERIFY(row.window.isActiveWindow());
        row.right->setFocus();
        QTest::mouseClick(row.left, Qt::LeftButton);
        QVERIFY(row.left->hasFocus());
        QVERIFY(!showsRing(*row.left));
        for (const auto reason :
             {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason, Qt::OtherFocusReason}) {
            row.right->setFocus(Qt::MouseFocusReason);
            QVERIFY(!showsRing(*row.right));
            row.left->setFocus(reason);
            QVERIFY(showsRing(*row.left));
        }
    }

    void focusThatComesBackShowsARingIfItDidBefore()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        row.window.activateWindow();
        QTRY_VERIFY(row.window.isActiveWindow());
        for (const auto reason : {Qt::MouseFocusReason, Qt::TabFocusReason}) {
            row.right->setFocus();
            row.left->setFocus(reason);
            for (const auto way : {Qt::PopupFocusReason, Qt::ActiveWindowFocusReason}) {
                row.right->setFocus(way);
                QVERIFY(!showsRing(*row.left));
                row.left->setFocus(way);
                QCOMPARE(showsRing(*row.left), reason == Qt::TabFocusReason);
            }
        }
    }

    void longLabelsShrinkBeforeTheyAreCut()
    {
        const QString label = QStringLiteral("MMMMMMMMMM");
        AmbrelPrimaryButton button(label);
        const int natural = QFontMetrics(button.font()).horizontalAdvance(label);
        const auto letterColumns = [&button](int width) {
            button.resize(width, 40);
            const QImage image = button.grab().toImage();
            int columns = 0;
            for (int x = 4; x < width - 4; ++x) {
                for (int y = 8; y < 32; ++y) {
                    if (image.pixelColor(x, y).blue() > 140) {
                        ++columns;
                        break;
                    }
                }
            }
            return columns;
        };
        const int room = int(natural * 0.8);
        QVERIFY(letterColumns(room + 2 * theme::buttonLabelMargin) <= room); // all ten letters, smaller
        const int margin = 2 * theme::buttonLabelMargin;
        QVERIFY(letterColumns(natural + margin) > letterColumns(room + margin));
        QVERIFY(letterColumns(natural / 2 + margin) <= natural / 2); // cut, never outside
    }

    void cornersAreRounded()
    {
        Row row(QStringLiteral("Go"), QStringLiteral("Pause"));
        COMPARE_COLORS(shownAt(*row.left, {0, 0}), ground);
        COMPARE_COLORS(shownAt(*row.left, {1, 1}), ground);              // outside a radius of 8
        COMPARE_COLORS(shownAt(*row.left, {3, 3}), QColor(200, 63, 50)); // inside it
        COMPARE_COLORS(shownAt(*row.left, {8, 0}), QColor(200, 63, 50));
    }
};

QTEST_MAIN(ButtonTest)
#include "ButtonTest.moc"
