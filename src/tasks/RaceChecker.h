#pragma once

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace ambrel {

// The thread sanitizer does not see the locks of the toolkit, which is not built for it. Where values pass through them
// to another thread, these two tell it so: what was written before `handedOver` can be read after `takenOver`. Any
// thread; in other builds they are empty.

#if defined(__SANITIZE_THREAD__)
inline char crossing = 0; // stands for all of the toolkit's locks

inline void handedOver()
{
    __tsan_release(&crossing);
}
inline void takenOver()
{
    __tsan_acquire(&crossing);
}
#else
inline void handedOver() {}
inline void takenOver() {}
#endif

} // namespace ambrel
