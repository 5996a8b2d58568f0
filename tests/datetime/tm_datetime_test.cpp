// UTC values, which are the same in all zones.

#include "datetime/tm_datetime.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <utility>

#include "datetime/ordering.h"
#include "datetime/qel_time.h"

namespace {

using QEL::CDate;
using QEL::CDateTime;
using QEL::CTime;

TEST(TmDateTime, CarriesWhatDoesNotFit) {
    const CDateTime start(2024, 2, 28, 23, 59, 59, 7, false);
    const std::pair<void (*)(CDateTime&), const char*> cases[] = {
        {[](CDateTime& v) { v.Second(61); }, "29.02.2024 00:00:01.007"},
        {[](CDateTime& v) { v.Minute(75); }, "29.02.2024 00:15:59.007"},
        {[](CDateTime& v) { v.Hour(24 * 366); }, "28.02.2025 00:59:59.007"},
        {[](CDateTime& v) { v.Day(30); }, "01.03.2024 23:59:59.007"},
        {[](CDateTime& v) { v.Month(13).Year(2023); }, "28.01.2023 23:59:59.007"},
        {[](CDateTime& v) { v.Milliseconds(65536 + 1500).Second(3); }, "28.02.2024 23:59:03.1500"},
        {[](CDateTime& v) { v.Year(1969); }, "01.01.1970 00:00:00.007"},
    };
    for (const auto& [change, text] : cases) {
        CDateTime value = start;
        change(value);
        EXPECT_STREQ(text, value.TextDateTime(1, 2, 0));
    }
}

// Beyond 32 bits of seconds carrying stops, and the fields stay as they were given.
TEST(TmDateTime, KeepsFieldsThatItCannotCarry) {
    for (const int year : {2040, INT_MIN, INT_MAX}) {
        CDateTime value(false);
        value.Month(2).Day(1).Year(year);
        value.Milliseconds(999);
        EXPECT_FALSE(value.IsValid()) << year;
        EXPECT_STREQ(year == 2040 ? "2040" : "1970", value.Format("%Y")) << year;
    }
    EXPECT_STREQ("", CDateTime(2040, 13, 45, 0, 0, 0, 0, false).Format("%B"));
}

TEST(TmDateTime, KnowsWhatIsValid) {
    EXPECT_TRUE(CDate(1971, 1, 1, false).IsDateValid());
    EXPECT_FALSE(CDate(1970, 12, 31, false).IsDateValid());
    EXPECT_TRUE(CDateTime(2037, 12, 31, 23, 59, 59, 999, false).IsValid());
    EXPECT_FALSE(CDate(2038, 1, 1, false).IsDateValid());
    EXPECT_FALSE(CDateTime(2037, 12, 31, 0, 0, 0, 1000, false).IsTimeValid());
}

TEST(TmDateTime, ComparesTimesWithoutTheirDateAndDatesWithoutTheirTime) {
    const auto at = [](int day, int hour, int millisecond, bool local) {
        return CDateTime(2024, 3, day, hour, 5, 7, millisecond, local);
    };
    ExpectOrder({at(4, 9, 3, false), at(5, 8, 9, false), at(5, 9, 3, false), at(5, 9, 4, false)});
    const CTime earlier = at(4, 9, 3, false), later = at(5, 9, 3, false);
    EXPECT_TRUE(earlier == later);
    EXPECT_TRUE(static_cast<const CDate&>(at(4, 1, 3, false)) == at(4, 9, 3, false));
    CDateTime local(std::int64_t{1709543107}, true);  // 4 March 2024, 09:05:07
    local.Milliseconds(3);
    EXPECT_FALSE(static_cast<const CTime&>(local) == earlier);
}

TEST(TmDateTime, HasTexts) {
    const CDateTime value(2024, 3, 5, 9, 5, 7, 3, false);
    const char* const dates[] = {" 5.03.2024", "05.03.2024", "05/03/2024"};
    const char* const times[] = {" 9:05:07", "09:05:07", "09:05:07.003"};
    for (int form = 0; form < 3; ++form) {
        EXPECT_STREQ(dates[form], value.TextDate(form));
        EXPECT_STREQ(times[form], value.TextTime(form));
    }
    EXPECT_STREQ("05.03.2024", value.TextDate(3));  // the user's short form
    EXPECT_EQ(CQELTime(9, 5, 7, 0).TextTime(3), value.TextTime(3));
    EXPECT_STREQ("", value.TextDate(6));
    EXPECT_STREQ("", value.TextTime(4));
    EXPECT_STREQ("09:05:07 05/03/2024", value.TextDateTime(2, 1, 1));
    EXPECT_STREQ("", value.TextDateTime(2, 1, 2));
    EXPECT_STREQ("Tuesday 065", value.Format("%A %j"));
    EXPECT_STREQ("", value.Format(nullptr));
    EXPECT_EQ(1023u, std::string(value.Format(std::string(1023, 'x').c_str())).size());
    EXPECT_STREQ("", value.Format(std::string(1024, 'x').c_str()));
    EXPECT_STREQ("05/03/2024 09:05:07", QEL::getdtstring(1709629507, false, 2, 1));
    EXPECT_EQ(12u, std::string(QEL::gettimecurrstring()).size());
}

TEST(TmDateTime, TurnsIntoASystemTimeAndBack) {
    SYSTEMTIME st = {};
    const CDateTime value(2024, 3, 5, 9, 5, 7, 3, false);
    EXPECT_TRUE(value.GetAsSystemTime(st));
    const SYSTEMTIME expected = {2024, 3, 2, 5, 9, 5, 7, 3};
    EXPECT_EQ(0, std::memcmp(&expected, &st, sizeof st));
    st.wDayOfWeek = 6;
    EXPECT_EQ(value, CDateTime(&st, false));
    EXPECT_EQ(64, value.DayOfYear());
}

TEST(TmDateTime, ReadsZoneCodes) {
    const int hours[] = {28, -13, -3, 0, 12, 28};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(hours[i], CDateTime::GetTimeZoneHours("$%/2>?"[i]));
}

}  // namespace
