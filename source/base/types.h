#pragma once

#include <cstdint>

// A long of Windows is 32 bits wide. Exported signatures say long32 and ulong32, so that their
// decorated names are those of `long` there, and the portable code keeps the width elsewhere.
// 64-bit values are std::int64_t and std::uint64_t: `long long`, or `__int64`, on Windows.
#ifdef _WIN32
using long32 = long;
using ulong32 = unsigned long;
#else
using long32 = std::int32_t;
using ulong32 = std::uint32_t;
#endif

static_assert(sizeof(long32) == 4 && sizeof(ulong32) == 4, "formats and interfaces rely on it");
