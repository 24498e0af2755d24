#pragma once

#include <QByteArray>
#include <QUrl>

namespace ambrel::local {

class Service;

/// What goes back to a client.
struct Answer
{
    int status = 200;
    QByteArray body;    ///< JSON
    QByteArray allowed; ///< the method that would have worked, when the status is 405
};

/// The body of a refusal.
QByteArray errorBody(const QString &text);

/// Finds the endpoint and performs it; every failure becomes an answer, too.
Answer answerRequest(Service &service, const QByteArray &method, const QUrl &url, const QByteArray &body);

} // namespace ambrel::local
