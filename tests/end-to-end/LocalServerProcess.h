#pragma once

#include <QProcess>
#include <QString>

namespace ambrel {

/// The real local server as a process of its own on a free port; ends with this object.
class LocalServerProcess
{
public:
    LocalServerProcess();
    ~LocalServerProcess();
    Q_DISABLE_COPY_MOVE(LocalServerProcess)

    /// The address from the line that the server prints when it is ready; empty when it did not start.
    const QString &url() const { return m_url; }

private:
    QProcess m_process;
    QString m_url;
};

} // namespace ambrel
