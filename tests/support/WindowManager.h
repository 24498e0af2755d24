#pragma once

#include "support/ChildProcess.h"

namespace ambrel {

/// A real window manager on the test's display, for as long as this lives.
class WindowManager
{
public:
    /// Waits until it manages windows: one that is shown earlier would not get the focus.
    WindowManager() { m_process.readLine(); }

private:
    ChildProcess m_process{"openbox", {"--sm-disable", "--startup", "echo ready"}};
};

} // namespace ambrel
