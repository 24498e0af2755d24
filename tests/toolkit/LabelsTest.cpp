#include "toolkit/BidiIsolation.h"
#include "toolkit/ElidedLabel.h"
#include "toolkit/WrappedLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>

using namespace ambrel;

namespace {

const QString prose = QStringLiteral("Likes long walks, short films and a good espresso in the morning. ").repeated(4);
const QString hebrew = QStringLiteral("\u05e9\u05dc\u05d5\u05dd");

/// Everything that is drawn in a label, as a rectangle in the label's pixels.
QRect ink(QWidget &label)
{
    const QImage image = label.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRgb background = image.pixel(image.width() - 1, image.height() - 1);
    QRect found;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != background)
                found |= QRect(x, y, 1, 1);
    return found;
}

/// Counts the events of one kind that reach an object.
class EventCounter : public QObject
{
public:
    EventCounter(QObject &target, QEvent::Type type) : m_type(type) { target.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == m_type ? 1 : 0;
        return false;
    }
    int count = 0;

private:
    QEvent::Type m_type;
};

} // namespace

class LabelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrappedTextIsExactlyAsHighAsItSaysAtEveryWidth()
    {
        WrappedLabel label(prose + QStringLiteral("\u4f60\u597d \U0001F469\u200D\U0001F469\u200D\U0001F467 ") + hebrew);
        label.setAlignment(Qt::AlignLeading | Qt::AlignTop);
        QTRY_VERIFY(!TextLines::wrapped(label.text(), label.font(), 300).waitsForFonts());
        int previous = QWIDGETSIZE_MAX;
        for (int width = 40; width < 700; width += 33) {
            const int height = label.heightForWidth(width);
            QVERIFY(height <= previous);
            previous = height;
            label.resize(width, height);
            const QRect exact = ink(label);
            label.resize(width, height + 60);
            QCOMPARE(ink(label), exact);
            QVERIFY(exact.bottom() > height - 2 * label.fontMetrics().lineSpacing());
        }
    }

    void wrappedTextNeverReachesBeyondItsWidth()
    {
        const QString text = prose + QString(300, u'W') + QStringLiteral(" end");
        for (const int width : {30, 77, 200, 613}) {
            const TextLines lines = TextLines::wrapped(text, QApplication::font(), width);
            QVERIFY(lines.width() <= width);
            QVERIFY(lines.lineCount() > 1);
        }
        QCOMPARE(TextLines::wrapped(text, QApplication::font(), 0).shownText(), text);
    }

    void wrappedTextKeepsItsLineBreaks()
    {
        const auto count = [](const QString &text) {
            return TextLines::wrapped(text, QApplication::font(), 500).lineCount();
        };
        QCOMPARE(count(QStringLiteral("one")), 1);
        QCOMPARE(count(QStringLiteral("one\ntwo")), 2);
        QCOMPARE(count(QStringLiteral("one\r\ntwo\u2028three")), 3);
        QCOMPARE(count(QStringLiteral("one\n\nthree\n")), 4);
        QCOMPARE(count(QString()), 1);
        WrappedLabel empty;
        QCOMPARE(empty.heightForWidth(100), WrappedLabel(QStringLiteral("one")).heightForWidth(100));
    }

    void longWordDoesNotForceTheWindowWide()
    {
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        auto *wrapped = new WrappedLabel(QString(300, u'm'), &window);
        auto *elided = new ElidedLabel(QString(5000, u'm'), &window);
        layout->addWidget(wrapped);
        layout->addWidget(elided);
        layout->addStretch();
        window.resize(200, 900);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.width(), 200);
        QVERIFY(wrapped->minimumSizeHint().width() < 20);
        QVERIFY(elided->minimumSizeHint().width() < 20);
        QVERIFY(elided->sizeHint().width() < 1000);
        QCOMPARE(wrapped->height(), wrapped->heightForWidth(wrapped->width()));
    }

    void elidedTextThatFitsIsShownWhole()
    {
        ElidedLabel label(QStringLiteral("Maximilian"));
        QCOMPARE(TextLines::elided(label.text(), label.font(), label.sizeHint().width(), 1).shownText(), label.text());
        QCOMPARE(TextLines::elided(QString(), label.font(), 100, 1).shownText(), QString());
    }

    void elidedTextEndsInAnEllipsis()
    {
        for (int width = 20; width < 300; width += 7) {
            const TextLines line = TextLines::elided(prose, QApplication::font(), width, 1);
            QCOMPARE(line.lineCount(), 1);
            QVERIFY(line.width() <= width);
            QVERIFY(line.shownText().endsWith(u'\u2026'));
            QVERIFY(!line.shownText().endsWith(QStringLiteral(" \u2026")));
            QVERIFY(prose.startsWith(line.shownText().chopped(1)));
        }
        QCOMPARE(TextLines::elided(prose, QApplication::font(), 0, 1).lineCount(), 1);
    }

    void elidedTextFillsItsLinesBeforeItEnds()
    {
        const TextLines two = TextLines::elided(QString(500, u'x'), QApplication::font(), 200, 2);
        const TextLines one = TextLines::elided(QString(500, u'x'), QApplication::font(), 200, 1);
        QCOMPARE(two.lineCount(), 2);
        QVERIFY(two.shownText().size() >= 2 * one.shownText().size() - 1);
        QVERIFY(two.shownText().endsWith(u'\u2026'));
        QVERIFY(two.width() > 190);
        QCOMPARE(two.height(), 2 * one.height());
    }

    void oneLineShowsControlCharactersAsBlanks()
    {
        const QString hostile = QStringLiteral("a\nb\tc") + QChar(0) + QStringLiteral("d\r\ne\u2029f\u0085g\u007fh");
        const TextLines line = TextLines::elided(hostile, QApplication::font(), 500, 1);
        QCOMPARE(line.shownText(), QStringLiteral("a b c d e f g h"));
        QCOMPARE(line.lineCount(), 1);
        QCOMPARE(ElidedLabel(hostile).sizeHint(), ElidedLabel(QStringLiteral("a b c d e f g h")).sizeHint());
        QCOMPARE(ElidedLabel(hostile).text(), hostile);
    }

    void severalLinesKeepLineBreaksAndCountThem()
    {
        const auto elide = [](const QString &text) { return TextLines::elided(text, QApplication::font(), 500, 2); };
        QCOMPARE(elide(QStringLiteral("one\ntwo")).shownText(), QStringLiteral("one\ntwo"));
        QCOMPARE(elide(QStringLiteral("one\ntwo")).lineCount(), 2);
        QCOMPARE(elide(QStringLiteral("one\ntwo\nthree")).shownText(), QStringLiteral("one\ntwo\u2026"));
        QCOMPARE(elide(QStringLiteral("one\n\nthree")).shownText(), QStringLiteral("one\n\u2026"));
        QCOMPARE(elide(QString(100'000, u'\n')).lineCount(), 2);
    }

    void severalLinesAskForTheHeightTheyNeed()
    {
        ElidedLabel label(QStringLiteral("short"));
        label.setMaximumLines(2);
        const int line = label.heightForWidth(300);
        label.setText(prose);
        QCOMPARE(label.heightForWidth(300), 2 * line);
        QCOMPARE(label.heightForWidth(100'000), line);
    }

    void rightToLeftTextLeadsFromTheRight()
    {
        WrappedLabel wrapped(hebrew);
        ElidedLabel elided(hebrew);
        for (TextLabel *label : {static_cast<TextLabel *>(&wrapped), static_cast<TextLabel *>(&elided)}) {
            label->resize(200, 30);
            QVERIFY(ink(*label).left() > 100);
            label->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
            QVERIFY(ink(*label).right() < 100);
        }
        ElidedLabel cut(hebrew.repeated(50));
        cut.resize(200, 30);
        const QRect drawn = ink(cut);
        QVERIFY(drawn.left() >= 0 && drawn.left() < 20 && drawn.right() > 190);
    }

    void wrappedRightToLeftTextIsNotCutAtEitherSide()
    {
        WrappedLabel label((hebrew + u' ').repeated(20));
        for (int width = 60; width < 200; width += 7) {
            label.setContentsMargins(0, 0, 0, 0);
            label.resize(width, label.heightForWidth(width));
            const QRect drawn = ink(label);
            label.setContentsMargins(30, 0, 30, 0);
            label.resize(width + 60, label.heightForWidth(width + 60));
            QCOMPARE(ink(label), drawn.translated(30, 0));
        }
    }

    void isolatedRightToLeftTextLeadsFromTheLeft()
    {
        ElidedLabel label(isolated(hebrew));
        label.resize(200, 30);
        QVERIFY(ink(label).right() < 100);
    }

    void joinedEmojiAreDrawnAsOne()
    {
        QFont font;
        font.setFamilies({QStringLiteral("Inter"), QStringLiteral("Noto Color Emoji")});
        const auto widthOf = [&font](const QString &text) {
            const auto lines = [&] { return TextLines::wrapped(text, font, 1000); };
            return QTest::qWaitFor([&] { return !lines().waitsForFonts(); }) ? lines().width() : -1;
        };
        const int one = widthOf(QStringLiteral("\U0001F308"));
        QVERIFY(one > 5);
        QCOMPARE(widthOf(QStringLiteral("\U0001F3F3\uFE0F\u200D\U0001F308")), one);           // rainbow flag
        QCOMPARE(widthOf(QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467")), one); // family
    }

    void alignmentMovesTheText()
    {
        WrappedLabel label(QStringLiteral("one\nlonger"));
        label.resize(200, 200);
        label.setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
        const QPoint centre = ink(label).center();
        QVERIFY(std::abs(centre.x() - 100) < 4 && std::abs(centre.y() - 100) < 8);
        label.setAlignment(Qt::AlignRight | Qt::AlignBottom);
        QVERIFY(ink(label).right() > 190 && ink(label).bottom() > 180);
        label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
        QVERIFY(ink(label).left() < 10 && ink(label).top() < 10);
    }

    void textIsDrawnInThePalettesColour()
    {
        ElidedLabel label(QStringLiteral("\u2588\u2588\u2588"));
        QPalette palette = label.palette();
        palette.setColor(QPalette::WindowText, QColor(200, 30, 60));
        palette.setColor(QPalette::PlaceholderText, QColor(20, 130, 60));
        label.setPalette(palette);
        label.resize(label.sizeHint());
        QCOMPARE(label.grab().toImage().pixelColor(label.rect().center()), QColor(200, 30, 60));
        label.setForegroundRole(QPalette::PlaceholderText);
        QCOMPARE(label.grab().toImage().pixelColor(label.rect().center()), QColor(20, 130, 60));
    }

    void equalTextNeitherPaintsNorLaysOut()
    {
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        auto *wrapped = new WrappedLabel(prose, &window);
        auto *elided = new ElidedLabel(prose, &window);
        layout->addWidget(wrapped);
        layout->addWidget(elided);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents();
        EventCounter paints(*wrapped, QEvent::Paint), morePaints(*elided, QEvent::Paint);
        EventCounter layouts(window, QEvent::LayoutRequest);
        const qsizetype work = wrapped->laidOutCharacters() + elided->laidOutCharacters();
        wrapped->setText(QString(prose));
        elided->setText(QString(prose));
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCOMPARE(paints.count + morePaints.count + layouts.count, 0);
        QCOMPARE(wrapped->laidOutCharacters() + elided->laidOutCharacters(), work);
        wrapped->setText(QStringLiteral("other"));
        QTRY_VERIFY(paints.count > 0 && layouts.count > 0);
    }

    void textOfTheSameSizeLaysNothingElseOut()
    {
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        auto *label = new ElidedLabel(QStringLiteral("120 m"), &window);
        layout->addWidget(label);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents();
        EventCounter layouts(window, QEvent::LayoutRequest);
        EventCounter paints(*label, QEvent::Paint);
        label->setText(QStringLiteral("210 m"));
        QTRY_COMPARE(paints.count, 1);
        QCOMPARE(layouts.count, 0);
    }

    void labelsAreStaticTextNamedForTheirText()
    {
        WrappedLabel wrapped(QStringLiteral("<b>Sam</b> & co"));
        ElidedLabel elided(prose);
        elided.resize(30, 20);
        const auto *first = QAccessible::queryAccessibleInterface(&wrapped);
        const auto *second = QAccessible::queryAccessibleInterface(&elided);
        QCOMPARE(first->role(), QAccessible::StaticText);
        QCOMPARE(second->role(), QAccessible::StaticText);
        QCOMPARE(first->text(QAccessible::Name), QStringLiteral("<b>Sam</b> & co"));
        QCOMPARE(second->text(QAccessible::Name), prose);
        elided.setText(QStringLiteral("Ready."));
        QCOMPARE(second->text(QAccessible::Name), QStringLiteral("Ready."));
        elided.setAccessibleDescription(QStringLiteral("Status"));
        QCOMPARE(second->text(QAccessible::Description), QStringLiteral("Status"));
    }
};

QTEST_MAIN(LabelsTest)
#include "LabelsTest.moc"
