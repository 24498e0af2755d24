// The sidebar's text fields and its bio editor: what is typed, what the state brings, and texts that no person writes.
#include "support/Slowdown.h"
#include "ui/ViewFixture.h"
#include "ui/sidebar/SidebarView.h"
#include "ui/sidebar/TextBinding.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <ctime>

using namespace ambrel;

namespace {

using Sidebar = ViewFixture<SidebarView>;
constexpr QSize tall{340, 860};

struct BoundField
{
    const char *placeholder;
    TextField field;
};

constexpr BoundField boundFields[] = {
    {"User ID", &AmbrelAppState::userId},
    {"Display name", &AmbrelAppState::displayName},
    {"Email", &AmbrelAppState::email},
    {"Phone", &AmbrelAppState::phone},
    {"Server", &AmbrelAppState::serverBaseURL},
    {"Latitude", &AmbrelAppState::latitudeText},
    {"Longitude", &AmbrelAppState::longitudeText},
};

/// What a piece of work takes of the processor on this thread.
double processorSeconds(const std::function<void()> &work)
{
    timespec start{};
    timespec end{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
    work();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    return double(end.tv_sec - start.tv_sec) + double(end.tv_nsec - start.tv_nsec) / 1e9;
}

/// Texts that no person writes.
void addHugeTexts()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("100 kB on one line") << QString(100'000, QLatin1Char('x'));
    QTest::newRow("10 MB on one line") << QStringLiteral("lorem ipsum ").repeated(900'000);
    QTest::newRow("10 MB of lines") << QStringLiteral("x\n").repeated(5'000'000);
    QTest::newRow("combining marks") << QStringLiteral("Z") + QString(1'000'000, QChar(0x0301));
    QTest::newRow("Devanagari") << QStringLiteral("\u0928\u092e\u0938\u094d\u0924\u0947 ").repeated(100'000);
    QTest::newRow("emoji") << QStringLiteral("a") + QStringLiteral("\U0001F600").repeated(500'000);
    QTest::newRow("hearts") << QStringLiteral("a") + QStringLiteral("\u2764\uFE0F").repeated(500'000);
}

} // namespace

class SidebarFieldsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void typingChangesTheStateAtOnce()
    {
        Sidebar sidebar(tall);
        for (const BoundField &bound : boundFields) {
            auto *const field = sidebar.named<QLineEdit>(QString::fromLatin1(bound.placeholder));
            QVERIFY2(field, bound.placeholder);
            QCOMPARE(field->placeholderText(), QString::fromLatin1(bound.placeholder));
            field->setFocus();
            field->selectAll();
            QTest::keyClicks(field, QStringLiteral(" a7 "));
            QCOMPARE((sidebar.state().*bound.field).value(), QStringLiteral(" a7 "));
        }
    }

    void changesOfTheStateShowInTheFields()
    {
        Sidebar sidebar(tall);
        for (const BoundField &bound : boundFields) {
            sidebar.state().*bound.field = QStringLiteral("from the server");
            sidebar.refresh();
            QCOMPARE(sidebar.named<QLineEdit>(QString::fromLatin1(bound.placeholder))->text(),
                     QStringLiteral("from the server"));
        }
    }

    void bioIsBoundBothWaysAndKeepsHardBlanks()
    {
        Sidebar sidebar(tall);
        auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        QVERIFY(bio);
        bio->setFocus();
        QTest::keyClicks(bio, QStringLiteral("one"));
        QTest::keyClick(bio, Qt::Key_Return);
        QTest::keyClicks(bio, QStringLiteral("two"));
        QCOMPARE(sidebar.state().profileBio.value(), QStringLiteral("one\ntwo"));

        QGuiApplication::clipboard()->setText(QString(QChar::Nbsp));
        QTest::keyClick(bio, Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(sidebar.state().profileBio.value(), QStringLiteral("one\ntwo") + QChar(QChar::Nbsp));

        sidebar.state().profileBio = QStringLiteral("from\r\nthe server");
        sidebar.refresh();
        QCOMPARE(bio->toPlainText(), QStringLiteral("from\nthe server"));
        QCOMPARE(sidebar.state().profileBio.value(), QStringLiteral("from\r\nthe server")); // shown, not changed
    }

    void noBioStopsTheWindow_data() { addHugeTexts(); }
    void noBioStopsTheWindow()
    {
        QFETCH(const QString, text);
        Sidebar sidebar(tall);
        auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        sidebar.state().profileBio = QStringLiteral("warm Z\u0301 \u0928 \U0001F600"); // loads its fonts
        sidebar.refresh();
        const double cost = processorSeconds([&] {
            sidebar.state().profileBio = text;
            sidebar.refresh();
            bio->grab();
        });
        QVERIFY2(cost < 0.1 * slowdown, qPrintable(QString::number(cost)));
        QVERIFY(text.startsWith(bio->toPlainText()) && bio->toPlainText().size() >= 100);
        QVERIFY(sidebar.state().profileBio.value() == text); // as it was sent

        bio->setFocus();
        bio->moveCursor(QTextCursor::Start);
        QTest::keyClicks(bio, QStringLiteral("I "));
        QVERIFY(sidebar.state().profileBio.value() == QStringLiteral("I ") + text);
        QTest::keyClick(bio, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(sidebar.state().profileBio.value() == text);
    }

    void whatIsHiddenOfABioComesIntoSightAndGoesWithTheRest()
    {
        Sidebar sidebar(tall);
        auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        QString text = QStringLiteral("0123456789").repeated(3'000);
        sidebar.state().profileBio = text;
        sidebar.refresh();
        bio->setFocus();
        QTextCursor cursor = bio->textCursor();
        cursor.setPosition(10);
        cursor.setPosition(4'010, QTextCursor::KeepAnchor);
        bio->setTextCursor(cursor);
        QTest::keyClick(bio, Qt::Key_Delete);
        text.remove(10, 4'000);
        QVERIFY(sidebar.state().profileBio.value() == text);
        QVERIFY(text.startsWith(bio->toPlainText()) && bio->toPlainText().size() > 1'500);
        QTest::keyClick(bio, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(sidebar.state().profileBio.value() == text); // or what was never typed would go

        bio->selectAll();
        QTest::keyClicks(bio, QStringLiteral("new"));
        QCOMPARE(sidebar.state().profileBio.value(), QStringLiteral("new"));
    }

    void aHugeTextPastedIntoTheBioIsKeptWhole()
    {
        Sidebar sidebar(tall);
        auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        sidebar.state().profileBio = QStringLiteral("Hello world");
        sidebar.refresh();
        bio->setFocus();
        QTextCursor cursor = bio->textCursor();
        cursor.setPosition(6);
        bio->setTextCursor(cursor);
        const QString pasted = QStringLiteral("wide ").repeated(200'000);
        QGuiApplication::clipboard()->setText(pasted);
        QTest::keyClick(bio, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(sidebar.state().profileBio.value() == QStringLiteral("Hello ") + pasted + QStringLiteral("world"));
        QVERIFY(bio->toPlainText().size() < 10'000);
        bio->selectAll();
        QTest::keyClick(bio, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(sidebar.state().profileBio.value() == pasted);
    }

    void noTextStopsAField_data() { addHugeTexts(); }
    void noTextStopsAField()
    {
        QFETCH(const QString, text);
        Sidebar sidebar(tall);
        auto *const name = sidebar.named<QLineEdit>(QStringLiteral("Display name"));
        auto &stored = sidebar.state().displayName;
        stored = QStringLiteral("warm Z\u0301 \u0928 \U0001F600 \u2764\uFE0F"); // loads its fonts
        sidebar.refresh();
        const double cost = processorSeconds([&] {
            stored = text;
            sidebar.refresh();
            name->grab();
        });
        QVERIFY2(cost < 0.1 * slowdown, qPrintable(QString::number(cost)));
        QVERIFY(name->text().size() >= 50);
        QVERIFY(stored.value() == text); // as it was sent

        name->setFocus();
        QTest::keyClick(name, Qt::Key_Home);
        QTest::keyClicks(name, QStringLiteral("I "));
        QVERIFY(stored.value().startsWith(QStringLiteral("I ") + text.left(1)));
        QCOMPARE(stored->size(), text.size() + 2);
        QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(stored->size(), text.size());
    }

    void whatIsHiddenInAFieldComesIntoSightAndGoesWithTheRest()
    {
        Sidebar sidebar(tall);
        auto *const name = sidebar.named<QLineEdit>(QStringLiteral("Display name"));
        auto &stored = sidebar.state().displayName;
        QString text = QStringLiteral("0123456789").repeated(3'000);
        stored = text;
        sidebar.refresh();
        QVERIFY(name->text().size() < 10'000);
        name->setFocus();
        name->setSelection(10, 4'000);
        QTest::keyClick(name, Qt::Key_Delete);
        text.remove(10, 4'000);
        QVERIFY(stored.value() == text);
        QVERIFY(text.startsWith(name->text()) && name->text().size() > 1'500);
        name->selectAll();
        QTest::keyClicks(name, QStringLiteral("new"));
        QCOMPARE(stored.value(), QStringLiteral("new"));

        const QString pasted = QStringLiteral("wide ").repeated(200'000);
        QGuiApplication::clipboard()->setText(pasted);
        QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(stored.value() == QStringLiteral("new") + pasted);
        QVERIFY(name->text().size() < 11'000);
        name->selectAll();
        QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(stored.value() == pasted);
        name->selectAll();
        QTest::keyClick(name, Qt::Key_Delete);
        QCOMPARE(stored.value(), QString());
    }

    void refreshKeepsCaretSelectionUndoAndFocus()
    {
        Sidebar sidebar(tall);
        auto *const field = sidebar.named<QLineEdit>(QStringLiteral("Display name"));
        field->setFocus();
        QTest::keyClicks(field, QStringLiteral("Samantha"));
        field->setSelection(2, 3);

        sidebar.state().statusText = QStringLiteral("3 nearby.");
        sidebar.state().matches = QList<MatchResult>{};
        sidebar.refresh();
        QVERIFY(field->hasFocus());
        QCOMPARE(field->selectionStart(), 2);
        QCOMPARE(field->selectedText(), QStringLiteral("man"));
        QVERIFY(field->isUndoAvailable());
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(field->text() != QStringLiteral("Samantha"));
        QCOMPARE(sidebar.state().displayName.value(), field->text()); // undoing is typing too
    }

    void refreshKeepsTheBioEditorsCaretAndUndo()
    {
        Sidebar sidebar(tall);
        auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        bio->setFocus();
        QTest::keyClicks(bio, QStringLiteral("hello"));
        QTest::keyClick(bio, Qt::Key_Left);
        sidebar.state().statusText = QStringLiteral("Paused.");
        sidebar.refresh();
        QCOMPARE(bio->textCursor().position(), 4);
        QVERIFY(bio->document()->isUndoAvailable());
        QTest::keyClicks(bio, QStringLiteral("!"));
        QCOMPARE(sidebar.state().profileBio.value(), QStringLiteral("hell!o"));
    }

    void bioOfARightToLeftScriptBeginsAtTheRight()
    {
        Sidebar sidebar(tall);
        const auto *const bio = sidebar.named<QPlainTextEdit>(QStringLiteral("Bio"));
        sidebar.state().profileBio = QStringLiteral("אוהבת ספרים.");
        sidebar.refresh();
        QVERIFY(bio->cursorRect().left() > bio->width() / 2); // the caret stands before the first letter
        sidebar.state().profileBio = QStringLiteral("Reads on benches.");
        sidebar.refresh();
        QVERIFY(bio->cursorRect().left() < bio->width() / 4);
    }
};

QTEST_MAIN(SidebarFieldsTest)
#include "SidebarFieldsTest.moc"
