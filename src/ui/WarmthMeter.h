#pragma once

#include "model/ResponseRecords.h"

#include <QWidget>
#include <optional>

class QLabel;

namespace ambrel {

class AmbrelLogo;

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
    QLabel *const m_headline;
    QLabel *const m_line;
};

} // namespace ambrel
