#include "ui/sidebar/AccountForm.h"

#include "ui/look/AmbrelButton.h"
#include "ui/sidebar/BioEditor.h"
#include "ui/sidebar/FormLayout.h"
#include "ui/sidebar/TextBinding.h"
#include "ui/window/ViewEnvironment.h"

namespace ambrel {

AccountForm::AccountForm(QWidget *parent) : QGroupBox(QStringLiteral("Account"), parent)
{
    // Made in reading order, which is the order of Tab.
    auto *const form = makeFormLayout(*this);
    form->addWidget(makeTextField(QStringLiteral("User ID"), &AmbrelAppState::userId, *this));
    form->addWidget(makeTextField(QStringLiteral("Display name"), &AmbrelAppState::displayName, *this));
    form->addWidget(makeTextField(QStringLiteral("Email"), &AmbrelAppState::email, *this));
    form->addWidget(makeTextField(QStringLiteral("Phone"), &AmbrelAppState::phone, *this));
    auto *const bio = new BioEditor(this);
    bindText(*bio, &AmbrelAppState::profileBio);
    form->addWidget(bio);
    m_signUp = new AmbrelPrimaryButton(QStringLiteral("Sign Up"), this);
    m_logIn = new AmbrelSecondaryButton(QStringLiteral("Log In"), this);
    form->addLayout(makeRow({m_signUp, m_logIn}));

    auto &state = ViewEnvironment::of(*this).state();
    connect(m_signUp, &QPushButton::clicked, this, [&state] { runDetached(state.signup()); });
    connect(m_logIn, &QPushButton::clicked, this, [&state] { runDetached(state.login()); });
}

void AccountForm::setBusy(bool isBusy)
{
    m_signUp->setText(isBusy ? QStringLiteral("Working...") : QStringLiteral("Sign Up"));
    m_logIn->setText(isBusy ? QStringLiteral("Working...") : QStringLiteral("Log In"));
    m_signUp->setDisabled(isBusy);
    m_logIn->setDisabled(isBusy);
}

} // namespace ambrel
