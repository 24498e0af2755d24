#include "model/RequestRecords.h"
#include "Decoding.h"

#include <QTest>
#include <limits>

using namespace ambrel;

class RequestRecordsTest : public QObject
{
    Q_OBJECT

    static RegisterRequest ann()
    {
        return {.userId = QStringLiteral("ann"),
                .deviceId = QStringLiteral("mac-1"),
                .displayName = QStringLiteral("Ann"),
                .email = {},
                .phone = {},
                .latitude = 51.5,
                .longitude = -0.125,
                .discoverable = true,
                .aboutMe = {0, 1, 2},
                .lookingFor = {0, 1, 2},
                .profileBio = {},
                .profilePhoto = {},
                .profilePhotos = {}};
    }

private Q_SLOTS:
    void absentBioAndPhotoAreLeftOutWhileEmptyPhotoListIsWritten()
    {
        const QByteArray json = writeRecord(ann());
        QVERIFY(!json.contains("profileBio"));
        QVERIFY(!json.contains("\"profilePhoto\""));
        QVERIFY(json.contains("\"profilePhotos\":[]"));
    }

    void emptyTextsAreWritten()
    {
        RegisterRequest request = ann();
        request.profileBio = QString();
        const QByteArray json = writeRecord(request);
        QVERIFY(json.contains("\"email\":\"\""));
        QVERIFY(json.contains("\"phone\":\"\""));
        QVERIFY(json.contains("\"profileBio\":\"\""));
    }

    void latitudeIsWrittenAsANumber() { QVERIFY(writeRecord(ann()).contains("\"latitude\":51.5,")); }

    void loginWithoutDeviceIdFailsToRead()
    {
        QCOMPARE(decodingFailure<LoginRequest>("{\"userId\":\"ann\"}"),
                 QStringLiteral("The server's answer could not be read: \"deviceId\" is missing."));
    }

    void fieldsAreWrittenInTheOrderListed()
    {
        QCOMPARE(writeRecord(ann()),
                 QByteArray("{\"userId\":\"ann\",\"deviceId\":\"mac-1\",\"displayName\":\"Ann\",\"email\":\"\","
                            "\"phone\":\"\",\"latitude\":51.5,\"longitude\":-0.125,\"discoverable\":true,"
                            "\"aboutMe\":[0,1,2],\"lookingFor\":[0,1,2],\"profilePhotos\":[]}"));
        QCOMPARE(writeRecord(LocationUpdateRequest{QStringLiteral("a"), QStringLiteral("d"), 1, -2.5, false}),
                 QByteArray("{\"userId\":\"a\",\"deviceId\":\"d\",\"latitude\":1,\"longitude\":-2.5,"
                            "\"discoverable\":false}"));
        QCOMPARE(writeRecord(LogoutRequest{QStringLiteral("a"), QStringLiteral("d")}),
                 QByteArray("{\"userId\":\"a\",\"deviceId\":\"d\"}"));
        QCOMPARE(writeRecord(DismissRequest{QStringLiteral("a"), QStringLiteral("d"), QStringLiteral("b")}),
                 QByteArray("{\"userId\":\"a\",\"deviceId\":\"d\",\"dismissedUserId\":\"b\"}"));
        QCOMPARE(writeRecord(SeeMeRequest{QStringLiteral("a"), QStringLiteral("d"), QStringLiteral("b")}),
                 QByteArray("{\"userId\":\"a\",\"deviceId\":\"d\",\"targetUserId\":\"b\"}"));
    }

    void everyFieldRoundTrips()
    {
        RegisterRequest request = ann();
        request.displayName = QStringLiteral("Zoë \"Z\" \\ / \u0001\n\t \U0001F469\u200D\U0001F680");
        request.profileBio = QStringLiteral("line\r\nline");
        request.profilePhoto = PhotoText(QStringLiteral("data:image/png;base64,AA/+=="));
        request.profilePhotos = {PhotoText(QStringLiteral("one")), PhotoText(QString())};
        request.aboutMe = {std::numeric_limits<qint64>::min(), -1, 0, std::numeric_limits<qint64>::max()};
        QCOMPARE(decode<RegisterRequest>(writeRecord(request)), request);
    }

    void doublesRoundTripExactly_data()
    {
        QTest::addColumn<double>("value");
        QTest::newRow("third") << 1.0 / 3.0;
        QTest::newRow("smallest") << std::numeric_limits<double>::denorm_min();
        QTest::newRow("largest") << std::numeric_limits<double>::max();
        QTest::newRow("negative") << -84.5086;
        QTest::newRow("whole") << 9007199254740993.0;
    }
    void doublesRoundTripExactly()
    {
        QFETCH(double, value);
        const LocationUpdateRequest request{QString(), QString(), value, 0, true};
        const double back = decode<LocationUpdateRequest>(writeRecord(request)).latitude;
        QVERIFY(back == value);
    }

    void numbersThatAreNotFiniteRefuseToEncode()
    {
        for (const double value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity()}) {
            const LocationUpdateRequest request{QString(), QString(), 0, value, true};
            QVERIFY_THROWS_EXCEPTION(EncodingError, (void)writeRecord(request));
            try {
                (void)writeRecord(request);
            } catch (const EncodingError &error) {
                QCOMPARE(error.errorDescription(), QStringLiteral("\"longitude\" is not a finite number."));
            }
        }
    }

    void aLoneSurrogateIsWrittenAsTheReplacementCharacter()
    {
        const LoginRequest request{QString(QChar(0xD800)) + u'x', QStringLiteral("d")};
        QCOMPARE(decode<LoginRequest>(writeRecord(request)).userId, QStringLiteral("\uFFFDx"));
    }
};

QTEST_APPLESS_MAIN(RequestRecordsTest)
#include "RequestRecordsTest.moc"
