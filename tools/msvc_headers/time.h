#pragma once
#include_next <time.h>

struct timespec {
    time_t tv_sec;
    long tv_nsec;
};

#ifdef __cplusplus
extern "C" {
#endif
int _get_daylight(int*);
int _get_dstbias(long*);
int _get_timezone(long*);
__time64_t _mkgmtime64(struct tm*);
#ifdef __cplusplus
}
#endif
