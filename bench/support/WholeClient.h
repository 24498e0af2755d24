#pragma once

#include "ui/window/AmbrelMacApp.h"

#include <QAbstractButton>
#include <QSettings>
#include <QTemporaryDir>

namespace ambrel {

/// The settings of a user who is signed in on the server at `url`, in a place of their own. Make it before the client.
class SignedInSettings
{
public:
    explicit SignedInSettings(const QString &url)
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
        QSettings settings(QStringLiteral("Ambrel"), QStringLiteral("Ambrel"));
        settings.setValue(QStringLiteral("serverBaseURL"), url);
        settings.setValue(QStringLiteral("userId"), QStringLiteral("me"));
    }

private:
    QTemporaryDir m_directory;
};

/// Presses "Go Live", as a person does.
inline void goLive(const QWidget &window)
{
    for (auto *const button : window.findChildren<QAbstractButton *>()) {
        if (button->text() == QLatin1String("Go Live")) {
            button->setFocus();
            button->click();
            return;
        }
    }
    qFatal("there is no button to go live");
}

} // namespace ambrel
