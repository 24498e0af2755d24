#pragma once

#include "model/ResponseRecords.h"

#include <QWidget>

namespace ambrel {

class AmbrelPrimaryButton;
class ElidedLabel;
class MatchPhoto;

/// One nearby match in the list, with what the user can do about it. All cards are equally high. A click anywhere
/// selects the match, Enter or Space does when the card has the focus. The actions are
/// applied to the record that the card shows. Needs a view environment.
class MatchCard : public QWidget
{
    Q_OBJECT

public:
    explicit MatchCard(QWidget *parent = nullptr);

    /// Shows `match`, in the same card as before where nothing differs.
    void setMatch(const MatchResult &match);
    /// Marks the card of the selected match.
    void setSelected(bool selected);
    bool isSelected() const { return m_isSelected; }
    /// Selects the match that the card shows.
    void select();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QLayout *makeSummary();
    QLayout *makeButtons();
    int commonHeight() const;
    void describe();
    /// Shows fewer lines of the biography, or none, where its script is too tall; the profile shows all of it.
    void fitBio();

    MatchResult m_match;
    bool m_isSelected = false;
    bool m_showsFocusRing = true;

    MatchPhoto *const m_photo;
    ElidedLabel *const m_name;
    ElidedLabel *const m_heat;
    ElidedLabel *const m_bio;
    ElidedLabel *const m_score;
    AmbrelPrimaryButton *const m_seeMe;
};

} // namespace ambrel
