#pragma once

#include <QWidget>

namespace ambrel {

class AmbrelLogo;

/// What the profile panel says while no match is selected.
class NoProfile : public QWidget
{
    Q_OBJECT

public:
    explicit NoProfile(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    AmbrelLogo *const m_logo;
};

} // namespace ambrel
