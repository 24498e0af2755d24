#include "support/NaiveClient.h"

#include <QEventLoop>
#include <QGridLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QNetworkReply>

namespace ambrel {

NaiveClient::NaiveClient(const QString &serverUrl) : m_serverUrl(serverUrl)
{
    constexpr int cards = 5;
    auto *const grid = new QGridLayout(this);
    for (int card = 0; card < cards; ++card) {
        m_names += new QLabel(this);
        m_photos += new QLabel(this);
        grid->addWidget(m_photos.last(), card, 0);
        grid->addWidget(m_names.last(), card, 1);
    }
    resize(980, 680);
}

void NaiveClient::runCycle()
{
    QEventLoop loop;
    QNetworkReply *const reply = m_network.get(QNetworkRequest(QUrl(m_serverUrl + QStringLiteral("api/check/me"))));
    connect(reply, &QNetworkReply::finished, &loop, [&] {
        showReply(reply->readAll());
        reply->deleteLater();
        loop.quit();
    });
    loop.exec();
}

void NaiveClient::showReply(const QByteArray &reply)
{
    m_people.clear();
    m_photoTexts.clear();
    const QJsonArray matches = QJsonDocument::fromJson(reply).object()[QLatin1String("matches")].toArray();
    for (const QJsonValue &match : matches) {
        m_people += match[QLatin1String("displayName")].toString();
        m_photoTexts += match[QLatin1String("profilePhotos")][0].toString();
    }
    for (qsizetype card = 0; card < std::min(m_names.size(), m_people.size()); ++card) {
        m_names[card]->setText(m_people[card]);
        const QString text = m_photoTexts[card];
        const QByteArray file = QByteArray::fromBase64(text.mid(text.indexOf(u',') + 1).toLatin1());
        QPixmap photo;
        if (photo.loadFromData(file))
            m_photos[card]->setPixmap(photo.scaled(86, 104, Qt::KeepAspectRatioByExpanding));
    }
}

} // namespace ambrel
