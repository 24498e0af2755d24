#pragma once

#include "model/ResponseRecords.h"
#include "toolkit/LazyColumn.h"

#include <QWidget>
#include <optional>

class QLayout;

namespace ambrel {

class AnnouncedLabel;
class ElidedLabel;
class LivePill;
class ProfilePanel;
class WarmthMeter;

/// The centre of the window: whether the user is live, the heat of one match, the cards of all matches and, at the
/// right, the profile of the selected one. Needs a view environment.
class MainPanelView : public QWidget, private LazyColumnSource
{
    Q_OBJECT

public:
    explicit MainPanelView(QWidget *parent = nullptr);

private:
    int count() const override;
    QString idAt(int index) const override;
    QWidget *makeRow(QWidget *parent) override;
    void bindRow(QWidget *row, int index) override;

    QLayout *makeHeader();
    void refresh();
    void refreshCards();
    /// Tells assistive technology who was not in the list `before`.
    void announceArrivals(const QList<MatchResult> &before);

    // The list that the cards show: the state may have a newer one until the next refresh.
    QList<MatchResult> m_matches;
    std::optional<QString> m_selectedUserId;

    QWidget *const m_nearby; ///< all but the profile, and before it in reading order
    ElidedLabel *const m_title;
    ElidedLabel *const m_subtitle;
    LivePill *const m_pill;
    WarmthMeter *const m_meter;
    LazyColumn *const m_cards;
    ProfilePanel *const m_profile;
    AnnouncedLabel *const m_arrivals; ///< who has come
};

} // namespace ambrel
