#include "gallery/GoldenImages.h"
#include "gallery/SceneWindow.h"
#include "toolkit/LazyColumn.h"
#include "ui/layers/SeeMeAlert.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/people/MatchCard.h"
#include "ui/people/WarmthMeter.h"
#include "ui/profile/ProfilePanel.h"
#include "ui/sidebar/SidebarView.h"

#include <QDir>
#include <QPainter>
#include <QPushButton>
#include <QTest>

using namespace ambrel;

namespace {

/// The mark in the four sizes in which it is used, in one colouring.
QImage markInAllSizes(bool inverted)
{
    constexpr int margin = 12;
    QImage sheet(52 + 82 + 94 + 160 + 5 * margin, 160 + 2 * margin, QImage::Format_RGB32);
    sheet.fill(inverted ? QColor(200, 63, 50) : QColor(Qt::white));
    QPainter painter(&sheet);
    painter.translate(margin, margin);
    for (const int size : {52, 82, 94, 160}) {
        AmbrelLogo::paint(painter, size, inverted);
        painter.translate(size + margin, 0);
    }
    return sheet;
}

QImage part(const char *scene, QWidget &(*choose)(const SceneWindow &))
{
    const SceneWindow window(sceneNamed(QString::fromLatin1(scene)));
    return window.picture().copy(window.placeOf(choose(window)));
}

QImage whole(const char *scene)
{
    return SceneWindow(sceneNamed(QString::fromLatin1(scene)), smallestWindow).picture();
}

template <typename View>
QWidget &the(const SceneWindow &window)
{
    return window.find<View>();
}

template <int index>
QWidget &card(const SceneWindow &window)
{
    const auto &list = window.find<LazyColumn>();
    for (auto *const candidate : list.findChildren<MatchCard *>()) {
        if (candidate->isVisible() && candidate->y() / candidate->height() == index)
            return *candidate;
    }
    qFatal("there is no such card");
}

QWidget &alertSheet(const SceneWindow &window)
{
    return *window.find<SeeMeAlert>().findChild<QPushButton *>()->parentWidget();
}

struct Subject
{
    const char *name;
    QImage (*draw)();
};

const Subject subjects[] = {
    {"mark", [] { return markInAllSizes(false); }},
    {"mark-inverted", [] { return markInAllSizes(true); }},
    {"sidebar-first-run", [] { return part("first-run", the<SidebarView>); }},
    {"meter", [] { return part("live-3", the<WarmthMeter>); }},
    {"card-selected", [] { return part("live-3", card<0>); }},
    {"card-focused", [] { return part("card-focus", card<1>); }},
    {"card-locked", [] { return part("broken-photo", card<1>); }},
    {"profile", [] { return part("live-3", the<ProfilePanel>); }},
    {"profile-locked", [] { return part("selected-mile", the<ProfilePanel>); }},
    {"profile-none", [] { return part("first-run", the<ProfilePanel>); }},
    {"window", [] { return whole("live-3"); }},
    {"alert", [] { return part("alert", alertSheet); }},
    {"window-flash-white", [] { return whole("flash-white"); }},
    {"window-flash-red", [] { return whole("flash-red"); }},
};

QString fileOf(const char *name)
{
    return QStringLiteral(AMBREL_GOLDEN_IMAGES "/%1.png").arg(QLatin1String(name));
}

void renew()
{
    QDir(QStringLiteral(AMBREL_GOLDEN_IMAGES)).removeRecursively();
    QDir().mkpath(QStringLiteral(AMBREL_GOLDEN_IMAGES));
    constexpr int smallestFile = 0;
    for (const Subject &subject : subjects) {
        if (!subject.draw().convertToFormat(QImage::Format_RGB32).save(fileOf(subject.name), "PNG", smallestFile))
            qFatal("cannot write %s", subject.name);
    }
}

} // namespace

/// Compares what is drawn with pictures that somebody has looked at. `renew` as the only argument draws these anew.
class GoldenImagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksAsBefore_data()
    {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const Subject &subject : subjects)
            QTest::newRow(subject.name) << index++;
    }

    void looksAsBefore()
    {
        QFETCH(int, index);
        const Subject &subject = subjects[index];
        const QImage actual = subject.draw();
        const QString found = difference(actual, QImage(fileOf(subject.name)));
        if (found.isEmpty())
            return;
        QDir().mkpath(QStringLiteral(AMBREL_DIFFERING_IMAGES));
        const QString file = QStringLiteral(AMBREL_DIFFERING_IMAGES "/%1.png").arg(QLatin1String(subject.name));
        actual.save(file);
        QFAIL(qPrintable(found + QStringLiteral("; see ") + file));
    }

    void smoothingMayDiffer()
    {
        const QImage golden = markInAllSizes(false);
        QImage rough(golden.size(), QImage::Format_RGB32);
        rough.fill(Qt::white);
        QPainter painter(&rough);
        painter.drawImage(QPointF(0.3, 0.3), golden); // between the pixels
        painter.end();
        QCOMPARE(difference(rough.copy(2, 2, 400, 160), golden.copy(2, 2, 400, 160)), QString());
    }

    void nothingElseMayDiffer_data()
    {
        QTest::addColumn<QImage>("changed");
        const QImage golden = markInAllSizes(false);
        QImage shifted(golden.size(), golden.format());
        shifted.fill(Qt::white);
        QPainter(&shifted).drawImage(2, 0, golden);
        QTest::newRow("two pixels to the right") << shifted;
        QImage tinted = golden;
        QPainter(&tinted).fillRect(tinted.rect(), QColor(0, 0, 0, 10));
        QTest::newRow("a little darker") << tinted;
        QImage dotted = golden;
        QPainter(&dotted).fillRect(20, 20, 4, 4, Qt::black);
        QTest::newRow("a dot too many") << dotted;
        QTest::newRow("another size") << golden.copy(0, 0, 100, 100);
    }

    void nothingElseMayDiffer()
    {
        QFETCH(QImage, changed);
        QVERIFY(!difference(changed, markInAllSizes(false)).isEmpty());
    }
};

int main(int argc, char **argv)
{
    SceneApplication application(argc, argv);
    if (argc == 2 && QByteArray(argv[1]) == "renew") {
        renew();
        return 0;
    }
    GoldenImagesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "GoldenImagesTest.moc"
