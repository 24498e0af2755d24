#include "ui/people/AccessibleMatchCard.h"

#include "ui/people/MatchCard.h"

namespace ambrel {

void AccessibleMatchCard::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory([](const QString &, QObject *object) -> QAccessibleInterface * {
            auto *const card = qobject_cast<MatchCard *>(object);
            return card ? new AccessibleMatchCard(card) : nullptr; // owned by QAccessible
        });
        return true;
    }();
    Q_UNUSED(isInstalled)
}

AccessibleMatchCard::AccessibleMatchCard(MatchCard *card) : QAccessibleWidget(card, QAccessible::ListItem) {}

MatchCard *AccessibleMatchCard::card() const
{
    return static_cast<MatchCard *>(widget());
}

QAccessible::State AccessibleMatchCard::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = card()->isSelected();
    return state;
}

QStringList AccessibleMatchCard::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (card()->isEnabled())
        names.prepend(pressAction());
    return names;
}

void AccessibleMatchCard::doAction(const QString &name)
{
    if (name != pressAction())
        QAccessibleWidget::doAction(name);
    else if (card()->isEnabled()) // nor does a button act that is not
        card()->select();
}

} // namespace ambrel
