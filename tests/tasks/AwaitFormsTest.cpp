#include "AwaitForms.h"

#include <QDirIterator>
#include <QTest>

using namespace ambrel;

class AwaitFormsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyAwaitOfTheProgramsIsSafe()
    {
        int awaits = 0;
        QStringList unsafe;
        for (const char *const folder : {"/src", "/local-server", "/tests", "/bench"}) {
            QDirIterator files(QStringLiteral(AMBREL_SOURCES) + QString::fromLatin1(folder),
                               {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (files.hasNext()) {
                QFile file(files.next());
                QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
                for (const QString &statement : unsafeAwaits(QString::fromUtf8(file.readAll()), &awaits))
                    unsafe.append(file.fileName() + QStringLiteral(": ") + statement);
            }
        }
        QVERIFY2(unsafe.isEmpty(), qPrintable(unsafe.join(u'\n')));
        QVERIFY2(awaits > 5, "the sources have not been found");
    }

    void theSafeFormsAreAccepted_data()
    {
        QTest::addColumn<QString>("statement");
        for (const char *const statement :
             {"co_await timer;", "co_await this->timer;", "co_await f();", "co_await f(a, b);",
              "co_await client->signup(request);", "co_await sleepFor(theme::pause, stop);",
              "const auto v = co_await f(a);", "const auto v = co_await client->check(userId, deviceId);",
              "const auto v = co_await f(std::move(a));", "const auto v\n    = co_await f(a,\n                   b);",
              "member = co_await f(a);", "end->record = co_await task;", "co_return co_await f(a);",
              "co_return co_await send<Response>(std::move(request));", "if (x) { co_await f(a); }",
              "try { co_await f(a); } catch (...) {}"})
            QTest::newRow(QByteArray(statement).simplified().constData()) << QString::fromLatin1(statement);
    }

    void theSafeFormsAreAccepted()
    {
        QFETCH(const QString, statement);
        int awaits = 0;
        QCOMPARE(unsafeAwaits(QStringLiteral("Task<> f() { ") + statement + QStringLiteral(" }"), &awaits),
                 QStringList());
        QCOMPARE(awaits, 1);
    }

    void everyOtherFormIsFound_data()
    {
        QTest::addColumn<QString>("statement");
        for (const char *const statement : {"co_await api.post(Request{a, b});",
                                            "co_await post({a, b});",
                                            "co_await post({.a = x});",
                                            "Pair p{co_await f(), 3};",
                                            "co_await f(c ? x : y);",
                                            "const auto v = c ? co_await f() : x;",
                                            "co_await f([a] { return a; });",
                                            "co_await f(\"text\");",
                                            "co_await f(g(a));",
                                            "co_await f(QString(a));",
                                            "if (co_await f()) return;",
                                            "switch (co_await f()) {}",
                                            "while (co_await f()) {}",
                                            "for (const auto x : co_await f()) {}",
                                            "g(co_await f());",
                                            "return co_await f();",
                                            "const auto v = (co_await f(a)).value;",
                                            "const auto v = co_await f(a) + 1;",
                                            "auto v = co_await f(a);",
                                            "const QString v = co_await f(a);",
                                            "v += co_await f(a);",
                                            "const auto [a, b] = co_await f();",
                                            "co_await f(1);",
                                            "co_await f(*a);",
                                            "co_await f(a + b);",
                                            "co_await f().g(a);",
                                            "!co_await f();",
                                            "if (x) co_await f(a);",
                                            "co_return (co_await f(a));",
                                            "co_await f(std::forward<T>(a));",
                                            "const auto v = co_await (co_await f());"})
            QTest::newRow(QByteArray(statement).simplified().constData()) << QString::fromLatin1(statement);
    }

    void everyOtherFormIsFound()
    {
        QFETCH(const QString, statement);
        QVERIFY(!unsafeAwaits(QStringLiteral("Task<> f() { ") + statement + QStringLiteral(" }")).isEmpty());
    }

    void commentsAndTextsAreNotCode()
    {
        int awaits = 0;
        const QString source =
            QStringLiteral("// if (co_await f())\n/* co_await\n f(1) */ g(\"\\\"co_await f(1);\");\n"
                           "h(R\"(co_await f(1);)\"); const char c = '\"'; const int n = 1'000; if (co_await f()) {}");
        QCOMPARE(unsafeAwaits(source, &awaits).size(), 1);
        QCOMPARE(awaits, 1);
    }
};

QTEST_GUILESS_MAIN(AwaitFormsTest)
#include "AwaitFormsTest.moc"
