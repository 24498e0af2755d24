#include "gallery/SceneWindow.h"
#include "toolkit/LazyColumn.h"
#include "toolkit/TextLabel.h"
#include "ui/Pixels.h"
#include "ui/look/AmbrelButton.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/Divider.h"
#include "ui/people/LivePill.h"
#include "ui/people/MainPanelView.h"
#include "ui/people/MatchCard.h"
#include "ui/people/WarmthMeter.h"
#include "ui/profile/LargeProfilePhoto.h"
#include "ui/profile/MatchPhoto.h"
#include "ui/profile/PhotoStrip.h"
#include "ui/profile/ProfilePanel.h"
#include "ui/sidebar/AccountForm.h"
#include "ui/sidebar/BioEditor.h"
#include "ui/sidebar/ServerLocationForm.h"
#include "ui/sidebar/SidebarView.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <algorithm>

using namespace ambrel;

namespace {

const Scene &live()
{
    return sceneNamed(QStringLiteral("live-3"));
}

/// Where one view stands in another.
QRect placeIn(const QWidget &outer, const QWidget &view)
{
    return {view.mapTo(&outer, QPoint()), view.size()};
}

template <typename View>
QList<View *> shown(const QWidget &parent)
{
    auto views = parent.findChildren<View *>();
    views.removeIf([](const View *view) { return !view->isVisible() || view->size().isEmpty(); });
    std::sort(views.begin(), views.end(), [](const View *a, const View *b) {
        const QPoint first = a->mapToGlobal(QPoint());
        const QPoint second = b->mapToGlobal(QPoint());
        return std::pair(first.y(), first.x()) < std::pair(second.y(), second.x());
    });
    return views;
}

int gapBelow(const QWidget &root, const QWidget &upper, const QWidget &lower)
{
    return placeIn(root, lower).top() - placeIn(root, upper).bottom() - 1;
}

int gapBeside(const QWidget &root, const QWidget &left, const QWidget &right)
{
    return placeIn(root, right).left() - placeIn(root, left).right() - 1;
}

/// The widget with the focus is whole in the window, or fills the part that scrolls.
bool isInSight(const QWidget &widget)
{
    const QRect seen = widget.visibleRegion().boundingRect();
    return seen == widget.rect();
}

QString describe(const QWidget &widget)
{
    return QString::fromLatin1(widget.metaObject()->className()) + u' ' + widget.accessibleName() + u' ' +
           widget.property("text").toString();
}

} // namespace

class LayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("980 x 680") << smallestWindow;
        QTest::newRow("1280 x 900") << comfortableWindow;
        QTest::newRow("1600 x 1000") << largeWindow;
    }

    void sidebarKeepsItsDistances()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        const auto &sidebar = window.find<SidebarView>();
        QCOMPARE(window.placeOf(sidebar), QRect(18, 18, 340, size.height() - 36));

        const auto &logo = *shown<AmbrelLogo>(sidebar).first();
        QCOMPARE(logo.size(), QSize(52, 52));
        QCOMPARE(placeIn(sidebar, logo).left(), 18);
        const QList<QLabel *> header = shown<QLabel>(sidebar).mid(0, 2);
        QCOMPARE(header.at(0)->text(), QStringLiteral("Ambrel"));
        QCOMPARE(header.at(0)->font().pixelSize(), 30);
        QCOMPARE(header.at(0)->font().weight(), int(QFont::Black));
        QCOMPARE(gapBeside(sidebar, logo, *header.at(0)), 12);
        QCOMPARE(gapBelow(sidebar, *header.at(0), *header.at(1)), 2);
        QCOMPARE(placeIn(sidebar, *header.at(0)).top(), 18);
        const int textsMiddle = (placeIn(sidebar, *header.at(0)).top() + placeIn(sidebar, *header.at(1)).bottom()) / 2;
        QVERIFY(std::abs(placeIn(sidebar, logo).center().y() - textsMiddle) <= 1);
        const auto dividers = shown<Divider>(window.widget());
        QCOMPARE(dividers.size(), 2);
        QCOMPARE(window.placeOf(*dividers.first()), QRect(358, 18, 1, size.height() - 36));

        const auto &account = window.find<AccountForm>();
        const auto &server = window.find<ServerLocationForm>();
        QCOMPARE(gapBelow(sidebar, *header.at(1), account), 16);
        QCOMPARE(gapBelow(sidebar, account, server), 16);
        for (const QWidget *const form :
             {static_cast<const QWidget *>(&account), static_cast<const QWidget *>(&server)}) {
            QCOMPARE(placeIn(sidebar, *form).left(), 18);
            QCOMPARE(form->width(), 340 - 36);
        }
        QWidget *status = nullptr;
        for (auto *const label : shown<TextLabel>(sidebar)) {
            if (label->accessibleDescription() == QLatin1String("Status"))
                status = label;
        }
        if (size != smallestWindow) // where the forms scroll below it
            QVERIFY(gapBelow(sidebar, server, *status) >= 16);
        QCOMPARE(placeIn(sidebar, *status).left(), 18);
        QCOMPARE(sidebar.height() - placeIn(sidebar, *status).bottom() - 1, 18);
    }

    void formsKeepTheirDistances()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        const auto &account = window.find<AccountForm>();
        const auto fields = shown<QLineEdit>(account);
        QCOMPARE(fields.size(), 4);
        for (qsizetype i = 1; i < fields.size(); ++i)
            QCOMPARE(gapBelow(account, *fields.at(i - 1), *fields.at(i)), 10);
        const auto &bio = window.find<BioEditor>();
        QCOMPARE(bio.height(), 72);
        QCOMPARE(bio.width(), fields.first()->width());
        QCOMPARE(gapBelow(account, *fields.last(), bio), 10);
        const auto buttons = shown<AmbrelButton>(account);
        QCOMPARE(buttons.size(), 2);
        QCOMPARE(gapBelow(account, bio, *buttons.first()), 10);
        QCOMPARE(buttons.at(0)->width(), buttons.at(1)->width());
        QCOMPARE(gapBeside(account, *buttons.at(0), *buttons.at(1)), 8);

        const auto &server = window.find<ServerLocationForm>();
        const auto places = shown<QLineEdit>(server);
        QCOMPARE(places.size(), 3);
        QCOMPARE(gapBelow(server, *places.at(0), *places.at(1)), 10);
        QCOMPARE(places.at(1)->y(), places.at(2)->y());
        QCOMPARE(places.at(1)->width(), places.at(2)->width());
    }

    void matchColumnKeepsItsDistances()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        const auto &panel = window.find<MainPanelView>();
        const auto &meter = window.find<WarmthMeter>();
        const auto &list = window.find<LazyColumn>();
        const auto &pill = window.find<LivePill>();
        const auto &profile = window.find<ProfilePanel>();
        const auto texts = shown<TextLabel>(panel);
        const TextLabel &title = *texts.at(0);
        QCOMPARE(title.text(), QStringLiteral("Live Nearby"));
        const TextLabel &subtitle = **std::find_if(texts.begin(), texts.end(), [](const TextLabel *label) {
            return label->text().startsWith(u"Signed in as ");
        });
        QCOMPARE(placeIn(panel, title).topLeft(), QPoint(18, 18));
        QCOMPARE(gapBelow(panel, title, subtitle), 4);
        QCOMPARE(gapBelow(panel, subtitle, meter), 14);
        QCOMPARE(placeIn(panel, meter).left(), 18);
        QCOMPARE(gapBelow(panel, meter, list), 14);
        QCOMPARE(placeIn(panel, pill).right(), placeIn(panel, meter).right());
        QCOMPARE(placeIn(panel, pill).center().y(),
                 (placeIn(panel, title).top() + placeIn(panel, subtitle).bottom()) / 2);
        QCOMPARE(gapBeside(panel, meter, profile), 18);
        QVERIFY(meter.width() >= 360);
        QCOMPARE(shown<AmbrelLogo>(meter).first()->size(), QSize(82, 82));
        QCOMPARE(placeIn(meter, *shown<AmbrelLogo>(meter).first()).topLeft(), QPoint((meter.width() - 82) / 2, 18));
        const auto lines = shown<TextLabel>(meter);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(gapBelow(meter, *shown<AmbrelLogo>(meter).first(), *lines.at(0)), 10);
        QCOMPARE(gapBelow(meter, *lines.at(0), *lines.at(1)), 10);
        QCOMPARE(meter.height() - lines.at(1)->geometry().bottom() - 1, 18);
    }

    void cardsKeepTheirDistances()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        const auto &list = window.find<LazyColumn>();
        const auto cards = shown<MatchCard>(list);
        QCOMPARE(cards.size(), 3);
        QCOMPARE(placeIn(list, *cards.first()).top(), 2);
        QCOMPARE(gapBelow(list, *cards.at(0), *cards.at(1)), 12);
        QCOMPARE(cards.first()->width(), window.find<WarmthMeter>().width());
        for (const MatchCard *const card : cards) {
            const auto &photo = *shown<MatchPhoto>(*card).first();
            QCOMPARE(placeIn(*card, photo), QRect(12, 12, 86, 104));
            const auto texts = shown<TextLabel>(*card);
            QCOMPARE(texts.size(), 4);
            QCOMPARE(placeIn(*card, *texts.first()).topLeft(), QPoint(12 + 86 + 12, 12));
            for (qsizetype i = 1; i < texts.size(); ++i)
                QCOMPARE(gapBelow(*card, *texts.at(i - 1), *texts.at(i)), 4);
            const auto buttons = shown<AmbrelButton>(*card);
            QCOMPARE(gapBelow(*card, photo, *buttons.first()), 10);
            for (qsizetype i = 1; i < buttons.size(); ++i) {
                QCOMPARE(gapBeside(*card, *buttons.at(i - 1), *buttons.at(i)), 8);
                QVERIFY(std::abs(buttons.at(i)->width() - buttons.at(0)->width()) <= 1);
            }
            QCOMPARE(placeIn(*card, *buttons.first()).left(), 12);
            QCOMPARE(placeIn(*card, *buttons.last()).right(), card->width() - 12 - 1);
            QCOMPARE(placeIn(*card, *buttons.last()).bottom(), card->height() - 12 - 1);
        }
    }

    void profileKeepsItsDistances()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        const auto &profile = window.find<ProfilePanel>();
        QCOMPARE(profile.width(), 330);
        QCOMPARE(window.placeOf(profile).top(), 36);
        const auto texts = shown<TextLabel>(profile);
        QCOMPARE(placeIn(profile, *texts.first()).topLeft(), QPoint(18, 18));
        const auto &photo = window.find<LargeProfilePhoto>();
        QCOMPARE(placeIn(profile, photo).size(), QSize(330 - 36, 250));
        QCOMPARE(gapBelow(profile, *texts.first(), photo), 14);
        QCOMPARE(gapBelow(profile, photo, *texts.at(1)), 14);
        QCOMPARE(gapBelow(profile, *texts.at(1), *texts.at(2)), 14);
        QCOMPARE(gapBelow(profile, *texts.at(2), *texts.at(3)), 14);
        const auto &strip = window.find<PhotoStrip>();
        const auto thumbnails = shown<PhotoFrame>(strip);
        QCOMPARE(thumbnails.size(), 4);
        for (const PhotoFrame *const thumbnail : thumbnails)
            QCOMPARE(thumbnail->size(), QSize(74, 90));
        QCOMPARE(gapBelow(profile, *texts.at(3), *thumbnails.first()), 14);
        const TextLabel &note = *texts.last();
        QCOMPARE(note.text(), QStringLiteral("All available photos are unlocked."));
        const QWidget &content = *texts.first()->parentWidget();
        QCOMPARE(content.height() - placeIn(content, note).bottom() - 1, 18);
    }

    void noSelectionStandsInTheMiddle()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(sceneNamed(QStringLiteral("first-run")), size);
        const auto &profile = window.find<ProfilePanel>();
        const auto &logo = *shown<AmbrelLogo>(profile).first();
        const auto texts = shown<TextLabel>(profile);
        QCOMPARE(texts.size(), 3);
        QCOMPARE(logo.size(), QSize(94, 94));
        QCOMPARE(placeIn(profile, logo).left(), (330 - 94) / 2);
        QCOMPARE(gapBelow(profile, logo, *texts.at(1)), 10);
        QCOMPARE(gapBelow(profile, *texts.at(1), *texts.at(2)), 10);
        const int above = gapBelow(profile, *texts.first(), logo) - 14;
        const int below = profile.height() - 18 - placeIn(profile, *texts.at(2)).bottom() - 1;
        QVERIFY2(std::abs(above - below) <= 1, qPrintable(QStringLiteral("%1 and %2").arg(above).arg(below)));
    }

    void cornersHaveTheirRadius()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        const QImage picture = window.picture();
        const auto &list = window.find<LazyColumn>();
        const QWidget &secondCard = *shown<MatchCard>(list).at(1);
        for (const QWidget *const view :
             {static_cast<const QWidget *>(&window.find<SidebarView>()), static_cast<const QWidget *>(&secondCard),
              static_cast<const QWidget *>(&window.find<WarmthMeter>()),
              static_cast<const QWidget *>(&window.find<ProfilePanel>())}) {
            // With a radius of 8 the pixel 1,1 lies outside of the arc and 3,3 inside.
            const QPoint corner = window.placeOf(*view).topLeft();
            const QColor outside = picture.pixelColor(corner - QPoint(1, 1));
            const QColor inside = picture.pixelColor(corner + QPoint(12, 4));
            QVERIFY(distance(outside, inside) > 6);
            QVERIFY(distance(picture.pixelColor(corner + QPoint(1, 1)), outside) <= 3);
            QVERIFY(distance(picture.pixelColor(corner + QPoint(3, 3)), inside) <= 3);
        }
    }

    void buttonsAreAtLeast40High()
    {
        QFETCH_GLOBAL(QSize, size);
        for (const char *const name : {"live-3", "first-run", "busy", "alert"}) {
            SceneWindow window(sceneNamed(QString::fromLatin1(name)), size);
            const auto buttons = shown<AmbrelButton>(window.widget());
            QVERIFY(buttons.size() >= 5);
            for (const AmbrelButton *const button : buttons)
                QVERIFY2(button->height() >= 40, qPrintable(button->text()));
        }
    }

    void everyControlComesIntoSightWithTab()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        QSet<const QWidget *> reached;
        for (int step = 0; step < 100; ++step) {
            QTest::keyClick(window.widget().windowHandle(), Qt::Key_Tab);
            const QWidget *const focused = QApplication::focusWidget();
            QVERIFY(focused);
            if (reached.contains(focused))
                break;
            reached.insert(focused);
            QCoreApplication::processEvents();
            QVERIFY2(isInSight(*focused), qPrintable(describe(*focused)));
        }
        // Window controls, fields and buttons of the sidebar, one card: nothing is left out.
        for (const QWidget *const widget : shown<QWidget>(window.widget())) {
            if (widget->focusPolicy() & Qt::TabFocus && widget->isEnabled())
                QVERIFY2(reached.contains(widget), qPrintable(describe(*widget)));
        }
    }

    void everyControlOfTheCardsComesIntoSightWithTheArrowKeys()
    {
        QFETCH_GLOBAL(QSize, size);
        SceneWindow window(live(), size);
        const auto cards = shown<MatchCard>(window.widget());
        QCOMPARE(cards.size(), 3);
        window.widget().findChild<MatchCard *>()->setFocus(Qt::TabFocusReason);
        const auto press = [&window](Qt::Key key) {
            QTest::keyClick(window.widget().windowHandle(), key);
            QCoreApplication::processEvents();
            return QApplication::focusWidget();
        };
        press(Qt::Key_Home);
        QSet<const QWidget *> reached;
        for (qsizetype row = 0; row < cards.size(); ++row) {
            while (!qobject_cast<const MatchCard *>(QApplication::focusWidget()))
                press(Qt::Key_Left);
            for (const QWidget *control = QApplication::focusWidget(); !reached.contains(control);
                 control = press(Qt::Key_Right)) {
                QVERIFY2(isInSight(*control), qPrintable(describe(*control)));
                reached.insert(control);
            }
            press(Qt::Key_Down);
        }
        for (const MatchCard *const card : cards) {
            QVERIFY2(reached.contains(card), qPrintable(describe(*card)));
            for (const AmbrelButton *const button : shown<AmbrelButton>(*card))
                QVERIFY2(reached.contains(button), qPrintable(describe(*button)));
        }
    }

    void textsAreNeverCut_data()
    {
        QTest::addColumn<QString>("scene");
        for (const char *const name : {"first-run", "live-3", "selected-mile", "errors-long", "long-texts",
                                       "right-to-left", "many-scripts", "tall-scripts", "alert-long-smallest"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void textsAreNeverCut()
    {
        QFETCH_GLOBAL(QSize, size);
        QFETCH(QString, scene);
        SceneWindow window(sceneNamed(scene), size);
        for (const TextLabel *const label : shown<TextLabel>(window.widget())) {
            const QString what = QStringLiteral("%1 x %2 for \"%3\"").arg(label->width()).arg(label->height());
            QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                     qPrintable(what.arg(label->text().left(60)) + QStringLiteral(" needs ") +
                                QString::number(label->heightForWidth(label->width()))));
        }
        for (const QLabel *const label : shown<QLabel>(window.widget()))
            QVERIFY2(label->size().expandedTo(label->sizeHint()) == label->size(), qPrintable(label->text()));
    }

    void columnsStayInTheWindowWhateverTheTexts_data() { textsAreNeverCut_data(); }

    void columnsStayInTheWindowWhateverTheTexts()
    {
        QFETCH_GLOBAL(QSize, size);
        QFETCH(QString, scene);
        SceneWindow window(sceneNamed(scene), size);
        QCOMPARE(window.widget().size(), size);
        QCOMPARE(window.find<SidebarView>().width(), 340);
        const auto &panel = window.find<MainPanelView>();
        QCOMPARE(panel.width(), std::max(size.width() - 359 - 18, 18 + 360 + 18 + 330 + 18));
        const int lowest = size.height() - 18;
        QVERIFY2(window.placeOf(panel).bottom() < lowest, qPrintable(QString::number(window.placeOf(panel).bottom())));
        const auto &list = window.find<LazyColumn>();
        QVERIFY2(list.height() >= 190, qPrintable(QString::number(list.height()))); // room for a card
    }
};

int main(int argc, char **argv)
{
    SceneApplication application(argc, argv);
    LayoutTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "LayoutTest.moc"
