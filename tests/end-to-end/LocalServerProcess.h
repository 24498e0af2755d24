#pragma once

#include "support/ChildProcess.h"

#include <QString>

namespace ambrel {

/// The real local server as a process of its own on a free port; ends with this object.
class LocalServerProcess
{
public:
    LocalServerProcess();

    /// The address from the line that the server prints when it is ready.
    const QString &url() const { return m_url; }

private:
    ChildProcess m_process;
    QString m_url;
};

} // namespace ambrel
