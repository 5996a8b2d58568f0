#pragma once

// What of the processor's vector instructions may be used. What uses them has a plain form beside
// it that gives the same results.
//   QELKIT_SSE2   defined where SSE2 is there for certain, as on every x86-64
//   kHasSsse3     whether this machine has SSSE3 as well, as all since 2013 have; functions that use
//                 it are marked QELKIT_SSSE3 and run only then

#if defined(__SSE2__) || defined(_M_X64)
#define QELKIT_SSE2
#include <tmmintrin.h>
#ifdef _MSC_VER
#include <intrin.h>
#endif

namespace kit {

#if defined(__GNUC__) || defined(__clang__)
#define QELKIT_SSSE3 __attribute__((target("ssse3")))
#else
#define QELKIT_SSSE3
#endif

#ifdef _MSC_VER
inline bool DetectSsse3() {
    int registers[4];
    __cpuid(registers, 1);
    return (registers[2] >> 9 & 1) != 0;
}
#else
inline bool DetectSsse3() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("ssse3") != 0;
}
#endif

// False, which is right everywhere, as long as the program's globals are being made.
inline const bool kHasSsse3 = DetectSsse3();

}  // namespace kit
#endif
