#include "gallery/Scene.h"

#include "gallery/SceneMatches.h"
#include "ui/layers/SeeMeFlashOverlay.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/people/MatchCard.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <algorithm>

namespace ambrel {

namespace {

void signIn(AmbrelAppState &state)
{
    state.userId = QStringLiteral("robinexample4711");
    state.displayName = QStringLiteral("Robin Example");
    state.email = QStringLiteral("robin@example.org");
    state.phone = QStringLiteral("+1 555 0100");
    state.profileBio = QStringLiteral("Walks everywhere, reads on benches, says hello.");
    state.serverStatusText = QStringLiteral("Ambrel v1.0 is online.");
    state.betaStatusText = QStringLiteral("Android beta 0.9.2 is available.");
}

void goLive(AmbrelAppState &state, const QList<MatchResult> &matches)
{
    signIn(state);
    state.isLive = true;
    state.statusText = matches.isEmpty() ? QStringLiteral("No matches nearby.")
                                         : QString::number(matches.size()) + QStringLiteral(" nearby.");
    state.matches = matches;
    if (!matches.isEmpty())
        state.selectedMatch = matches.first();
}

void goLiveAndSelect(AmbrelAppState &state, int number)
{
    const QList<MatchResult> people = peopleNearby(4);
    goLive(state, people);
    state.selectedMatch = people.at(number);
}

SeeMeMessage message(const QString &body)
{
    return {.id = QStringLiteral("1"),
            .fromUserId = QStringLiteral("amelie"),
            .toUserId = QStringLiteral("robin"),
            .body = body,
            .createdAt = std::nullopt};
}

MatchResult described(int number, double meters, const QString &name, const std::optional<QString> &bio)
{
    MatchResult match = personAway(number, meters);
    match.displayName = name;
    match.profileBio = bio;
    return match;
}

void showFirstRun(AmbrelAppState &) {}

void showBusy(AmbrelAppState &state)
{
    state.displayName = QStringLiteral("Robin Example");
    state.isBusy = true;
}

void showErrors(AmbrelAppState &state)
{
    signIn(state);
    state.statusText = QStringLiteral("The certificate for this server is not trusted.");
    state.serverStatusText = QStringLiteral("The server could not be found.");
    state.betaStatusText = QStringLiteral("Android beta status unavailable.");
}

void showLongErrors(AmbrelAppState &state)
{
    goLive(state, peopleNearby(3));
    state.statusText = QStringLiteral("The server says: ") + QStringLiteral("out of reach ").repeated(30);
    state.serverStatusText = QStringLiteral("x").repeated(300);
    state.betaStatusText = QStringLiteral("Android beta ") + QStringLiteral("9.").repeated(80);
}

void showPaused(AmbrelAppState &state)
{
    goLive(state, peopleNearby(3));
    state.isLive = false;
    state.statusText = QStringLiteral("Paused.");
}

void showUnselected(AmbrelAppState &state)
{
    goLive(state, peopleNearby(3));
    state.selectedMatch = std::nullopt;
}

void showBrokenPhoto(AmbrelAppState &state)
{
    QList<MatchResult> people = peopleNearby(3);
    for (MatchResult &match : people) {
        match.profilePhoto.reset();
        match.profilePhotos = {PhotoText(QStringLiteral("data:image/png;base64,iVBORw0KGgoAAAANSUhEUg=="))};
    }
    goLive(state, people);
}

void showLongTexts(AmbrelAppState &state)
{
    const QString word = QStringLiteral("Wwwwwwwwwwwwwwww").repeated(400);
    const QString prose = QStringLiteral("Long walks, longer letters. ").repeated(200);
    QList<MatchResult> people{described(0, 38, word, prose), described(1, 152, prose, word),
                              described(2, 460, QStringLiteral("No bio"), std::nullopt)};
    people[0].aToB = 1e15;
    people[0].distanceMeters = 999.4;
    goLive(state, people);
    state.displayName = word;
    state.profileBio = prose;
}

void showRightToLeft(AmbrelAppState &state)
{
    const QString arabic = QStringLiteral("نور الحسن الراشدي من مدينة بعيدة جدا على شاطئ البحر الأبيض المتوسط");
    const QString hebrew = QStringLiteral("אוהבת ספרים, קפה והליכות ארוכות על שפת הים. ").repeated(6);
    goLive(state, {described(3, 38, arabic, hebrew),
                   described(0, 152, QStringLiteral("\u202Eesrever"), QStringLiteral("\u202Edlrow olleh")),
                   described(1, 460, QStringLiteral("שלום"), QStringLiteral("مرحبا Hello שלום 123"))});
    state.displayName = QStringLiteral("نور");
    state.profileBio = hebrew;
    state.statusText = QStringLiteral("Keeping \u2068نور\u2069 visible.");
}

void showManyScripts(AmbrelAppState &state)
{
    const QString japanese =
        QStringLiteral("本と珈琲と長い散歩が好きです。古い映画館と静かな図書館にもよく行きます。").repeated(4);
    const QString family = QStringLiteral("👩‍👩‍👧‍👦🏳️‍🌈👍🏽🇯🇵");
    goLive(state,
           {described(2, 38, QStringLiteral("佐藤 由紀"), japanese),
            described(5, 152, family + QStringLiteral(" Zoë"), family.repeated(20)),
            described(7, 460,
                      QStringLiteral("Z\u0351\u0343\u0310\u0322a\u0327\u0308\u030Al\u0334\u0323g\u0338o\u0321\u0316"),
                      QStringLiteral("ế\u0301\u0302\u0303 अर्जुन தமிழ் ภาษาไทย 한국어 Ελληνικά"))});
    state.displayName = QStringLiteral("由紀 👍🏽");
}

void showTallScripts(AmbrelAppState &state)
{
    const QString burmese = QStringLiteral("မြန်မာနိုင်ငံ၏ တောင်တန်းများကို ချစ်ပါသည်။ ");
    const QString tibetan = QStringLiteral("བོད་ཀྱི་རི་མཐོན་པོ་ལ་དགའ་བ་ཡིན། རྒྱབ་སྐྱོབ་བསྒྲུབས། ");
    const QString khmer = QStringLiteral("ស្ត្រីខ្មែរស្រឡាញ់ភ្នំនិងសមុទ្រ ");
    goLive(state, {described(0, 38, burmese, burmese.repeated(6)), described(1, 152, tibetan, tibetan.repeated(6)),
                   described(2, 460, khmer, khmer.repeated(6))});
}

void showAlert(AmbrelAppState &state)
{
    goLive(state, peopleNearby(3));
    state.incomingSeeMe = message(QStringLiteral("Can you see me? I have the yellow scarf."));
}

void showLongAlert(AmbrelAppState &state)
{
    goLive(state, peopleNearby(3));
    state.incomingSeeMe = message(QStringLiteral("I am by the fountain, next to the tree. ").repeated(125));
}

void showFlash(AmbrelAppState &state)
{
    goLive(state, peopleNearby(3));
    state.statusText = QStringLiteral("Sent: Can you see me?");
    state.showSeeMeFlash = true;
}

void showFlashAndAlert(AmbrelAppState &state)
{
    showFlash(state);
    state.incomingSeeMe = message(QStringLiteral("Yes! I am by the fountain."));
}

/// The flash has faded in and wears this colouring.
template <bool inverted>
bool isFlashing(const QWidget &window)
{
    const auto *const overlay = window.findChild<SeeMeFlashOverlay *>();
    const auto *const logo = overlay ? overlay->findChild<AmbrelLogo *>() : nullptr;
    return logo && logo->isVisible() && logo->isInverted() == inverted;
}

QList<MatchCard *> cardsOf(const QWidget &window)
{
    auto cards = window.findChildren<MatchCard *>();
    cards.removeIf([](const MatchCard *card) { return !card->isVisible(); });
    std::sort(cards.begin(), cards.end(), [](const auto *a, const auto *b) { return a->y() < b->y(); });
    return cards;
}

void focusSecondCard(QWidget &window)
{
    cardsOf(window).at(1)->setFocus(Qt::ShortcutFocusReason); // Tab would begin with the first
}

void focusSeeMe(QWidget &window)
{
    cardsOf(window).first()->findChild<QAbstractButton *>()->setFocus(Qt::TabFocusReason);
}

void focusDisplayName(QWidget &window)
{
    for (auto *const field : window.findChildren<QLineEdit *>()) {
        if (field->accessibleName() == QLatin1String("Display name"))
            field->setFocus(Qt::TabFocusReason);
    }
}

void pressSeeMe(QWidget &window)
{
    auto *const button = cardsOf(window).first()->findChild<QAbstractButton *>();
    button->setDown(true);
}

QList<Scene> sceneTable()
{
    const QSize comfortable = comfortableWindow;
    const auto name = [](const char *text) { return QString::fromLatin1(text); };
    return {
        {name("first-run"), comfortable, showFirstRun},
        {name("first-run-focus"), comfortable, showFirstRun, focusDisplayName},
        {name("first-run-smallest"), smallestWindow, showFirstRun},
        {name("busy"), comfortable, showBusy},
        {name("errors"), comfortable, showErrors},
        {name("errors-long"), comfortable, showLongErrors},
        {name("live-0"), comfortable, [](AmbrelAppState &state) { goLive(state, {}); }},
        {name("live-1"), comfortable, [](AmbrelAppState &state) { goLive(state, peopleNearby(1)); }},
        {name("live-3"), comfortable, [](AmbrelAppState &state) { goLive(state, peopleNearby(3)); }},
        {name("live-3-smallest"), smallestWindow, [](AmbrelAppState &state) { goLive(state, peopleNearby(3)); }},
        {name("live-50"), comfortable, [](AmbrelAppState &state) { goLive(state, peopleNearby(50)); }},
        {name("live-50-large"), largeWindow, [](AmbrelAppState &state) { goLive(state, peopleNearby(50)); }},
        {name("none-selected"), comfortable, showUnselected},
        {name("selected-100-m"), comfortable, [](AmbrelAppState &state) { goLiveAndSelect(state, 0); }},
        {name("selected-200-m"), comfortable, [](AmbrelAppState &state) { goLiveAndSelect(state, 1); }},
        {name("selected-half-mile"), comfortable, [](AmbrelAppState &state) { goLiveAndSelect(state, 2); }},
        {name("selected-mile"), comfortable, [](AmbrelAppState &state) { goLiveAndSelect(state, 3); }},
        {name("card-focus"), comfortable, showUnselected, focusSecondCard},
        {name("button-focus"), comfortable, showUnselected, focusSeeMe},
        {name("button-pressed"), comfortable, showUnselected, pressSeeMe},
        {name("broken-photo"), comfortable, showBrokenPhoto},
        {name("long-texts"), comfortable, showLongTexts},
        {name("long-texts-smallest"), smallestWindow, showLongTexts},
        {name("right-to-left"), comfortable, showRightToLeft},
        {name("many-scripts"), comfortable, showManyScripts},
        {name("tall-scripts"), comfortable, showTallScripts},
        {name("paused"), comfortable, showPaused},
        {name("alert"), comfortable, showAlert},
        {name("alert-long-smallest"), smallestWindow, showLongAlert},
        {name("flash-white"), comfortable, showFlash, nullptr, isFlashing<false>},
        {name("flash-red"), comfortable, showFlash, nullptr, isFlashing<true>},
        {name("flash-and-alert"), comfortable, showFlashAndAlert, nullptr, isFlashing<true>},
    };
}

} // namespace

const QList<Scene> &scenes()
{
    static const QList<Scene> table = sceneTable();
    return table;
}

const Scene &sceneNamed(const QString &name)
{
    const auto scene =
        std::find_if(scenes().begin(), scenes().end(), [&name](const Scene &entry) { return entry.name == name; });
    if (scene == scenes().end())
        qFatal("there is no scene %s", qPrintable(name));
    return *scene;
}

} // namespace ambrel
