// Characters that ask for their emoji form are drawn in colour, wherever somebody's text stands.
#include "toolkit/ElidedLabel.h"
#include "toolkit/WrappedLabel.h"
#include "ui/MatchViews.h"
#include "ui/ViewFixture.h"
#include "ui/layers/SeeMeAlert.h"
#include "ui/window/ContentView.h"

#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <cmath>

using namespace ambrel;

namespace {

const QString redHeart = QStringLiteral("\u2764\uFE0F");
const QString textHeart = QStringLiteral("\u2665\uFE0E");

/// How many pixels are as red as the heart of the colour font; the brand's red is duller.
int redPixels(QWidget &widget)
{
    const QImage image = widget.grab().toImage();
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            found += color.red() > 220 && color.green() < 100 && color.blue() < 100 ? 1 : 0;
        }
    }
    return found;
}

/// How wide a text is drawn in the font of all labels.
int widthOf(const QString &text)
{
    const QFont font = QApplication::font();
    [&] { QTRY_VERIFY(!TextLines::wrapped(text, font, 1000).waitsForFonts()); }();
    return TextLines::wrapped(text, font, 1000).width();
}

} // namespace

class EmojiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void aRedHeartIsRedWhereverItStands()
    {
        ViewFixture<ContentView> content({1280, 900});
        const auto show = [&content](const QString &heart) {
            content.state().displayName = heart;
            content.state().profileBio = heart;
            content.state().statusText = heart;
            auto match = person(heart);
            match.profileBio = heart;
            content.state().matches = {match};
            content.state().selectedMatch = match;
            SeeMeMessage message;
            message.body = heart;
            content.state().incomingSeeMe = message;
            content.refresh();
        };
        const auto places = [&] {
            QList<QWidget *> found{content.named<QLineEdit>(QStringLiteral("Display name")),
                                   content.named<QPlainTextEdit>(QStringLiteral("Bio"))};
            for (auto *const label : content.window.findChildren<TextLabel *>()) {
                const bool isSeen = !label->visibleRegion().isEmpty();
                if (isSeen && (label->text().contains(redHeart) || label->text().contains(textHeart)))
                    found << label;
            }
            return found;
        };
        show(redHeart);
        QVERIFY(places().size() >= 9);
        for (QWidget *const place : places())
            QTRY_VERIFY2(redPixels(*place) > 20, place->metaObject()->className());
        show(textHeart);
        for (QWidget *const place : places())
            QTRY_VERIFY2(redPixels(*place) == 0, place->metaObject()->className());
    }

    void aSequenceIsOneEmoji_data()
    {
        QTest::addColumn<QString>("sequence");
        QTest::newRow("heart") << redHeart;
        QTest::newRow("sun") << QStringLiteral("\u2600\uFE0F");
        QTest::newRow("keycap") << QStringLiteral("1\uFE0F\u20E3");
        QTest::newRow("keycap without a selector") << QStringLiteral("#\u20E3");
        QTest::newRow("heart on fire") << QStringLiteral("\u2764\uFE0F\u200D\U0001F525");
        QTest::newRow("couple") << QStringLiteral("\U0001F469\u200D\u2764\uFE0F\u200D\U0001F468");
        QTest::newRow("skin tone") << QStringLiteral("\u261D\U0001F3FD");
        QTest::newRow("rainbow flag") << QStringLiteral("\U0001F3F3\uFE0F\u200D\U0001F308");
    }
    void aSequenceIsOneEmoji()
    {
        QFETCH(const QString, sequence);
        const int one = widthOf(QStringLiteral("\U0001F600"));
        QVERIFY(one > 5);
        QVERIFY(std::abs(widthOf(sequence) - one) <= 1);
        QVERIFY(std::abs(widthOf(QStringLiteral("ab1") + sequence + QStringLiteral("2")) -
                         widthOf(QStringLiteral("ab12")) - one) <= 2);
    }

    void aFieldKeepsItsEmojiInColorWhileItIsEdited()
    {
        ViewFixture<ContentView> content({1280, 900});
        auto *const name = content.named<QLineEdit>(QStringLiteral("Display name"));
        name->setFocus();
        name->insert(QStringLiteral("12 ") + redHeart + QStringLiteral(" 34"));
        QVERIFY(redPixels(*name) > 20);
        QTest::keyClick(name, Qt::Key_Home);
        QTest::keyClicks(name, QStringLiteral("Sam "));
        const int whole = redPixels(*name);
        QVERIFY(whole > 20);
        QInputMethodEvent composition(QStringLiteral("か"), {});
        QCoreApplication::sendEvent(name, &composition);
        QInputMethodEvent commit;
        commit.setCommitString(QStringLiteral("か"));
        QCoreApplication::sendEvent(name, &commit);
        QCOMPARE(name->text(), QStringLiteral("Sam か12 ") + redHeart + QStringLiteral(" 34"));
        QCOMPARE(redPixels(*name), whole);

        name->setCursorPosition(int(name->text().indexOf(redHeart) + redHeart.size()));
        QTest::keyClick(name, Qt::Key_Backspace);
        QVERIFY(!name->text().contains(redHeart));
        QLineEdit plain(&content.window); // what stood behind the heart looks as it always does
        plain.setGeometry(name->geometry());
        plain.setText(name->text());
        const auto look = [](QLineEdit &field) {
            field.clearFocus();
            field.setCursorPosition(0);
            return field.grab().toImage();
        };
        QCOMPARE(look(*name), look(plain));
    }
};

QTEST_MAIN(EmojiTest)
#include "EmojiTest.moc"
