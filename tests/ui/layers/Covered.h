#pragma once

#include "toolkit/CoveringLayer.h"
#include "toolkit/LazyColumn.h"
#include "ui/MatchViews.h"
#include "ui/ViewFixture.h"
#include "ui/people/MatchCard.h"
#include "ui/window/ContentView.h"

namespace ambrel {

/// The window, wide enough for all of it, with matches, and with one of the two layers.
class Covered : public ViewFixture<ContentView>
{
public:
    explicit Covered(std::chrono::milliseconds keyQuiet = {})
        : ViewFixture({1280, 860}, {}, {.flashFlip = std::chrono::hours(1), .flashFade = {}, .keyQuiet = keyQuiet})
    {
        QFETCH_GLOBAL(bool, isAlert);
        m_isAlert = isAlert;
        m_takesKeysAtOnce = keyQuiet == std::chrono::milliseconds(0);
    }

    void list(const QStringList &names)
    {
        QList<MatchResult> matches;
        for (const QString &name : names)
            matches.append(person(name));
        state().matches = matches;
        refresh();
    }
    QStringList listed()
    {
        QStringList names;
        for (const MatchResult &match : state().matches.value())
            names.append(match.displayName);
        return names;
    }
    void cover()
    {
        if (m_isAlert)
            state().incomingSeeMe = SeeMeMessage{.id = QStringLiteral("1"),
                                                 .fromUserId = QStringLiteral("ana"),
                                                 .toUserId = QStringLiteral("sam"),
                                                 .body = QStringLiteral("Hi"),
                                                 .createdAt = std::nullopt};
        else
            state().showSeeMeFlash = true;
        QCoreApplication::sendPostedEvents(); // no timer goes off meanwhile
        if (m_takesKeysAtOnce)
            refresh();
    }
    void uncover()
    {
        state().incomingSeeMe = std::nullopt;
        state().showSeeMeFlash = false;
        refresh();
    }
    bool isCovered() { return state().incomingSeeMe.value() || state().showSeeMeFlash; }
    bool isFocusInLayer()
    {
        for (const QWidget *widget = QApplication::focusWidget(); widget; widget = widget->parentWidget()) {
            if (qobject_cast<const CoveringLayer *>(widget))
                return true;
        }
        return false;
    }
    LazyColumn &column() { return *view->findChild<LazyColumn *>(); }
    MatchCard *card(const QString &name)
    {
        for (auto *const card : column().viewport()->findChildren<MatchCard *>(Qt::FindDirectChildrenOnly)) {
            if (!card->isHidden() && card->accessibleName() == name)
                return card;
        }
        return nullptr;
    }
    QAbstractButton *dismissOf(const QString &name)
    {
        for (auto *const button : card(name)->findChildren<QAbstractButton *>()) {
            if (button->text() == QStringLiteral("Dismiss"))
                return button;
        }
        return nullptr;
    }

private:
    bool m_isAlert = false;
    bool m_takesKeysAtOnce = false;
};

} // namespace ambrel
