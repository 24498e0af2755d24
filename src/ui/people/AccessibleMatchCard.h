#pragma once

#include <QAccessibleWidget>

namespace ambrel {

class MatchCard;

/// A match card as assistive technology meets it: a list item that is selected by pressing it.
class AccessibleMatchCard : public QAccessibleWidget
{
public:
    /// Makes this the face of every match card. Main thread; call it before the first card has a name.
    static void install();

    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    explicit AccessibleMatchCard(MatchCard *card);
    MatchCard *card() const;
};

} // namespace ambrel
