#pragma once

#include <QPointer>
#include <QWidget>

class QScrollArea;

namespace ambrel {

class AccountForm;
class AmbrelAppState;
class AnnouncedLabel;
class ServerLocationForm;
class StatusLine;

/// The column of forms at the left of the window, with the brand above and the status line below. Brand and forms
/// scroll when the window is too low for them; the status line stays in sight.
class SidebarView : public QWidget
{
    Q_OBJECT

public:
    /// `parent` must stand in a view environment.
    explicit SidebarView(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void refresh();
    void showBusy(const AmbrelAppState &state);
    void showWritten(const QList<AnnouncedLabel *> &lines, const QStringList &before);

    AccountForm *m_account = nullptr;
    ServerLocationForm *m_serverLocation = nullptr;
    StatusLine *m_status = nullptr;
    bool m_awaitsAnswer = false;         ///< since a button was pressed, while its operation runs
    QPointer<QWidget> m_focusBeforeBusy; ///< the button that lost the focus by being disabled
    QPointer<QWidget> m_focusWhileBusy;  ///< where the focus went instead
};

} // namespace ambrel
