#pragma once

#include "toolkit/FramedWindow.h"
#include "ui/window/AmbrelMacApp.h"

#include <memory>

namespace ambrel {

/// Opens the application's window where and as a user finds it, the pointer in a corner of the screen. Fails the test
/// when it does not come.
inline void openForUse(AmbrelMacApp &application, std::unique_ptr<QWidget> &window)
{
    pointer::forgetEarlierClicks();
    pointer::moveTo({5, 5});
    window = application.openWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QTRY_COMPARE(window->geometry(), QRect(320, 150, 1280, 900));
}

} // namespace ambrel
