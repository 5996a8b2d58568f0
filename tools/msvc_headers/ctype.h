#pragma once
#include_next <ctype.h>

// The forms that take a locale.
#ifdef __cplusplus
extern "C" {
#endif
int _islower_l(int, _locale_t);
int _isupper_l(int, _locale_t);
#ifdef __cplusplus
}
#endif
