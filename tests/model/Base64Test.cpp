#include "model/Base64.h"

#include <QTest>
#include <memory>
#include <random>

using namespace ambrel;

class Base64Test : public QObject
{
    Q_OBJECT

    /// Decodes from a block that ends with the text, so that a memory checker sees every stray read.
    static std::optional<QByteArray> decoded(const QByteArray &text)
    {
        const auto size = static_cast<std::size_t>(text.size());
        const auto block = std::make_unique<char[]>(size);
        std::copy(text.begin(), text.end(), block.get());
        return decodeBase64({block.get(), size});
    }

    /// What Qt's decoder says of a text that its encoder would write; only left-over bits may differ.
    static std::optional<QByteArray> decodedByQt(const QByteArray &text)
    {
        const auto result = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
        QByteArray written = result.decoded.toBase64();
        if (!result || written.size() != text.size())
            return std::nullopt;
        const qsizetype lastCharacter = text.size() - text.count('=') - 1;
        if (lastCharacter >= 0)
            written[lastCharacter] = text.at(lastCharacter);
        return written == text ? std::optional(result.decoded) : std::nullopt;
    }

    static QByteArray randomBytes(qsizetype size)
    {
        static std::mt19937 random(20240501);
        QByteArray bytes(size, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random());
        return bytes;
    }

private Q_SLOTS:
    void everyLengthComesBackAsItWas()
    {
        for (qsizetype size = 0; size <= 200; ++size) {
            const QByteArray bytes = randomBytes(size);
            QCOMPARE(decoded(bytes.toBase64()), bytes);
        }
        const QByteArray large = randomBytes(1'000'003);
        QCOMPARE(decoded(large.toBase64()), large);
    }

    void everyCutTextIsJudgedAsQtJudgesIt()
    {
        const QByteArray text = randomBytes(300).toBase64();
        for (qsizetype size = 0; size <= 200; ++size) {
            QCOMPARE(decoded(text.first(size)), decodedByQt(text.first(size)));
            QCOMPARE(decoded(text.first(size)).has_value(), size % 4 == 0); // missing padding is an error
        }
    }

    void everyByteAtEveryPlaceIsJudgedAsQtJudgesIt()
    {
        for (const qsizetype size : {24, 25, 26}) { // no padding, two and one
            const QByteArray text = randomBytes(size).toBase64();
            for (qsizetype place = 0; place < text.size(); ++place) {
                for (int byte = 0; byte < 256; ++byte) {
                    QByteArray changed = text;
                    changed[place] = static_cast<char>(byte);
                    if (decoded(changed) != decodedByQt(changed))
                        QFAIL(qPrintable(QStringLiteral("byte %1 at %2 of %3").arg(byte).arg(place).arg(size)));
                }
            }
        }
    }

    void randomTextsAreJudgedAsQtJudgesThem()
    {
        const QByteArray characters("QRz09+/==\n-_ ");
        int accepted = 0;
        for (int round = 0; round < 20'000; ++round) {
            QByteArray text;
            for (const char byte : randomBytes(round % 13))
                text += characters.at(static_cast<unsigned char>(byte) % (round % 2 == 0 ? characters.size() : 8));
            QVERIFY2(decoded(text) == decodedByQt(text), text.constData());
            accepted += decoded(text) ? 1 : 0;
        }
        QVERIFY(accepted > 1000);
    }

    void misplacedPaddingIsRefused()
    {
        for (const char *text : {"=", "==", "====", "A===", "=AAA", "A=AA", "AA=A", "QQ==QQ==", "QUI=QUI=", "QQ=", "Q"})
            QVERIFY2(!decodeBase64(text), text);
    }

    void leftOverBitsMayHaveAnyValue()
    {
        QCOMPARE(decodeBase64("QQ=="), QByteArray("A"));
        QCOMPARE(decodeBase64("QR=="), QByteArray("A"));
        QCOMPARE(decodeBase64("QUJ="), QByteArray("AB"));
    }

    void otherAlphabetsAndBlanksAreRefused()
    {
        for (const char *text : {"QUJD\n", "QUJ\n", "QUJD\nQUJD", " QUJDQUJ", "QU D", "QU-D", "QU_D", "QU\tD", "%3D="})
            QVERIFY2(!decodeBase64(text), text);
    }
};

QTEST_APPLESS_MAIN(Base64Test)
#include "Base64Test.moc"
