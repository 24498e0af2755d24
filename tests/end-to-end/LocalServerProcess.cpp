#include "LocalServerProcess.h"

#include <QRegularExpression>

namespace ambrel {

LocalServerProcess::LocalServerProcess()
    : m_process(QStringLiteral(AMBREL_LOCAL_SERVER), {QStringLiteral("--port"), QStringLiteral("0")})
{
    static const QRegularExpression address(QStringLiteral("http://[0-9.]+:[0-9]+"));
    QByteArray line;
    while (m_url.isEmpty() && !(line = m_process.readLine()).isEmpty())
        m_url = address.match(QString::fromUtf8(line)).captured();
}

} // namespace ambrel
