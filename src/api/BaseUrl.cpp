#include "api/BaseUrl.h"

#include "model/RepairedUtf8.h"

#include <QRegularExpression>
#include <algorithm>

namespace ambrel {

namespace {

/// True when `text` is a URL by its syntax (RFC 3986, and letters beyond ASCII), whether or not it can be used. QUrl
/// does not tell the two apart: an address with a port or host that cannot exist is none to it.
bool hasUrlSyntax(const QString &text)
{
    const QString letter = QStringLiteral(R"((?:[\w.~!$&'()*+,;=-]|[^\x00-\x7f\p{Z}\p{Cc}]|%[0-9a-fA-F]{2}))");
    const QString authority =
        QStringLiteral(R"((?:(?:%1|:)*+@)?(?:\[(?:v[0-9a-f]+\.%1+|[0-9a-fA-F:.]+)\]|%1*+)(?::[0-9]*)?)").arg(letter);
    const QString path = QStringLiteral(R"((?:%1|[:@/])*+)").arg(letter);
    const QString query = QStringLiteral(R"((?:%1|[:@/?])*+)").arg(letter);
    const QString pattern =
        QStringLiteral(R"(^(?:[a-zA-Z][a-zA-Z0-9+.-]*:|(?![^/?#]*:))(?://%1(?:/%2)?|(?!//)%2)(?:\?%3)?(?:#%3)?$)");
    return QRegularExpression(pattern.arg(authority, path, query)).match(text).hasMatch();
}

/// True when the host in `text` has a character that nobody sees, or that is left out of international names: the host
/// is another one than it seems to be.
bool hidesCharacters(const QString &text)
{
    const qsizetype begin = text.indexOf(QLatin1String("//")) + 2;
    static const QRegularExpression end(QStringLiteral("[/?#]"));
    const QString host = text.mid(begin).section(end, 0, 0);
    const QList<uint> letters = host.toUcs4();
    return begin > 1 && std::any_of(letters.begin(), letters.end(), [](uint letter) {
               const QString around = u'a' + QString::fromUcs4(reinterpret_cast<const char32_t *>(&letter), 1) + u'a';
               return letter > 0x7f && (QChar::category(letter) == QChar::Other_Format || QUrl::toAce(around) == "aa");
           });
}

} // namespace

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
    const QString address = normalizedBaseURL(text);
    if (!hasUrlSyntax(address))
        return QUrl(developmentServer(), QUrl::StrictMode);
    return hidesCharacters(address) ? QUrl() : QUrl(address, QUrl::StrictMode);
}

QString percentEncoded(const QString &text, const QByteArray &kept)
{
    return QString::fromLatin1(repairedUtf8(text).toPercentEncoding(kept));
}

QUrl appendingPath(const QUrl &base, const QString &path)
{
    if (!base.isValid())
        return base;
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
