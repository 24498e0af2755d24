#include "toolkit/ElidedLabel.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>

using namespace ambrel;

namespace {

/// A shown label that the pointer rests on.
class HoveredLabel
{
public:
    HoveredLabel(const QString &text, int width) : m_label(text)
    {
        QToolTip::hideText();
        QTRY_VERIFY(!toolTip());
        m_label.resize(width, 20);
        m_label.show();
        QVERIFY(QTest::qWaitForWindowExposed(&m_label));
        QHelpEvent event(QEvent::ToolTip, {5, 5}, m_label.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&m_label, &event);
    }

    /// The tooltip on the screen; null when there is none.
    static const QWidget *toolTip()
    {
        for (const QWidget *const widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowType() == Qt::ToolTip)
                return widget;
        }
        return nullptr;
    }

private:
    ElidedLabel m_label;
};

} // namespace

class ElidedToolTipTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCutTextIsShownWholeAsPlainText()
    {
        const QString text = QStringLiteral("<b>Ana</b> & friends &amp; 5 < 6");
        const HoveredLabel label(text, 40);
        QTextDocument document;
        document.setHtml(QToolTip::text());
        QCOMPARE(document.toPlainText(), text);
    }

    void aTextThatFitsNeedsNoTooltip()
    {
        for (const QString &text : {QStringLiteral("Ana"), QStringLiteral("Ana\u2026"), QStringLiteral("Ana\nMaria")}) {
            const HoveredLabel label(text, 400);
            QVERIFY(!label.toolTip());
        }
    }

    void hugeTextsStayOfASensibleSize_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("words") << QStringLiteral("Long walks, longer letters. ").repeated(2000);
        QTest::newRow("one word") << QStringLiteral("W").repeated(50'000);
        QTest::newRow("lines") << QStringLiteral("a\n").repeated(5000);
    }

    void hugeTextsStayOfASensibleSize()
    {
        QFETCH(const QString, text);
        const HoveredLabel label(text, 40);
        const QWidget *const tip = label.toolTip();
        QVERIFY(tip);
        QVERIFY2(tip->width() < 420 && tip->height() < 360,
                 qPrintable(QStringLiteral("%1 x %2").arg(tip->width()).arg(tip->height())));
    }
};

QTEST_MAIN(ElidedToolTipTest)
#include "ElidedToolTipTest.moc"
