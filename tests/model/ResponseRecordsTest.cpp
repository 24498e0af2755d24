#include "model/ResponseRecords.h"
#include "Decoding.h"

#include <QTest>

using namespace ambrel;

class ResponseRecordsTest : public QObject
{
    Q_OBJECT

    static QString unreadable(const char *problem)
    {
        return QStringLiteral("The server's answer could not be read: %1.").arg(QLatin1String(problem));
    }

private Q_SLOTS:
    void checkWithoutMatchesFailsAndWithEmptyMatchesReads()
    {
        QCOMPARE(decodingFailure<CheckResponse>(R"({"active":true,"seeMeMessages":[]})"),
                 unreadable("\"matches\" is missing"));
        const auto reply = decode<CheckResponse>(R"({"active":true,"matches":[],"seeMeMessages":[]})");
        QVERIFY(reply.active);
        QVERIFY(reply.matches.isEmpty());
    }

    void matchWithoutPhotoListFailsTheWholeCheck()
    {
        const QByteArray match =
            R"({"userId":"b","displayName":"B","distanceMeters":1,"aToB":2,"bToA":3,"heatLevel":"HOT"})";
        QCOMPARE(decodingFailure<MatchResult>(match), unreadable("\"profilePhotos\" is missing"));
        QCOMPARE(decodingFailure<CheckResponse>(R"({"active":true,"seeMeMessages":[],"matches":[)" + match + "]}"),
                 unreadable("\"matches[0].profilePhotos\" is missing"));
    }

    void fractionalThresholdFailsAndNullThresholdIsAbsent()
    {
        QCOMPARE(decodingFailure<CheckResponse>(
                     R"({"active":true,"thresholdPercent":70.5,"matches":[],"seeMeMessages":[]})"),
                 unreadable("\"thresholdPercent\" is not a whole number"));
        QVERIFY(!decode<CheckResponse>(R"({"active":true,"thresholdPercent":null,"matches":[],"seeMeMessages":[]})")
                     .thresholdPercent);
    }

    void profileWithoutEmailAndPhoneReadsWithBothAbsent()
    {
        const auto reply = decode<UserProfileResponse>(
            R"({"user":{"userId":"a","displayName":"A","discoverable":true,"latitude":1,"longitude":2,
                "aboutMe":[],"lookingFor":[3],"profilePhotos":[]}})");
        QVERIFY(!reply.user.email);
        QVERIFY(!reply.user.phone);
        QCOMPARE(reply.user.lookingFor, QList<qint64>{3});
    }

    void seeMeWithNullMessageReadsWithoutOne()
    {
        QVERIFY(!decode<SeeMeResponse>(R"({"ok":true,"message":null})").message);
    }

    void errorBodyWithFurtherKeyReads()
    {
        QCOMPARE(decode<APIErrorResponse>(R"({"code":409,"error":"Name taken","detail":{"a":[1,{}]}})").error,
                 QStringLiteral("Name taken"));
    }

    void everyRecordReadsWhole()
    {
        const QByteArray message =
            R"({"id":"m1","fromUserId":"b","toUserId":"a","body":"Hi","createdAt":"2026-01-01T00:00:00Z"})";
        const auto check = decode<CheckResponse>(
            R"({"active":true,"thresholdPercent":70,"maxDistanceMeters":1609.34,"checkedAt":"now","matches":[
                {"userId":"b","displayName":"B","distanceMeters":42.5,"aToB":72.5,"bToA":-0.5,"heatLevel":"VERY_HOT",
                 "profileBio":"bio","profilePhoto":"p","profilePhotos":["x","y"],"updatedAt":"then"}],
                "seeMeMessages":[)" +
            message + R"(],"reason":"none"})");
        const SeeMeMessage expected{QStringLiteral("m1"), QStringLiteral("b"), QStringLiteral("a"),
                                    QStringLiteral("Hi"), QStringLiteral("2026-01-01T00:00:00Z")};
        QCOMPARE(check.thresholdPercent, 70);
        QCOMPARE(check.maxDistanceMeters, 1609.34);
        QCOMPARE(check.checkedAt, QStringLiteral("now"));
        QCOMPARE(check.reason, QStringLiteral("none"));
        QCOMPARE(check.seeMeMessages, QList<SeeMeMessage>{expected});
        QCOMPARE(check.matches.size(), 1);
        const MatchResult &match = check.matches.first();
        QCOMPARE(match.id(), QStringLiteral("b"));
        QCOMPARE(match.distanceMeters, 42.5);
        QCOMPARE(match.bToA, -0.5);
        QCOMPARE(match.profilePhotos.at(1).view(), std::string_view("y"));
        QCOMPARE(match.updatedAt, QStringLiteral("then"));

        QCOMPARE(decode<SeeMeResponse>(R"({"ok":true,"message":)" + message + "}").message, expected);
        QCOMPARE(decode<SeeMeMessagesResponse>(R"({"ok":true,"seeMeMessages":[)" + message + "]}").seeMeMessages.size(),
                 1);
        QCOMPARE(decode<DismissResponse>(R"({"ok":true,"dismissedUserId":"b"})").dismissedUserId, QStringLiteral("b"));
        QCOMPARE(decode<HealthResponse>(R"({"ok":false,"name":"Core","version":"2.0"})").version,
                 QStringLiteral("2.0"));
        QVERIFY(decode<UserResponse>(R"({"ok":true,"serverTime":"t"})").ok);
        const auto version = decode<AppVersionResponse>(
            R"({"versionCode":9223372036854775807,"versionName":"1","downloadUrl":"u","apkAvailable":false,
                "apkSizeBytes":-9223372036854775808,"phoneVerificationAvailable":true})");
        QCOMPARE(version.versionCode, std::numeric_limits<qint64>::max());
        QCOMPARE(version.apkSizeBytes, std::numeric_limits<qint64>::min());
    }
};

QTEST_APPLESS_MAIN(ResponseRecordsTest)
#include "ResponseRecordsTest.moc"
