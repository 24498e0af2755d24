#include "ui/people/AccessibleMatchCard.h"

#include "ui/people/MatchCard.h"

namespace ambrel {

AccessibleMatchCard::AccessibleMatchCard(QWidget &card)
    : QAccessibleWidget(&card, QAccessible::ListItem), m_card(static_cast<MatchCard &>(card))
{
}

QAccessible::State AccessibleMatchCard::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = m_card.isSelected();
    return state;
}

QStringList AccessibleMatchCard::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (m_card.isEnabled())
        names.prepend(pressAction());
    return names;
}

void AccessibleMatchCard::doAction(const QString &name)
{
    if (name != pressAction())
        QAccessibleWidget::doAction(name);
    else if (m_card.isEnabled()) // like a button
        m_card.select();
}

} // namespace ambrel
