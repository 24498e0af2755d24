#include "LocalServerProcess.h"

#include <QRegularExpression>

namespace ambrel {

LocalServerProcess::LocalServerProcess()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(AMBREL_LOCAL_SERVER), {QStringLiteral("--port"), QStringLiteral("0")});
    static const QRegularExpression address(QStringLiteral("http://[0-9.]+:[0-9]+"));
    QString output;
    while (m_url.isEmpty() && m_process.waitForReadyRead(20'000)) {
        output += QString::fromUtf8(m_process.readAllStandardOutput());
        m_url = address.match(output).captured();
    }
}

LocalServerProcess::~LocalServerProcess()
{
    m_process.terminate();
    if (!m_process.waitForFinished(5000))
        m_process.kill();
}

} // namespace ambrel
