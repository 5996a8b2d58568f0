#pragma once
#include_next <stdlib.h>

#define MB_CUR_MAX 2

// The forms that take a locale.
#ifdef __cplusplus
extern "C" {
#endif
double _strtod_l(const char*, char**, _locale_t);
float _strtof_l(const char*, char**, _locale_t);
#ifdef __cplusplus
}
#endif
