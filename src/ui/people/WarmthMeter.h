#pragma once

#include "model/ResponseRecords.h"

#include <QWidget>
#include <optional>

namespace ambrel {

class AmbrelLogo;
class ElidedLabel;

/// Names the heat of one match, or says that there is none.
class WarmthMeter : public QWidget
{
    Q_OBJECT

public:
    explicit WarmthMeter(QWidget *parent = nullptr);

    void setMatch(const std::optional<MatchResult> &match);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    AmbrelLogo *const m_logo;
    ElidedLabel *const m_headline;
    ElidedLabel *const m_line;
};

} // namespace ambrel
