#pragma once
#include_next <math.h>

// What C99 asks for and libc++ takes for granted.
#ifdef __cplusplus
#define QELKIT_SDK_LONG(name) long double name##l(long double);
#define QELKIT_SDK_TWO(name) long double name##l(long double, long double);
extern "C" {
// clang-format off
QELKIT_SDK_LONG(acos)  QELKIT_SDK_LONG(acosh)  QELKIT_SDK_LONG(asin)  QELKIT_SDK_LONG(asinh)
QELKIT_SDK_LONG(atan)  QELKIT_SDK_LONG(atanh)  QELKIT_SDK_LONG(cbrt)  QELKIT_SDK_LONG(ceil)
QELKIT_SDK_LONG(cos)   QELKIT_SDK_LONG(cosh)   QELKIT_SDK_LONG(erf)   QELKIT_SDK_LONG(erfc)
QELKIT_SDK_LONG(exp)   QELKIT_SDK_LONG(exp2)   QELKIT_SDK_LONG(expm1) QELKIT_SDK_LONG(fabs)
QELKIT_SDK_LONG(floor) QELKIT_SDK_LONG(lgamma) QELKIT_SDK_LONG(log)   QELKIT_SDK_LONG(log10)
QELKIT_SDK_LONG(log1p) QELKIT_SDK_LONG(log2)   QELKIT_SDK_LONG(logb)  QELKIT_SDK_LONG(nearbyint)
QELKIT_SDK_LONG(rint)  QELKIT_SDK_LONG(round)  QELKIT_SDK_LONG(sin)   QELKIT_SDK_LONG(sinh)
QELKIT_SDK_LONG(sqrt)  QELKIT_SDK_LONG(tan)    QELKIT_SDK_LONG(tanh)  QELKIT_SDK_LONG(tgamma)
QELKIT_SDK_LONG(trunc)
QELKIT_SDK_TWO(atan2)  QELKIT_SDK_TWO(fmin)    QELKIT_SDK_TWO(fmod)   QELKIT_SDK_TWO(copysign)
QELKIT_SDK_TWO(fdim)   QELKIT_SDK_TWO(fmax)    QELKIT_SDK_TWO(hypot)  QELKIT_SDK_TWO(nextafter)
QELKIT_SDK_TWO(pow)    QELKIT_SDK_TWO(remainder) QELKIT_SDK_TWO(nexttoward)
double erfc(double);
// clang-format on
float erfcf(float);
long double frexpl(long double, int*);
long double ldexpl(long double, int);
long double modfl(long double, long double*);
long double remquol(long double, long double, int*);
long double scalblnl(long double, long);
long double scalbnl(long double, int);
int ilogbl(long double);
double nexttoward(double, long double);
float nexttowardf(float, long double);
}
#endif
