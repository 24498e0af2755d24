// On a desktop whose texts are half as large again as they come.
#include "toolkit/TextLabel.h"
#include "ui/look/Theme.h"
#include "ui/sidebar/SidebarView.h"
#include "ui/window/AmbrelMacApp.h"
#include "ui/window/ViewEnvironment.h"

#include "ui/MatchViews.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>

using namespace ambrel;

class TextScaleTest : public QObject
{
    Q_OBJECT

public:
    explicit TextScaleTest(AmbrelMacApp &application) : m_application(application) {}

private Q_SLOTS:
    void everyTextIsLarger()
    {
        QCOMPARE(theme::font(theme::TextStyle::Body).pixelSize(), 21);
        QCOMPARE(theme::font(theme::TextStyle::Wordmark).pixelSize(), 45);
        QCOMPARE(QApplication::font("QMenu").pixelSize(), 21);
        for (const auto *const widget : QApplication::allWidgets())
            QVERIFY2(widget->font().pixelSize() >= 17, widget->metaObject()->className()); // 11 is the smallest
    }

    void nothingIsCutAndTheColumnsGrowWithTheirTexts()
    {
        const auto window = m_application.openWindow();
        auto &state = ViewEnvironment::of(*window).state();
        const MatchResult ana = person(QStringLiteral("Ana"));
        state.matches = QList<MatchResult>{ana};
        state.selectedMatch = ana;
        QTRY_VERIFY(visibleTexts(*window).contains(QStringLiteral("Profile")));
        QCOMPARE(window->findChild<SidebarView *>()->width(), 510);
        QCOMPARE(window->size(), (QSize(1280, 900) * 1.5).boundedTo(window->screen()->availableSize()));
        int seen = 0;
        for (const auto *const widget : window->findChildren<QWidget *>()) {
            if (!widget->isVisible() || !showsText(*widget))
                continue;
            ++seen;
            QVERIFY2(widget->contentsRect().height() >= widget->fontMetrics().height(),
                     qPrintable(QString::fromLatin1(widget->metaObject()->className()) + QLatin1Char(' ') +
                                widget->accessibleName()));
            if (const auto *const label = qobject_cast<const QLabel *>(widget))
                QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->text()));
        }
        QVERIFY2(seen >= 25, qPrintable(QString::number(seen)));
    }

private:
    static bool showsText(const QWidget &widget)
    {
        const auto *const button = qobject_cast<const QAbstractButton *>(&widget);
        const auto *const label = qobject_cast<const TextLabel *>(&widget);
        return (button && !button->text().isEmpty()) || (label && label->height() > 0) ||
               qobject_cast<const QLabel *>(&widget) || qobject_cast<const QLineEdit *>(&widget);
    }

    AmbrelMacApp &m_application;
};

int main(int argc, char **argv)
{
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    qputenv("KDE_SESSION_VERSION", "5");
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QSettings desktop(config + QStringLiteral("/kdeglobals"), QSettings::IniFormat);
    desktop.setValue(QStringLiteral("font"), QStringLiteral("Sans Serif,16.5,-1,5,50,0,0,0,0,0").split(u','));
    desktop.sync();

    AmbrelMacApp app(argc, argv);
    TextScaleTest test(app);
    return QTest::qExec(&test, argc, argv);
}

#include "TextScaleTest.moc"
