#include "Decoding.h"
#include "model/RequestRecords.h"
#include "model/ResponseRecords.h"

#include <QTest>

using namespace ambrel;

class JsonReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void brokenTextIsRefused_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("blank") << QByteArray("  \n");
        QTest::newRow("page") << QByteArray("<html><body>502</body></html>");
        QTest::newRow("scalar") << QByteArray("true");
        QTest::newRow("list") << QByteArray("[]");
        QTest::newRow("cut") << QByteArray("{\"ok\":true");
        QTest::newRow("cut text") << QByteArray("{\"ok\":true,\"serverTime\":\"no");
        QTest::newRow("trailing") << QByteArray("{\"ok\":true} x");
        QTest::newRow("two") << QByteArray("{\"ok\":true}{\"ok\":true}");
        QTest::newRow("missing comma") << QByteArray("{\"ok\":true \"serverTime\":\"x\"}");
        QTest::newRow("trailing comma") << QByteArray("{\"ok\":true,}");
        QTest::newRow("bad literal") << QByteArray("{\"ok\":tru}");
        QTest::newRow("bad unknown") << QByteArray("{\"ok\":true,\"other\":nul}");
        QTest::newRow("bad unknown number") << QByteArray("{\"ok\":true,\"other\":[01]}");
        QTest::newRow("bad unknown fraction") << QByteArray("{\"ok\":true,\"other\":1.}");
        QTest::newRow("bad unknown exponent") << QByteArray("{\"ok\":true,\"other\":1e+-1}");
        QTest::newRow("bad unknown end") << QByteArray("{\"ok\":true,\"other\":1x}");
        QTest::newRow("bad unknown text") << QByteArray("{\"ok\":true,\"other\":\"\\q\"}");
        QTest::newRow("bad unknown code") << QByteArray("{\"ok\":true,\"other\":\"\\u12g4\"}");
        QTest::newRow("short unknown code") << QByteArray("{\"ok\":true,\"other\":\"\\u123\"}");
        QTest::newRow("bad unknown key") << QByteArray("{\"ok\":true,\"o\\q\":1}");
        QTest::newRow("bad key in unknown") << QByteArray("{\"ok\":true,\"other\":{\"o\\q\":1}}");
        QTest::newRow("bad UTF-8") << QByteArray("{\"ok\":true,\"serverTime\":\"\xff\xfe\"}");
        QTest::newRow("raw control") << QByteArray("{\"ok\":true,\"serverTime\":\"a\nb\"}");
        QTest::newRow("lone surrogate") << QByteArray("{\"ok\":true,\"serverTime\":\"\\ud800\"}");
        QTest::newRow("NUL") << QByteArray("{\"ok\":true}\0", 12);
    }
    void brokenTextIsRefused()
    {
        QFETCH(QByteArray, json);
        const QString sentence = decodingFailure<UserResponse>(json);
        QVERIFY2(sentence.startsWith(QStringLiteral("The server's answer could not be read")), qPrintable(sentence));
        QVERIFY(sentence.endsWith(u'.'));
    }

    void aTextThatGoesOnBehindItsEndIsRefused()
    {
        QVERIFY(!decodingFailure<HealthResponse>(R"({"ok":true,"name":"a":1},"version":"2"})").isEmpty());
        QVERIFY(!decodingFailure<APIErrorResponse>(R"({"error":"oops":1},"a":"b"})").isEmpty());
        const QByteArray match =
            R"({"userId":"b","displayName":"B","distanceMeters":1,"aToB":2,"bToA":3,"heatLevel":"HOT",)"
            R"("profilePhotos":)";
        QVERIFY(decodingFailure<MatchResult>(match + R"(["a","b"]})").isEmpty());
        QVERIFY(!decodingFailure<MatchResult>(match + R"(["a":1],"b"]})").isEmpty());
    }

    void wrongTypesAreRefusedWithTheKey_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("problem");
        QTest::newRow("text for flag") << QByteArray(R"({"ok":"true"})")
                                       << QStringLiteral("\"ok\" is not true or false");
        QTest::newRow("number for flag") << QByteArray(R"({"ok":1})") << QStringLiteral("\"ok\" is not true or false");
        QTest::newRow("null for flag") << QByteArray(R"({"ok":null})") << QStringLiteral("\"ok\" is not true or false");
        QTest::newRow("number for text") << QByteArray(R"({"ok":true,"name":4})")
                                         << QStringLiteral("\"name\" is not a text");
        QTest::newRow("missing") << QByteArray(R"({"name":"x"})") << QStringLiteral("\"ok\" is missing");
    }
    void wrongTypesAreRefusedWithTheKey()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, problem);
        QCOMPARE(decodingFailure<HealthResponse>(json),
                 QStringLiteral("The server's answer could not be read: %1.").arg(problem));
    }

    void wholeNumbers_data()
    {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<bool>("isWhole");
        QTest::addColumn<qint64>("value");
        QTest::newRow("zero") << QByteArray("0") << true << qint64(0);
        QTest::newRow("largest") << QByteArray("9223372036854775807") << true << std::numeric_limits<qint64>::max();
        QTest::newRow("smallest") << QByteArray("-9223372036854775808") << true << std::numeric_limits<qint64>::min();
        QTest::newRow("point zero") << QByteArray("70.0") << true << qint64(70);
        QTest::newRow("exponent") << QByteArray("7e1") << true << qint64(70);
        QTest::newRow("signed exponent") << QByteArray("0.7E+2") << true << qint64(70);
        QTest::newRow("less by exponent") << QByteArray("-7000e-2 ") << true << qint64(-70);
        QTest::newRow("negative zero") << QByteArray("-0.00e9") << true << qint64(0);
        QTest::newRow("largest exact with a point")
            << QByteArray("9007199254740991.0") << true << qint64(9007199254740991);
        QTest::newRow("beyond a double's digits") << QByteArray("9007199254740993") << true << qint64(9007199254740993);
        QTest::newRow("beyond a double's digits with a point")
            << QByteArray("9007199254740993.0") << false << qint64(0);
        QTest::newRow("the same below zero") << QByteArray("-9007199254740993.0") << false << qint64(0);
        QTest::newRow("largest with a point") << QByteArray("9223372036854775807.0") << false << qint64(0);
        QTest::newRow("largest plus one half") << QByteArray("9223372036854775807.5") << false << qint64(0);
        QTest::newRow("smallest less one half") << QByteArray("-9223372036854775808.5") << false << qint64(0);
        QTest::newRow("half beyond a double's digits") << QByteArray("9007199254740992.5") << false << qint64(0);
        QTest::newRow("fraction") << QByteArray("70.5") << false << qint64(0);
        QTest::newRow("too large") << QByteArray("9223372036854775808") << false << qint64(0);
        QTest::newRow("too small") << QByteArray("-9223372036854775809.5e3") << false << qint64(0);
        QTest::newRow("huge") << QByteArray("1e300") << false << qint64(0);
        QTest::newRow("text") << QByteArray("\"70\"") << false << qint64(0);
        QTest::newRow("flag") << QByteArray("true") << false << qint64(0);
    }
    void wholeNumbers()
    {
        QFETCH(QByteArray, number);
        QFETCH(bool, isWhole);
        QFETCH(qint64, value);
        const QByteArray json = R"({"active":true,"matches":[],"seeMeMessages":[],"thresholdPercent":)" + number + "}";
        if (isWhole)
            QCOMPARE(decode<CheckResponse>(json).thresholdPercent, value);
        else
            QCOMPARE(decodingFailure<CheckResponse>(json),
                     QStringLiteral("The server's answer could not be read: "
                                    "\"thresholdPercent\" is not a whole number."));
    }

    void duplicateKeysTakeTheLastValue()
    {
        const auto reply = decode<HealthResponse>(R"({"ok":false,"name":"a","ok":true,"name":null})");
        QVERIFY(reply.ok);
        QVERIFY(!reply.name);
    }

    void aRecordThatComesTwiceIsNotMixed()
    {
        const QByteArray rest = R"("discoverable":true,"latitude":1,"longitude":2,"aboutMe":[],"lookingFor":[],)"
                                R"("profilePhotos":[],"displayName":"A")";
        const auto reply = decode<UserProfileResponse>(R"({"user":{"userId":"a","email":"old",)" + rest +
                                                       R"(},"user":{"userId":"b",)" + rest + "}}");
        QCOMPARE(reply.user.userId, QStringLiteral("b"));
        QVERIFY(!reply.user.email);
    }

    void moreElementsThanAnyReplyNeedsAreRefused()
    {
        const auto match = [](qsizetype photos) {
            return R"({"userId":"b","displayName":"B","distanceMeters":1,"aToB":2,"bToA":3,"heatLevel":"HOT",)"
                   R"("profilePhotos":["")" +
                   QByteArray(",\"\"").repeated(photos - 1) + "]}";
        };
        QCOMPARE(decode<MatchResult>(match(1'000'000)).profilePhotos.size(), 1'000'000);
        QCOMPARE(decodingFailure<CheckResponse>("{\"matches\":[" + match(500'000) + ',' + match(500'000) + "]}"),
                 QStringLiteral("The server's answer could not be read: "
                                "\"matches[1].profilePhotos\" has too many elements."));
    }

    void escapedKeysAreTheSameKeys() { QVERIFY(decode<UserResponse>(R"({"\u006fk":true})").ok); }

    void keysInAnyOrderAreRead()
    {
        const auto request = decode<SeeMeRequest>(R"({"targetUserId":"c","x":0,"deviceId":"b","userId":"a"})");
        QCOMPARE(request, (SeeMeRequest{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    }

    void alikeKeysAreToldApart()
    {
        const auto reply = decode<HealthResponse>(
            QByteArray("{'o':1,'okay':2,'nam':3,'names':4,'serverTimes':6,'ok':true,'name':'a','serverTime':'b'}")
                .replace('\'', '"'));
        QVERIFY(reply.ok);
        QCOMPARE(reply.name, QStringLiteral("a"));
        QCOMPARE(reply.serverTime, QStringLiteral("b"));
    }

    void byteOrderMarkIsAccepted() { QVERIFY(decode<UserResponse>("\xEF\xBB\xBF{\"ok\":true}").ok); }

    void deepNestingIsRefusedWithoutACrash()
    {
        for (const char *const open : {"[", "{\"a\":"}) {
            const QByteArray deep = QByteArray(open).repeated(100'000);
            QVERIFY(!decodingFailure<UserResponse>("{\"ok\":true,\"other\":" + deep).isEmpty());
            const QByteArray closed = deep + "1" + QByteArray(*open == '[' ? "]" : "}").repeated(100'000);
            QVERIFY(!decodingFailure<UserResponse>("{\"ok\":true,\"other\":" + closed + "}").isEmpty());
            QVERIFY(!decodingFailure<UserResponse>(deep).isEmpty());
        }
        const QByteArray allowed = QByteArray("[").repeated(1000) + QByteArray("]").repeated(1000);
        QVERIFY(decode<UserResponse>("{\"other\":" + allowed + ",\"ok\":true}").ok);
    }

    void longPhotosStaySlicesOfTheReply()
    {
        const QByteArray plain = QByteArray("AbC0+").repeated(8000);
        const QByteArray solidi = QByteArray("\\/a\\/\\/bc").repeated(8000);
        const QByteArray escaped = QByteArray("caf\\u00e9").repeated(8000);
        QByteArray json = "{'userId':'b','displayName':'B','distanceMeters':1,'aToB':2,'bToA':3,'heatLevel':'HOT', "
                          "'profilePhoto' : 'PLAIN' ,'profilePhotos':['SOLIDI','ESCAPED','short\\/','','PLAIN'],"
                          "'other':'PLAIN'}";
        json.replace('\'', '"').replace("PLAIN", plain).replace("SOLIDI", solidi).replace("ESCAPED", escaped);
        const auto bytes =
            std::make_shared<Bytes>(std::string_view(json.constData(), static_cast<std::size_t>(json.size())));
        const auto match = readRecord<MatchResult>(bytes);
        const auto text = [](const PhotoText &photo) {
            return QByteArray(photo.view().data(), static_cast<qsizetype>(photo.view().size()));
        };
        const auto isSlice = [&](const PhotoText &photo) {
            return photo.view().data() >= bytes->view().data() &&
                   photo.view().data() < bytes->view().data() + bytes->size();
        };
        QCOMPARE(text(*match.profilePhoto), plain);
        QVERIFY(isSlice(*match.profilePhoto));
        QCOMPARE(match.profilePhotos.size(), 5);
        QCOMPARE(text(match.profilePhotos.at(0)), QByteArray("/a//bc").repeated(8000));
        QVERIFY(isSlice(match.profilePhotos.at(0)));
        QCOMPARE(text(match.profilePhotos.at(1)), QByteArray("caf\xC3\xA9").repeated(8000));
        QVERIFY(isSlice(match.profilePhotos.at(1)));
        QCOMPARE(text(match.profilePhotos.at(2)), QByteArray("short/"));
        QVERIFY(match.profilePhotos.at(3).isEmpty());
        QCOMPARE(text(match.profilePhotos.at(4)), plain);
        QVERIFY(isSlice(match.profilePhotos.at(4)));
    }

    void longTextsOfEveryLengthAreFoundWhole()
    {
        const QByteArray filling(50'000, '.');
        for (int length = 200; length < 400; ++length) {
            const QByteArray bio(length, 'x');
            const QByteArray json =
                "{\"ok\":true,\"padding\":\"" + filling + "\",\"name\":\"" + bio + "\",\"version\":\"" + bio + "y\"}";
            const auto reply = decode<HealthResponse>(json);
            QCOMPARE(reply.name, QString::fromLatin1(bio));
            QCOMPARE(reply.version, QString::fromLatin1(bio + "y"));
        }
    }

    void noTextIsTakenForWhatStandsForALongOne()
    {
        const QByteArray filling(50'000, '.');
        for (const QByteArray &text : {QByteArray("0"), QByteArray("0").leftJustified(255), QByteArray("\\u0030"),
                                       QByteArray("0").leftJustified(256), QByteArray("1").leftJustified(257)}) {
            const auto reply =
                decode<HealthResponse>("{\"ok\":true,\"name\":\"" + text + "\",\"version\":\"" + filling + "\"}");
            QCOMPARE(reply.name, QString::fromLatin1(text.startsWith('\\') ? QByteArray("0") : text));
            QCOMPARE(reply.version, QString::fromLatin1(filling));
        }
    }

    void longTextsThatAreBrokenAreRefused_data()
    {
        QTest::addColumn<QByteArray>("inside");
        const QByteArray filling(50'000, 'x');
        QTest::newRow("half a pair") << QByteArray(filling + "\\ud83d");
        QTest::newRow("control character first") << QByteArray("\x01" + filling);
        QTest::newRow("control character last") << QByteArray(filling + "\x1f");
        QTest::newRow("cut UTF-8") << QByteArray(filling + "\xF0\x9F\x98");
        QTest::newRow("half a pair in UTF-8") << QByteArray("\xED\xA0\x80" + filling);
        QTest::newRow("never closed") << QByteArray(filling + "\\");
        QTest::newRow("bad escape") << QByteArray(filling + "\\q" + filling);
        QTest::newRow("raw line break") << QByteArray(filling + "\n" + filling);
        QTest::newRow("bad UTF-8") << QByteArray(filling + "\xff" + filling);
        QTest::newRow("ends early") << QByteArray(filling + "\"" + filling);
        QTest::newRow("second text") << QByteArray(filling + "\" \"" + filling);
    }
    void longTextsThatAreBrokenAreRefused()
    {
        QFETCH(QByteArray, inside);
        QVERIFY(!decodingFailure<HealthResponse>("{\"ok\":true,\"name\":\"" + inside + "\"}").isEmpty());
        QVERIFY(!decodingFailure<HealthResponse>("{\"ok\":true,\"other\":\"" + inside + "\"}").isEmpty());
        QVERIFY(!decodingFailure<HealthResponse>("{\"ok\":true,\"" + inside + "\":1}").isEmpty());
    }

    void longTextInThePlaceOfAnotherTypeIsRefused()
    {
        const QByteArray text = '"' + QByteArray(50'000, '1') + '"';
        QVERIFY(!decodingFailure<UserResponse>("{\"ok\":" + text + "}").isEmpty());
        QVERIFY(!decodingFailure<UserResponse>("{" + text + ":true}").isEmpty());
        QVERIFY(!decodingFailure<UserResponse>("{\"ok\":true," + text + "}").isEmpty());
        QVERIFY(!decodingFailure<UserResponse>(text).isEmpty());
        QVERIFY(!decodingFailure<UserResponse>("{\"ok\":true}" + text).isEmpty());
        QVERIFY(!decodingFailure<UserResponse>("{\"ok\":true,\\" + text + ":1}").isEmpty());
    }

    void aTextMayBeginWithAByteOrderMark()
    {
        for (const char *const written : {"\xEF\xBB\xBF\xEF\xBB\xBFid", "\\ufeff\\ufeffid"}) {
            const auto reply =
                decode<UserResponse>((std::string(R"({"ok":true,"serverTime":")") + written + "\"}").c_str());
            QCOMPARE(reply.serverTime, QStringLiteral("\ufeff\ufeffid"));
        }
    }

    void textsWithNulAndEveryPlaneAreKept()
    {
        const auto reply = decode<HealthResponse>(R"({"ok":true,"name":"a\u0000b\ud83d\ude00é"})");
        QCOMPARE(reply.name, QString(QStringLiteral("a") + QChar(0) + QStringLiteral("b\U0001F600é")));
    }
};

QTEST_APPLESS_MAIN(JsonReaderTest)
#include "JsonReaderTest.moc"
