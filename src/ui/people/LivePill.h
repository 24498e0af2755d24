#pragma once

#include <QLabel>

namespace ambrel {

/// Says in one word whether the user is live.
class LivePill : public QLabel
{
    Q_OBJECT

public:
    explicit LivePill(bool isLive, QWidget *parent = nullptr);

    void setLive(bool isLive);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_isLive;
};

} // namespace ambrel
