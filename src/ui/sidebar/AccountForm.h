#pragma once

#include <QGroupBox>

namespace ambrel {

class AmbrelPrimaryButton;
class AmbrelSecondaryButton;

/// User ID, profile and bio, with sign-up and log-in.
class AccountForm : public QGroupBox
{
    Q_OBJECT

public:
    /// `parent` must stand in a view environment.
    explicit AccountForm(QWidget *parent);

    /// Disables both buttons and says so while an account or server request is in flight.
    void setBusy(bool isBusy);

private:
    AmbrelPrimaryButton *m_signUp = nullptr;
    AmbrelSecondaryButton *m_logIn = nullptr;
};

} // namespace ambrel
