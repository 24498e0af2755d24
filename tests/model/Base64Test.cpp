#include "model/Base64.h"

#include <QTest>
#include <memory>
#include <random>
#include <string>

using namespace ambrel;

Q_DECLARE_METATYPE(ambrel::Base64Code)

namespace {

/// A decoder of a few plain steps, to compare with: one letter, six bits at a time.
std::optional<QByteArray> plainlyDecoded(const std::string &text)
{
    static const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string content = text;
    while (!content.empty() && content.back() == '=')
        content.pop_back();
    if (text.size() % 4 != 0 || text.size() - content.size() > 2)
        return std::nullopt;
    QByteArray bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char letter : content) {
        const auto value = letters.find(letter);
        if (letter == '\0' || value == std::string::npos)
            return std::nullopt;
        bits = (bits << 6 | static_cast<unsigned>(value)) & 0xffff;
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.append(static_cast<char>(bits >> count & 0xff));
        }
    }
    return bytes;
}

std::string randomBytes(std::size_t size)
{
    static std::mt19937 random(20240501);
    std::string bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

std::string encoded(const std::string &bytes)
{
    return QByteArray::fromStdString(bytes).toBase64().toStdString();
}

} // namespace

class Base64Test : public QObject
{
    Q_OBJECT

private:
    static void codes()
    {
        QTest::addColumn<Base64Code>("code");
        QTest::newRow("portable") << Base64Code::Portable;
        QTest::newRow("fastest here") << fastestBase64Code();
    }

    /// Decodes from a block that ends with the text, so that a memory checker sees every stray read.
    static std::optional<QByteArray> decodedFromExactBlock(const std::string &text, Base64Code code)
    {
        const auto block = std::make_unique<char[]>(text.size());
        std::copy(text.begin(), text.end(), block.get());
        return decodeBase64({block.get(), text.size()}, code);
    }

private Q_SLOTS:
    void everyLengthComesBackAsItWas_data() { codes(); }
    void everyLengthComesBackAsItWas()
    {
        QFETCH(const Base64Code, code);
        for (std::size_t size = 0; size <= 200; ++size) {
            const std::string bytes = randomBytes(size);
            const auto decoded = decodedFromExactBlock(encoded(bytes), code);
            QVERIFY2(decoded.has_value(), qPrintable(QString::number(size)));
            QCOMPARE(decoded->toStdString(), bytes);
        }
        const std::string large = randomBytes(1'000'003);
        QCOMPARE(decodedFromExactBlock(encoded(large), code)->toStdString(), large);
    }

    void everyLengthOfTextIsJudgedAsThePlainDecoderJudgesIt_data() { codes(); }
    void everyLengthOfTextIsJudgedAsThePlainDecoderJudgesIt()
    {
        QFETCH(const Base64Code, code);
        const std::string text = encoded(randomBytes(300));
        for (std::size_t size = 0; size <= 200; ++size) {
            const std::string cut = text.substr(0, size);
            QCOMPARE(decodedFromExactBlock(cut, code), plainlyDecoded(cut));
            QCOMPARE(decodedFromExactBlock(cut, code).has_value(), size % 4 == 0); // missing padding is an error
        }
    }

    void everyByteAtEveryPlaceIsJudgedAsThePlainDecoderJudgesIt_data() { codes(); }
    void everyByteAtEveryPlaceIsJudgedAsThePlainDecoderJudgesIt()
    {
        QFETCH(const Base64Code, code);
        for (const std::size_t size : {75U, 76U, 77U}) { // no padding, two and one
            const std::string text = encoded(randomBytes(size));
            for (std::size_t place = 0; place < text.size(); ++place) {
                for (int byte = 0; byte < 256; ++byte) {
                    std::string changed = text;
                    changed[place] = static_cast<char>(byte);
                    const auto expected = plainlyDecoded(changed);
                    if (decodedFromExactBlock(changed, code) != expected)
                        QFAIL(qPrintable(QStringLiteral("byte %1 at %2 of %3").arg(byte).arg(place).arg(size)));
                }
            }
        }
    }

    void misplacedPaddingIsRefused_data() { codes(); }
    void misplacedPaddingIsRefused()
    {
        QFETCH(const Base64Code, code);
        for (const char *text : {"=", "==", "====", "A===", "=AAA", "A=AA", "AA=A", "QQ==QQ==", "QUI=QUI=", "QQ=", "Q"})
            QVERIFY2(!decodeBase64(text, code), text);
    }

    void leftOverBitsMayHaveAnyValue_data() { codes(); }
    void leftOverBitsMayHaveAnyValue()
    {
        QFETCH(const Base64Code, code);
        QCOMPARE(decodeBase64("QQ==", code), QByteArray("A"));
        QCOMPARE(decodeBase64("QR==", code), QByteArray("A"));
        QCOMPARE(decodeBase64("QUJ=", code), QByteArray("AB"));
    }

    void otherAlphabetsAndBlanksAreRefused_data() { codes(); }
    void otherAlphabetsAndBlanksAreRefused()
    {
        QFETCH(const Base64Code, code);
        for (const char *text : {"QUJD\n", "QUJ\n", "QUJD\nQUJD", " QUJDQUJ", "QU D", "QU-D", "QU_D", "QU\tD", "%3D="})
            QVERIFY2(!decodeBase64(text, code), text);
    }

    void nothingDecodesToNoBytes_data() { codes(); }
    void nothingDecodesToNoBytes()
    {
        QFETCH(const Base64Code, code);
        QCOMPARE(decodeBase64({}, code), QByteArray());
    }
};

QTEST_APPLESS_MAIN(Base64Test)
#include "Base64Test.moc"
