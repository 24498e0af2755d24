#pragma once

#include "model/ResponseRecords.h"

#include <QWidget>
#include <optional>

class QScrollArea;

namespace ambrel {

class BioText;
class LargeProfilePhoto;
class NoProfile;
class PhotoStrip;
class WrappedLabel;

/// The selected match in detail, or that none is selected. What is too high for the panel scrolls; nothing is cut.
/// Needs a view environment.
class ProfilePanel : public QWidget
{
    Q_OBJECT

public:
    explicit ProfilePanel(QWidget *parent = nullptr);

    /// Shows `match`; touches only what differs from what is shown.
    void setMatch(const std::optional<MatchResult> &match);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QWidget *makeContent();
    QWidget *makeDetails();

    QString m_userId;
    QScrollArea *const m_scrollArea;
    LargeProfilePhoto *m_photo = nullptr;
    WrappedLabel *m_name = nullptr;
    WrappedLabel *m_heat = nullptr;
    BioText *m_bio = nullptr;
    PhotoStrip *m_strip = nullptr;
    WrappedLabel *m_note = nullptr;
    QWidget *m_details = nullptr;
    NoProfile *m_noProfile = nullptr;
};

} // namespace ambrel
