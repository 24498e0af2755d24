// Texts that are made to be expensive: the work is counted in letters laid out.
#include "toolkit/ElidedLabel.h"
#include "toolkit/WrappedLabel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <chrono>
#include <ctime>

using namespace ambrel;

namespace {

const QString prose = QStringLiteral("Likes long walks, short films and a good espresso in the morning. ").repeated(4);
const QString million(1'000'000, u'w');

/// Processor time of this thread: what other programs take does not count.
std::chrono::nanoseconds threadTime()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

} // namespace

class HostileTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void millionLettersAreCutAfterBoundedWork()
    {
        WrappedLabel label(million);
        label.resize(300, label.heightForWidth(300));
        label.grab();
        QVERIFY(label.height() < 300 * label.fontMetrics().lineSpacing());
        QVERIFY2(label.laidOutCharacters() < 10'000, qPrintable(QString::number(label.laidOutCharacters())));
        QCOMPARE(label.text(), million);
    }

    void millionLettersShownWholeTakeLinearWork()
    {
        WrappedLabel label(million);
        label.setShowsEverything(true);
        const int height = label.heightForWidth(300);
        const int lettersInALine = 300 / label.fontMetrics().horizontalAdvance(u'w');
        QVERIFY(height >= 1'000'000 / lettersInALine * label.fontMetrics().height());
        QVERIFY2(label.laidOutCharacters() < 1'500'000, qPrintable(QString::number(label.laidOutCharacters())));
    }

    void millionBlanksAndLineBreaksShownWholeTakeLinearWork()
    {
        for (const QString &text : {QString(1'000'000, u' '), QString(100'000, u'\n'), QString(200'000, u'\u0301')}) {
            const TextLines lines = TextLines::wrapped(text, QApplication::font(), 300);
            QVERIFY2(lines.laidOutCharacters() <= 3 * text.size(),
                     qPrintable(QString::number(lines.laidOutCharacters())));
        }
    }

    void twentyThousandCombiningMarksTakeBoundedWork()
    {
        const QString marks = QStringLiteral("Z") + QString(20'000, u'\u0336');
        WrappedLabel wrapped(marks);
        ElidedLabel elided(marks);
        for (TextLabel *label : {static_cast<TextLabel *>(&wrapped), static_cast<TextLabel *>(&elided)}) {
            label->resize(200, label->sizeHint().height());
            label->grab();
            QVERIFY2(label->laidOutCharacters() < 10'000, qPrintable(QString::number(label->laidOutCharacters())));
        }
        QVERIFY(elided.sizeHint().height() < 3 * elided.fontMetrics().height());
    }

    void repaintingPartOfAnEndlessTextLaysNothingOutAgain()
    {
        WrappedLabel label(million);
        label.setShowsEverything(true);
        label.resize(300, label.heightForWidth(300));
        const qsizetype work = label.laidOutCharacters();
        QImage screen(300, 400, QImage::Format_RGB32);
        label.render(&screen, {}, QRect(0, label.height() / 2, 300, 400));
        QCOMPARE(label.laidOutCharacters(), work);
    }

    void elidedMegabyteTakesBoundedWork()
    {
        for (const QString &text : {million, QString(1'000'000, u'\u0301'), QString(1'000'000, u'\u200b'),
                                    QString(1'000'000, u' '), prose.repeated(20'000), QString(1'000'000, QChar(0))}) {
            ElidedLabel label(text);
            label.setMaximumLines(2);
            label.resize(400, label.heightForWidth(400));
            label.grab();
            QVERIFY2(label.laidOutCharacters() < 15'000, qPrintable(QString::number(label.laidOutCharacters())));
            QVERIFY(TextLines::elided(text, label.font(), 400, 2).shownText().endsWith(u'\u2026'));
        }
    }

    void rareLettersNeverStopTheWindowForLongAndAreAllShownInTheEnd()
    {
        QString rare;
        for (char32_t letter = 0x1000; letter < 0x1f000 && rare.size() < 400; letter += 0x300) {
            if (QChar::category(letter) == QChar::Letter_Other || QChar::category(letter) == QChar::Symbol_Other)
                rare += QString::fromUcs4(&letter, 1);
        }
        QVERIFY(rare.size() > 50);
        ElidedLabel label(rare);
        label.resize(16'000, 60);
        std::chrono::nanoseconds longest{0};
        int turns = 0;
        QElapsedTimer patience;
        for (patience.start(); TextLines::elided(rare, label.font(), 16'000, 1).waitsForFonts(); ++turns) {
            QVERIFY(patience.elapsed() < 60'000);
            const auto start = threadTime();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 0);
            label.grab();
            longest = std::max(longest, threadTime() - start);
        }
        QVERIFY2(turns > 1, qPrintable(QString::number(turns)));
        const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(longest).count();
        QVERIFY2(milliseconds < 500, qPrintable(QString::number(milliseconds)));
        QTRY_COMPARE(TextLines::elided(rare, label.font(), 16'000, 1).shownText(), rare);
        ElidedLabel other(rare);
        other.resize(label.size());
        QTRY_COMPARE(label.grab().toImage(), other.grab().toImage());
    }

    void elidedTextIsNeverCutInsideALetter()
    {
        const QString emoji = QStringLiteral("\U0001F600").repeated(100'000);
        for (int width = 5; width < 200; ++width) {
            const QString shown = TextLines::elided(emoji, QApplication::font(), width, 2).shownText().chopped(1);
            QVERIFY(shown.isValidUtf16());
        }
    }
};

QTEST_MAIN(HostileTextTest)
#include "HostileTextTest.moc"
