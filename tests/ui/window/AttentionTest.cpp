#include "support/WindowManager.h"
#include "ui/ViewFixture.h"
#include "ui/window/ContentView.h"

using namespace ambrel;

class AttentionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageAsksForAttentionWhileAnotherWindowIsInFront()
    {
        AmbrelStyle::install();
        const WindowManager windowManager;
        ViewFixture<ContentView> content({980, 680});
        QWidget other;
        other.setGeometry(1000, 300, 200, 200);
        other.show();
        other.activateWindow();
        QTRY_VERIFY(other.isActiveWindow());
        const auto asksForAttention = [&content] {
            return ChildProcess::outputOf("xprop", {"-id", QByteArray::number(content.window.winId()), "_NET_WM_STATE"})
                .contains("_NET_WM_STATE_DEMANDS_ATTENTION");
        };
        QVERIFY(!asksForAttention());

        content.state().incomingSeeMe = SeeMeMessage{.id = QStringLiteral("1"),
                                                     .fromUserId = QStringLiteral("ana"),
                                                     .toUserId = QStringLiteral("sam"),
                                                     .body = QStringLiteral("By the fountain."),
                                                     .createdAt = std::nullopt};
        content.refresh();
        QTRY_VERIFY(asksForAttention());
        QVERIFY(other.isActiveWindow()); // it asks, it does not push itself forward

        content.window.activateWindow();
        QTRY_VERIFY(!asksForAttention());
    }
};

QTEST_MAIN(AttentionTest)
#include "AttentionTest.moc"
