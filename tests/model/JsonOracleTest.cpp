#include "JsonOracle.h"
#include "Mutations.h"
#include "model/Json.h"

#include <QTest>

using namespace ambrel;

/// The whole reader against one that parses the unabridged bytes: replies as servers send them, and what becomes of
/// them when bytes are lost, changed and moved. AMBREL_SEED and AMBREL_DOCUMENTS repeat or lengthen a run.
class JsonOracleTest : public QObject
{
    Q_OBJECT

    static std::optional<CheckResponse> readByClient(const std::string &json)
    {
        try {
            return readRecord<CheckResponse>(std::make_shared<Bytes>(json));
        } catch (const DecodingError &) {
            return std::nullopt;
        }
    }

    static bool isReadAlike(const std::string &json) { return readByClient(json) == JsonOracle::read(json); }

private Q_SLOTS:
    void wholeRepliesAreReadAlike()
    {
        for (const std::string &reply : sampleReplies()) {
            QVERIFY2(JsonOracle::read(reply), reply.c_str());
            QVERIFY2(isReadAlike(reply), reply.c_str());
        }
    }

    void everyCutOfASmallReplyIsRefused()
    {
        const std::string whole = sampleReplies().front();
        for (std::size_t size = 0; size < whole.size(); ++size)
            QVERIFY2(!readByClient(whole.substr(0, size)), qPrintable(QString::number(size)));
    }

    void mutatedRepliesAreReadAlike()
    {
        bool hasSeed = false;
        bool hasCount = false;
        const int wantedSeed = qEnvironmentVariableIntValue("AMBREL_SEED", &hasSeed);
        const int wantedCount = qEnvironmentVariableIntValue("AMBREL_DOCUMENTS", &hasCount);
        const auto seed = hasSeed ? static_cast<unsigned>(wantedSeed) : std::random_device()() & 0x7fffffff;
        const int count = hasCount ? wantedCount : 4000;
        Mutations mutations(seed);
        int accepted = 0;
        int different = 0;
        for (int document = 0; document < count; ++document) {
            const std::string reply = mutations.next();
            const auto expected = JsonOracle::read(reply);
            accepted += expected ? 1 : 0;
            if (readByClient(reply) == expected)
                continue;
            ++different;
            qWarning("document %d, %s by the oracle: %s", document, expected ? "accepted" : "refused", reply.c_str());
        }
        qInfo("AMBREL_SEED=%u: %d documents, %d accepted, %d read differently", seed, count, accepted, different);
        QCOMPARE(different, 0);
        QVERIFY(accepted > count / 20 && accepted < count - count / 20); // both directions were tried
    }
};

QTEST_APPLESS_MAIN(JsonOracleTest)
#include "JsonOracleTest.moc"
