// Context menus and tooltips.
#include "ui/Pixels.h"
#include "ui/look/AmbrelStyle.h"
#include "ui/look/Theme.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QToolTip>

using namespace ambrel;

namespace {

/// Round corners: what lies beyond them is not part of the popup.
bool isRounded(const QWidget &popup)
{
    return !popup.mask().contains(QPoint(0, 0)) && popup.mask().contains(QPoint(8, 0)) &&
           popup.mask().contains(popup.rect().center());
}

} // namespace

class PopupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void aFieldsMenuIsRoundLightAndHighlightsInTheBrandsRed()
    {
        QLineEdit field;
        field.setText(QStringLiteral("Sam"));
        field.show();
        QVERIFY(QTest::qWaitForWindowExposed(&field));
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, field.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&field, &event);
        QTRY_VERIFY(QApplication::activePopupWidget());
        auto &menu = *qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(isRounded(menu));
        COMPARE_COLORS(menu.grab().toImage().pixelColor(menu.width() - 8, menu.height() / 2), theme::popupFill);

        const auto choosable = menu.actions().last(); // "Select All"
        menu.setActiveAction(choosable);
        const QRect row = menu.actionGeometry(choosable);
        QVERIFY(row.height() >= 24);
        COMPARE_COLORS(menu.grab().toImage().pixelColor(row.right() - 8, row.center().y()), theme::controlAccent);
        QCOMPARE(menu.palette().color(QPalette::Disabled, QPalette::Text), theme::placeholderText);
        menu.close();
    }

    void aTooltipIsRoundAndLight()
    {
        QWidget window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QToolTip::showText(window.mapToGlobal(QPoint(20, 20)), QStringLiteral("Close"), &window);
        QWidget *tip = nullptr;
        for (auto *const widget : QApplication::topLevelWidgets()) {
            if (widget->windowType() == Qt::ToolTip && widget->isVisible())
                tip = widget;
        }
        QVERIFY(tip);
        QVERIFY(isRounded(*tip));
        COMPARE_COLORS(tip->grab().toImage().pixelColor(3, tip->height() / 2), theme::popupFill);
        QCOMPARE(tip->font().pixelSize(), 12);
        QVERIFY(tip->height() >= QFontMetrics(tip->font()).height() + 10);
    }
};

QTEST_MAIN(PopupTest)
#include "PopupTest.moc"
