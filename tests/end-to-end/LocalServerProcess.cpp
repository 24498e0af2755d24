#include "LocalServerProcess.h"

#include <QRegularExpression>

namespace ambrel {

LocalServerProcess::LocalServerProcess() : m_process(AMBREL_LOCAL_SERVER, {"--port", "0"})
{
    static const QRegularExpression address(QStringLiteral("http://[0-9.]+:[0-9]+"));
    while (m_url.isEmpty())
        m_url = address.match(QString::fromUtf8(m_process.readLine())).captured();
}

} // namespace ambrel
