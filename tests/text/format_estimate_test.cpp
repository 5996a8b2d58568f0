#include "text/detail/format_estimate.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>
#include <vector>

#include "support/guarded_buffer.h"
#include "text/format_slots.h"

namespace {

struct Measured {
    std::uint32_t width, precision;
    double value;
    bool operator==(const Measured&) const = default;
};

std::vector<Measured> measured;

constexpr std::uint64_t kFixed = 1000;  // what the measuring of any %f answers

std::uint64_t Measure(std::uint32_t width, std::uint32_t precision, double value) {
    measured.push_back({width, precision, value});
    return kFixed;
}

// As in a code page in which 0x81 is the only lead byte.
std::size_t CharacterLength(const char* at) { return at[0] == '\x81' && at[1] != '\0' ? 2 : 1; }

std::optional<std::uint32_t> Estimate(const char* format, const Slots& slots) {
    measured.clear();
    return kit::EstimateLength(format, slots.cursor(), {CharacterLength, Measure});
}

using Case = std::pair<const char*, std::uint32_t>;

// Estimates each format with these arguments.
template <std::size_t N>
void Check(const Slots& slots, const Case (&cases)[N]) {
    for (const auto& [format, length] : cases) {
        EXPECT_EQ(std::optional(length), Estimate(format, slots)) << format;
    }
}

const char* const kNoText = nullptr;

TEST(EstimateLength, CountsTextAndStepsOverCharactersOfTwoBytes) {
    const Case cases[] = {
        {"", 0},         {"abc", 3},   {"100%%", 4},  {"%%%%d", 3},       {"a%", 1},
        {"a%-08.3l", 1}, {"a\x81", 2}, {"\x81%d", 3}, {"\x82%d", 1 + 32}, {"%\x81s", 0},
    };
    Check(Slots(5), cases);
}

TEST(EstimateLength, CapsTextsAtThePrecisionAndThenRaisesThemToTheWidth) {
    const Case narrow[] = {
        {"%s", 6},       {"%hs", 6},  {"%hS", 6},  {"%Fs", 6}, {"%Ns", 6},    {"%Ls", 6},
        {"%.3s", 3},     {"%.9s", 6}, {"%.0s", 6}, {"%3s", 6}, {"%-10s", 10}, {"%10.3s", 10},
        {"%c%s", 2 + 1}, {"%C%c", 4}, {"%hc", 2},  {"%lC", 2}, {"%10c", 10},  {"%.1c", 1},
    };
    Check(Slots("abcdef", ""), narrow);
    const Case wide[] = {{"%S", 4},    {"%ls", 4},  {"%lS", 4},   {"%.3S", 3},
                         {"%9.3S", 9}, {"%S%S", 6}, {"%S%S%S", 7}};
    Check(Slots(u"abcd", u"\u0100\u4E00", u""), wide);  // either byte may be zero
    const Case null[] = {{"%s", 6}, {"%S", 6}, {"%.3s", 3}};
    Check(Slots(kNoText), null);
    const Case stars[] = {
        {"%*s", 9}, {"%-*s", 9}, {"%*s%*s", 18}, {"%*s%*s%.*s", 20}, {"%*s%*s%.*s%.*s", 23}};
    Check(Slots(9, "abc", -9, "abc", 2, "abc", -2, "abc"), stars);
    EXPECT_EQ(4u, Estimate("%*.*s", Slots(4, 3, "abcdef")));
}

TEST(EstimateLength, TakesNumbersAtALeastLengthOrWidthAndPrecision) {
    const Case cases[] = {
        {"%d%i%o", 96},  {"%u%x%X", 96},  {"%hd%ld", 64},    {"%I64d", 32},   {"%20.12d", 32},
        {"%20.30d", 50}, {"%*.*d", 70},   {"%#x", 34},       {"%-+0 #d", 34}, {"%p", 32},
        {"%40p", 40},    {"%e%g%G", 384}, {"%100.29e", 129},
    };
    Check(Slots(30, 40, 1, 4, 5, 6), cases);
    EXPECT_EQ(32u, Estimate("%.*d", Slots(-2, 1)));
}

TEST(EstimateLength, HasFixedPointMeasuredWithSixMoreDigits) {
    EXPECT_EQ(2 + 3 * kFixed, Estimate("a%10.3f%*.*fb%f", Slots(2.5, 7, 4, 3.5, 4.5)));
    EXPECT_EQ((std::vector<Measured>{{10, 9, 2.5}, {7, 10, 3.5}, {0, 6, 4.5}}), measured);
    EXPECT_EQ(kFixed, Estimate("%2147483647.2147483641f", Slots(1.5)));
    EXPECT_EQ((std::vector<Measured>{{2147483647, 2147483647, 1.5}}), measured);
    for (const char* format : {"%2147483648f", "%.2147483642f", "%.99999999999f"}) {
        EXPECT_EQ(std::nullopt, Estimate(format, Slots(1.5))) << format;  // no int can name it
        EXPECT_TRUE(measured.empty()) << format;
    }
}

TEST(EstimateLength, CountsNothingForOtherTypesButTakesTheirArguments) {
    // Types of the formatter, and sizes that it knows beyond those of the estimate.
    for (const char* format : {"%E%s", "%20.5E%s", "%a%s", "%A%s", "%n%s", "%lld%s", "%hhd%s",
                               "%I32d%s", "%Id%s", "%zd%s", "%ws%s", "%hI64d%s"}) {
        EXPECT_EQ(7u, Estimate(format, Slots("abc", "abcdefg"))) << format;
    }
    // The formatter takes nothing for these, and what is behind an "I" alone is text.
    for (const char* format : {"%y%s", "%5%%s", "%lly%s"}) {
        EXPECT_EQ(3u, Estimate(format, Slots("abc", "abcdefg"))) << format;
    }
    EXPECT_EQ(3u + 1u, Estimate("%Is%s", Slots("abc", "abcdefg")));
}

TEST(EstimateLength, GivesUpBeyond32Bits) {
    EXPECT_EQ(4294967294u, Estimate("%4294967294d", Slots(1)));
    EXPECT_EQ(4294967294u, Estimate("%4294967291dabc", Slots(1)));
    EXPECT_EQ(std::optional(2147483648u), Estimate("%*d", Slots(INT32_MIN, 1)));
    for (const char* format : {"%4294967295d", "%4294967292dabc", "%2147483648d%2147483648d",
                               "%99999999999999999999d", "%2147483648.2147483648d"}) {
        EXPECT_EQ(std::nullopt, Estimate(format, Slots(1, 2))) << format;
    }
}

TEST(EstimateLength, ReadsNoTextBeyondItsPrecision) {
    GuardedBuffer narrow("abcde", 5), wide(u"abc", 6), terminated("abc");
    EXPECT_EQ(5u, Estimate("%.5s", Slots(narrow.text())));
    EXPECT_EQ(3u, Estimate("%.3S", Slots(wide.text())));
    EXPECT_EQ(3u, Estimate("%.9s", Slots(terminated.text())));
}

}  // namespace
