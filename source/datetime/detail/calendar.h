#pragma once

#include <cstdint>

// Facts of the calendar that both families of date classes and the DOS functions share.

namespace kit {

constexpr int kMonths = 12;

constexpr std::int8_t kMonthLengths[kMonths] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

// The days of a common year before each month (index 0: January), and those of the whole year.
constexpr std::int32_t kDaysBeforeMonth[kMonths + 1] = {0,   31,  59,  90,  120, 151, 181,
                                                        212, 243, 273, 304, 334, 365};

// The validity of dates. The years hold no century but 2000, so every fourth is a leap year.
constexpr int kFirstYear = 1971;
constexpr int kLastYear = 2037;

// month 1..12
constexpr int MonthLength(int month, bool leap_year) {
    return kMonthLengths[month - 1] + (leap_year && month == 2 ? 1 : 0);
}

// Whether the fields are a day from 1 January 1971 to 31 December 2037.
constexpr bool IsDay(int year, int month, int day) {
    return year >= kFirstYear && year <= kLastYear && month >= 1 && month <= kMonths && day >= 1 &&
           day <= MonthLength(month, year % 4 == 0);
}

// Whether the fields are a time from 00:00:00.000 to 23:59:59.999.
constexpr bool IsTimeOfDay(int hour, int minute, int second, int millisecond) {
    return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60 &&
           millisecond >= 0 && millisecond < 1000;
}

}  // namespace kit
