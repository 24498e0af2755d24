#include "api/BaseUrl.h"

#include "model/RepairedUtf8.h"

namespace ambrel {

QString productionServer()
{
    return QStringLiteral(AMBREL_PRODUCTION_SERVER);
}

QString developmentServer()
{
    return QStringLiteral(AMBREL_DEVELOPMENT_SERVER);
}

QString normalizedBaseURL(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return productionServer();
    return trimmed.endsWith(u'/') ? trimmed : trimmed + u'/';
}

QUrl baseURLFromText(const QString &text)
{
    const QUrl url(normalizedBaseURL(text), QUrl::StrictMode);
    return url.isValid() ? url : QUrl(developmentServer(), QUrl::StrictMode);
}

QString percentEncoded(const QString &text, const QByteArray &kept)
{
    return QString::fromLatin1(repairedUtf8(text).toPercentEncoding(kept));
}

QUrl appendingPath(const QUrl &base, const QString &path)
{
    // Joined in encoded form: what the base has encoded already is neither decoded nor encoded twice.
    QString joined = base.path(QUrl::FullyEncoded);
    if (!joined.endsWith(u'/'))
        joined += u'/';
    joined += percentEncoded(path, "/!$&'()*+,;=:@");

    QUrl url = base;
    url.setPath(joined, QUrl::StrictMode);
    return url;
}

} // namespace ambrel
