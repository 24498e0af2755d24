#include "ui/Contrast.h"
#include "gallery/SceneWindow.h"
#include "gallery/TextRecorder.h"
#include "ui/Pixels.h"

#include <QTest>
#include <utility>

using namespace ambrel;

namespace {

/// The worst contrast that a text has with any pixel it lies on.
double worstContrast(const DrawnText &text, const QImage &background)
{
    double worst = 21;
    QRgb last = 0; // neighbours are often equal
    for (int y = text.box.top(); y <= text.box.bottom(); ++y) {
        for (int x = text.box.left(); x <= text.box.right(); ++x) {
            const QRgb behind = background.pixel(x, y);
            if (std::exchange(last, behind) != behind)
                worst = std::min(worst, contrast(over(text.color, QColor(behind)).rgb(), behind));
        }
    }
    return worst;
}

/// 3:1 will do for letters of 24 pixels, and for bold ones of 18.66 pixels.
double required(const QFont &font)
{
    const bool isLarge = font.pixelSize() >= 24 || (font.pixelSize() >= 19 && font.bold());
    return isLarge ? 3.0 : 4.5;
}

/// A pair of given colours that falls short; `contrast` is what it reaches at least.
struct Shortfall
{
    QString scene;
    QString text;
    double contrast;
};

const QList<Shortfall> &shortfalls()
{
    static const QList<Shortfall> known = {
        // White on the primary button's red at 78 %, for as long as the button is held down.
        {QStringLiteral("button-pressed"), QStringLiteral("See Me"), 3.4},
    };
    return known;
}

double allowed(const Scene &scene, const DrawnText &text)
{
    for (const Shortfall &known : shortfalls()) {
        if (known.scene == scene.name && known.text == text.text)
            return known.contrast;
    }
    return required(text.font);
}

QStringList tooFaint(const Scene &scene, const TakenApart &window)
{
    QStringList found;
    for (const DrawnText &text : window.texts) {
        const double reached = worstContrast(text, window.background);
        if (reached < allowed(scene, text))
            found += QStringLiteral("%1: \"%2\" at %3,%4 in %5 has %6:1")
                         .arg(scene.name, text.text.left(40))
                         .arg(text.box.x())
                         .arg(text.box.y())
                         .arg(text.color.name(QColor::HexArgb))
                         .arg(reached, 0, 'f', 2);
    }
    return found;
}

} // namespace

class ContrastTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextStandsOutFromWhatIsBehindIt_data()
    {
        QTest::addColumn<QString>("scene");
        QTest::addColumn<QSize>("size");
        const auto add = [](const char *sceneName, const QSize &size) {
            const QString scene = QString::fromLatin1(sceneName);
            const QString name = QStringLiteral("%1 at %2 x %3").arg(scene).arg(size.width()).arg(size.height());
            QTest::newRow(qPrintable(name)) << scene << size;
        };
        for (const char *const scene : {"first-run", "errors", "live-3", "selected-mile"}) {
            for (const QSize &size : {smallestWindow, comfortableWindow, largeWindow})
                add(scene, size);
        }
        for (const char *const scene :
             {"busy", "broken-photo", "paused", "button-pressed", "alert", "flash-white", "flash-red"})
            add(scene, comfortableWindow);
    }

    void everyTextStandsOutFromWhatIsBehindIt()
    {
        QFETCH(QString, scene);
        QFETCH(QSize, size);
        SceneWindow window(sceneNamed(scene), size);
        window.settle();
        const TakenApart taken = takeTextOff(window.widget());
        QVERIFY(!taken.texts.isEmpty());
        const QStringList found = tooFaint(sceneNamed(scene), taken);
        QVERIFY2(found.isEmpty(), qPrintable(found.join(u'\n')));
    }

    void everyShortfallIsReal()
    {
        for (const Shortfall &known : shortfalls()) {
            SceneWindow window(sceneNamed(known.scene));
            window.settle();
            const TakenApart taken = takeTextOff(window.widget());
            const bool falls = std::any_of(taken.texts.begin(), taken.texts.end(), [&](const DrawnText &text) {
                return text.text == known.text && worstContrast(text, taken.background) < required(text.font);
            });
            QVERIFY2(falls, qPrintable(known.scene));
        }
    }

    void theMeasureFindsFaintText()
    {
        QCOMPARE(contrast(qRgb(0, 0, 0), qRgb(255, 255, 255)), 21.0);
        SceneWindow window(sceneNamed(QStringLiteral("first-run")));
        window.settle();
        const TakenApart taken = takeTextOff(window.widget());
        // Nothing but the text is missing.
        const QImage whole = window.picture().convertToFormat(QImage::Format_RGB32);
        QRegion texts;
        for (const DrawnText &text : taken.texts)
            texts += text.box.adjusted(-2, -2, 2, 2);
        for (int y = 0; y < whole.height(); y += 3) {
            for (int x = 0; x < whole.width(); x += 3) {
                if (!texts.contains(QPoint(x, y)))
                    COMPARE_COLORS(taken.background.pixelColor(x, y), whole.pixelColor(x, y));
            }
        }
        DrawnText faint = taken.texts.first();
        faint.color = QColor(200, 200, 200);
        QVERIFY(worstContrast(faint, taken.background) < 2);
    }
};

int main(int argc, char **argv)
{
    SceneApplication application(argc, argv);
    ContrastTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ContrastTest.moc"
