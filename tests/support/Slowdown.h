#pragma once

namespace ambrel {

/// How many times longer than usual the same work may take: the sanitizers slow it down.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int slowdown = 20;
#else
inline constexpr int slowdown = 1;
#endif

} // namespace ambrel
