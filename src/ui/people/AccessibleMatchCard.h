#pragma once

#include <QAccessibleWidget>

namespace ambrel {

class MatchCard;

/// A match card as assistive technology meets it: a list item that is selected by pressing it.
class AccessibleMatchCard : public QAccessibleWidget
{
public:
    explicit AccessibleMatchCard(QWidget &card);

    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    MatchCard &m_card;
};

} // namespace ambrel
