#pragma once

// A calendar that only counts: from 1 January 1970, a Thursday, one day at a time.
struct DayCount {
    int year = 1970, month = 1, day = 1;
    int weekday = 4;
    int of_year = 0;  // 0-based
    int since_1970 = 0;

    bool IsLeap() const { return year % 4 == 0; }

    int LengthOfMonth() const {
        if (month == 2) return IsLeap() ? 29 : 28;
        return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
    }

    bool IsSundayWithin(int first, int last) const {
        return weekday == 0 && day >= first && day <= last;
    }

    void Next() {
        ++since_1970;
        weekday = (weekday + 1) % 7;
        ++of_year;
        if (++day <= LengthOfMonth()) return;
        day = 1;
        if (++month <= 12) return;
        month = 1;
        ++year;
        of_year = 0;
    }

    void GoTo(int wanted_year) {
        while (year < wanted_year) Next();
    }
};
