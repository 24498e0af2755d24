#pragma once

#include <QNetworkAccessManager>
#include <QWidget>

class QLabel;

namespace ambrel {

/// A straightforward client to compare with: the toolkit's network, JSON and image decoding, everything on the main
/// thread, five cards with photos on screen.
class NaiveClient : public QWidget
{
    Q_OBJECT

public:
    explicit NaiveClient(const QString &serverUrl);

    /// Fetches one reply and shows it; returns when that is done.
    void runCycle();

private:
    void showReply(const QByteArray &reply);

    const QString m_serverUrl;
    QNetworkAccessManager m_network;
    QList<QLabel *> m_names;
    QList<QLabel *> m_photos;
    QStringList m_people; ///< the naive client keeps all texts, too
    QStringList m_photoTexts;
};

} // namespace ambrel
