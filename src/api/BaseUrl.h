#pragma once

#include <QString>
#include <QUrl>

namespace ambrel {

/// The server used while the address is empty; ends in "/".
QString productionServer();
/// The server used when the address cannot be parsed; ends in "/".
QString developmentServer();

/// `text` without blanks and line breaks at both ends, ending in "/"; the production server when nothing is left.
QString normalizedBaseURL(const QString &text);

/// The base URL for a typed server address; the development server when the address is no URL by its syntax, and an
/// invalid URL when it is one that cannot be used: a port that does not exist, or a host that cannot.
QUrl baseURLFromText(const QString &text);

/// `text` in UTF-8 with every byte percent-encoded but letters, digits, "-._~" and those in `kept`. Half a surrogate
/// pair becomes U+FFFD.
QString percentEncoded(const QString &text, const QByteArray &kept = {});

/// `base` with `path` beneath it, percent-encoded; "/" in `path` separates segments. `path` has no leading "/".
/// An invalid base stays as it is.
QUrl appendingPath(const QUrl &base, const QString &path);

} // namespace ambrel
