#include "toolkit/BidiIsolation.h"

#include <QTest>

using namespace ambrel;

namespace {

const QString hebrew = QStringLiteral("\u05e9\u05dc\u05d5\u05dd");

} // namespace

class BidiIsolationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isolationLeavesPlainTextAlone_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("latin") << QStringLiteral("Sam O'Neil & <b>co</b> 42%");
        QTest::newRow("Chinese") << QStringLiteral("\u4f60\u597d");
        QTest::newRow("emoji family") << QStringLiteral("\U0001F469\u200D\U0001F469\u200D\U0001F467");
        QTest::newRow("combining") << QStringLiteral("e\u0301");
    }

    void isolationLeavesPlainTextAlone()
    {
        QFETCH(QString, text);
        QCOMPARE(isolated(text), text);
    }

    void isolationWrapsWhatWouldReorderTheSentence()
    {
        const auto wrap = [](const QString &text) {
            return QStringLiteral("\u2068") + text + QStringLiteral("\u2069");
        };
        for (const QString &text : {hebrew, QStringLiteral("Sam ") + hebrew, QStringLiteral("\u0633\u0644\u0627\u0645"),
                                    QStringLiteral("a\u202Eb"), QStringLiteral("a\u200Fb"), QStringLiteral("a\u200Eb"),
                                    QStringLiteral("\U00010A00")})
            QCOMPARE(isolated(text), wrap(text));
    }

    void isolationCannotBeBrokenOutOf()
    {
        const QString closing = QStringLiteral("a\u2069\u202Eb");
        const QString opening = QStringLiteral("a\u2067b");
        const auto depthStaysAboveZero = [](const QString &text) {
            int depth = 0;
            for (qsizetype i = 0; i < text.size(); ++i) {
                const QChar::Direction direction = text[i].direction();
                depth += direction == QChar::DirFSI || direction == QChar::DirRLI || direction == QChar::DirLRI ? 1 : 0;
                depth -= direction == QChar::DirPDI ? 1 : 0;
                if (depth <= 0 && i + 1 < text.size())
                    return false;
            }
            return depth == 0;
        };
        for (const QString &text : {closing, opening, closing + opening, opening + closing, closing.repeated(3)}) {
            QVERIFY(depthStaysAboveZero(isolated(text)));
            QVERIFY(isolated(text).contains(text));
        }
    }
};

QTEST_APPLESS_MAIN(BidiIsolationTest)
#include "BidiIsolationTest.moc"
