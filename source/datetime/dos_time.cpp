#include "datetime/dos_time.h"

#include <cstddef>
#include <cstdlib>

#include "datetime/detail/dos_calendar.h"
#include "datetime/detail/runtime_time.h"

static_assert(sizeof(struct date) == 8 && offsetof(struct date, day) == 4 &&
              offsetof(struct date, month) == 5);
static_assert(sizeof(struct time) == 4 && offsetof(struct time, hours) == 1 &&
              offsetof(struct time, hundredths) == 2 && offsetof(struct time, seconds) == 3);

namespace {

#ifdef _MSC_VER
#pragma warning(suppress : 4996)  // the text is used at once
#endif
kit::DosZone CurrentZone() { return kit::ParseDosZone(std::getenv("TZ")); }

}  // namespace

long32 dostounix(struct date* d, struct time* t) { return kit::DosToUnix(*d, *t, CurrentZone()); }

void unixtodos(long32 seconds, struct date* d, struct time* t) {
    kit::UnixToDos(seconds, CurrentZone(), *d, *t);
}

void getdate(struct date* d) {
    const SYSTEMTIME now = kit::Now(true);
    d->year = now.wYear;
    d->month = static_cast<std::int8_t>(now.wMonth);
    d->day = static_cast<std::int8_t>(now.wDay);
}

void gettime(struct time* t) {
    const SYSTEMTIME now = kit::Now(true);
    t->hours = static_cast<std::uint8_t>(now.wHour);
    t->minutes = static_cast<std::uint8_t>(now.wMinute);
    t->seconds = static_cast<std::uint8_t>(now.wSecond);
    t->hundredths = static_cast<std::uint8_t>(now.wMilliseconds / 10);
}
