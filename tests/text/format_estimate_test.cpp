#include "text/detail/format_estimate.h"

#include <gtest/gtest.h>

#include <optional>
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

struct Case {
    const char* format;
    Slots slots;
    std::uint32_t length;
};

void Check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(std::optional(c.length), Estimate(c.format, c.slots)) << c.format;
    }
}

const char* const kNoText = nullptr;

TEST(EstimateLength, CountsOrdinaryText) {
    Check({
        {"", Slots(), 0},
        {"abc", Slots(), 3},
        {"100%%", Slots(), 4},
        {"%%%%d", Slots(), 3},
        {"a%", Slots(), 1},
        {"a%-08.3l", Slots(), 1},
    });
}

TEST(EstimateLength, MeasuresTexts) {
    Check({
        {"%s", Slots("abcdef"), 6},
        {"%hs", Slots("abcdef"), 6},
        {"%hS", Slots("abcdef"), 6},
        {"%s", Slots(""), 1},
        {"%s", Slots(kNoText), 6},
        {"%S", Slots(kNoText), 6},
        {"%.3s", Slots(kNoText), 3},
        {"%S", Slots(u"abcd"), 4},
        {"%ls", Slots(u"abcd"), 4},
        {"%lS", Slots(u"abcd"), 4},
        {"%S", Slots(u"\u0100\u4E00"), 2},  // one of the two bytes may be zero
        {"%S", Slots(u""), 1},
        {"%Fs%Ns%Ls", Slots("a", "bc", "def"), 6},
    });
}

TEST(EstimateLength, CapsTextsAtThePrecisionAndThenRaisesThemToTheWidth) {
    Check({
        {"%c%C%hc%lC", Slots('a', 'b', 'c', u'd'), 8},
        {"%10c", Slots('a'), 10},
        {"%.1c", Slots('a'), 1},
        {"%.3s", Slots("abcdef"), 3},
        {"%.9s", Slots("abcdef"), 6},
        {"%.0s", Slots("abcdef"), 6},  // a precision of 0 is as good as none
        {"%3s", Slots("abcdef"), 6},
        {"%-10s", Slots("abcdef"), 10},
        {"%10.3S", Slots(u"abcdef"), 10},
        {"%*s", Slots(12, "abcdef"), 12},
        {"%-*s", Slots(12, "abcdef"), 12},
        {"%*s", Slots(-12, "abcdef"), 12},  // the formatter justifies to the left
        {"%.*s", Slots(2, "abcdef"), 2},
        {"%.*s", Slots(-2, "abcdef"), 6},  // the formatter takes it as absent
        {"%*.*s", Slots(4, 3, "abcdef"), 4},
    });
}

TEST(EstimateLength, TakesNumbersAtALeastLengthOrWidthAndPrecision) {
    Check({
        {"%d%i%o%u%x%X", Slots(1, 2, 3, 4u, 5u, 6u), 6 * 32},
        {"%hd%ld%I64d", Slots(1, 2, std::int64_t{3}), 3 * 32},
        {"%20.12d", Slots(1), 32},
        {"%20.30d", Slots(1), 50},
        {"%*.*d", Slots(20, 30, 1), 50},
        {"%.*d", Slots(-2, 1), 32},
        {"%#x", Slots(1), 34},
        {"%-+0 #d", Slots(1), 34},
        {"%p", Slots(kNoText), 32},
        {"%40p", Slots(kNoText), 40},
        {"%e%g%G", Slots(1.5, 2.5, 3.5), 3 * 128},
        {"%100.29e", Slots(1.5), 129},
    });
}

TEST(EstimateLength, HasFixedPointMeasuredWithSixMoreDigits) {
    EXPECT_EQ(2 + kFixed, Estimate("a%fb", Slots(1.5)));
    EXPECT_EQ((std::vector<Measured>{{0, 6, 1.5}}), measured);
    EXPECT_EQ(3 * kFixed, Estimate("%10.3f%*.*f%lf", Slots(2.5, 7, 4, 3.5, 4.5)));
    EXPECT_EQ((std::vector<Measured>{{10, 9, 2.5}, {7, 10, 3.5}, {0, 6, 4.5}}), measured);
}

TEST(EstimateLength, CountsNothingForOtherTypesButTakesTheirArguments) {
    for (const char* format : {"%E%s", "%20.5E%s", "%a%s", "%A%s", "%n%s"}) {
        EXPECT_EQ(7u, Estimate(format, Slots(1.5, "abcdefg"))) << format;
    }
    // Sizes that the formatter knows beyond those of the estimate.
    for (const char* format :
         {"%lld%s", "%hhd%s", "%I32d%s", "%Id%s", "%zd%s", "%ws%s", "%hI64d%s"}) {
        EXPECT_EQ(7u, Estimate(format, Slots("abc", "abcdefg"))) << format;
    }
    // The formatter takes nothing for these, and what is behind an "I" alone is text.
    for (const char* format : {"%y%s", "%5%%s", "%lly%s"}) {
        EXPECT_EQ(3u, Estimate(format, Slots("abc", "abcdefg"))) << format;
    }
    EXPECT_EQ(3u + 1u, Estimate("%Is%s", Slots("abc", "abcdefg")));
}

TEST(EstimateLength, StepsOverCharactersOfTwoBytes) {
    Check({
        {"\x81%d", Slots(), 3},        // "%" is a trail byte
        {"\x82%d", Slots(5), 1 + 32},  // 0x82 is no lead byte here
        {"%\x81s", Slots("abcdef"), 0},
        {"a\x81", Slots(), 2},
    });
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

TEST(EstimateLength, AsksForNoFixedPointThatAnIntCannotName) {
    EXPECT_EQ(kFixed, Estimate("%2147483647.2147483641f", Slots(1.5)));
    EXPECT_EQ((std::vector<Measured>{{2147483647, 2147483647, 1.5}}), measured);
    for (const char* format : {"%2147483648f", "%.2147483642f", "%.99999999999f"}) {
        EXPECT_EQ(std::nullopt, Estimate(format, Slots(1.5))) << format;
        EXPECT_TRUE(measured.empty()) << format;
    }
}

TEST(EstimateLength, ReadsNoTextBeyondItsPrecision) {
    GuardedBuffer narrow("abcde", 5), wide(u"abc", 6), terminated("abc");
    Check({
        {"%.5s", Slots(narrow.text()), 5},
        {"%.3S", Slots(wide.text()), 3},
        {"%.9s", Slots(terminated.text()), 3},
    });
}

}  // namespace
