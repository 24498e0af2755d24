#pragma once

#include "support/ChildProcess.h"

namespace ambrel {

/// The real local server as a process of its own on a free port; ends with this object.
class LocalServerProcess
{
public:
    LocalServerProcess();

    /// The address from the line that the server prints when it is ready; empty when it did not start.
    const QString &url() const { return m_url; }

private:
    ChildProcess m_process;
    QString m_url;
};

} // namespace ambrel
