#include "text/detail/format_walker.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/guarded_buffer.h"
#include "text/format_slots.h"

namespace {

using kit::Conversion;

// Tells what it was asked to print: "{%*d|5|i42}".
std::size_t Describe(const Conversion& conversion, char* out) {
    std::ostringstream text;
    text << '{' << conversion.spec;
    for (int i = 0; i < conversion.star_count; ++i) text << '|' << conversion.stars[i];
    double number;
    std::memcpy(&number, &conversion.slot, sizeof number);
    switch (conversion.value) {
        case Conversion::kInteger:
            text << "|i" << static_cast<std::uint32_t>(conversion.slot);
            break;
        case Conversion::kDouble:
            text << "|d" << number;
            break;
        case Conversion::kPointer:
            text << "|p" << conversion.slot;
            break;
    }
    text << '}';
    return text.str().copy(out, Conversion::kLongest);
}

std::string Walk(const char* format, const Slots& slots) {
    kit::WorkText out;
    kit::WalkFormat(format, slots.cursor(), Describe, out);
    return std::string(out.text());
}

struct Case {
    const char* format;
    Slots slots;
    std::string text;
};

void Check(const std::vector<Case>& cases) {
    for (const Case& c : cases) EXPECT_EQ(c.text, Walk(c.format, c.slots)) << c.format;
}

const char* const kNoText = nullptr;

TEST(WalkFormat, CopiesOrdinaryText) {
    Check({
        {"", Slots(), ""},
        {"abc", Slots(), "abc"},
        {"100%%", Slots(), "100%"},
        {"%%d%%", Slots(), "%d%"},
    });
    const std::string long_text(5000, 'x');
    Check({{(long_text + "%s" + long_text).c_str(), Slots("|"), long_text + "|" + long_text}});
}

TEST(WalkFormat, TakesAConversionWithoutATypeAsText) {
    Check({
        {"%", Slots(), "%"},
        {"50%", Slots(), "50%"},
        {"a%-5", Slots(), "a%-5"},
        {"a%*.3l", Slots(7), "a%*.3l"},
    });
}

TEST(WalkFormat, HandsNumbersToTheFormatterWithTheirOwnText) {
    Check({
        {"<%d>", Slots(42), "<{%d|i42}>"},
        {"%i%o%u%x%X", Slots(1, 2, 3, 4, 5), "{%i|i1}{%o|i2}{%u|i3}{%x|i4}{%X|i5}"},
        {"%C%S%q", Slots(1, 2, 3), "{%C|i1}{%S|i2}{%q|i3}"},
        {"%E%G%e", Slots(1.5, 2.5, -3.5), "{%E|d1.5}{%G|d2.5}{%e|d-3.5}"},
        {"%f%g", Slots(1.5, 2.5), "{%f|d1.5}{%g|d2.5}"},
        {"%n%p", Slots(std::int64_t{7}, std::int64_t{8}), "{%n|p7}{%p|p8}"},
        {"%-+5.3ld", Slots(42), "{%-+5.3ld|i42}"},
        {"%- 05hd", Slots(42), "{%- 05hd|i42}"},
        {"%.f", Slots(1.5), "{%.f|d1.5}"},
    });
}

TEST(WalkFormat, TakesStarsFromTheArguments) {
    Check({
        {"%*d", Slots(5, 42), "{%*d|5|i42}"},
        {"%.*f", Slots(2, 1.5), "{%.*f|2|d1.5}"},
        {"%*.*f", Slots(-9, -2, 1.5), "{%*.*f|-9|-2|d1.5}"},
        {"%*d%d", Slots(5, 42, 43), "{%*d|5|i42}{%d|i43}"},
        {"[%*s]", Slots(5, "ab"), "[   ab]"},
        {"[%-*s]", Slots(5, "ab"), "[ab   ]"},
        {"[%*s]", Slots(-5, "ab"), "[ab   ]"},  // the C rule
        {"[%.*s]", Slots(2, "abcdef"), "[ab]"},
        {"[%9.*s]", Slots(-2, "abcdef"), "[   abcdef]"},
        {"[%*s]", Slots(INT32_MIN, "ab"), "[ab" + std::string(254, ' ') + "]"},
    });
}

TEST(WalkFormat, KnowsOneOrderOfFlags) {
    Check({
        {"%+-5d", Slots(42), "{%+-|i42}5d"},
        {"%--5d", Slots(42), "{%--|i42}5d"},
        {"%+ d", Slots(42), "{%+ |i42}d"},
        {"%#x", Slots(42), "{%#|i42}x"},
        {"%0-5d", Slots(42), "{%0-|i42}5d"},
        {"%5*d", Slots(42), "{%5*|i42}d"},
        {"%lld", Slots(42), "{%ll|i42}d"},
        {"%I64d", Slots(42), "{%I|i42}64d"},
        {"[%05s]", Slots("ab"), "[   ab]"},  // "0" is a digit of the width
    });
}

TEST(WalkFormat, LaysOutTexts) {
    Check({
        {"%s", Slots("abc"), "abc"},
        {"%s", Slots(kNoText), "(null)"},
        {"%.3s", Slots(kNoText), "(nu"},
        {"[%5s]", Slots("ab"), "[   ab]"},
        {"[%-5s]", Slots("ab"), "[ab   ]"},
        {"[%0s]", Slots("ab"), "[ab]"},
        {"[%-s]", Slots("ab"), "[ab]"},
        {"[%-4.1s][%4s]", Slots("ab", "cd"), "[a   ][  cd]"},  // nothing stays from the first
        {"%.2s", Slots("abcdef"), "ab"},
        {"[%.s]", Slots("abcdef"), "[]"},
        {"[%5.2s]", Slots("abcdef"), "[   ab]"},
        {"[%-5.2s]", Slots("abcdef"), "[ab   ]"},
        {"%hs%ls%Fs", Slots("a", "b", "c"), "abc"},
    });
}

TEST(WalkFormat, CutsTextsAtTheWidthOnlyWhenLeftJustified) {
    Check({
        {"[%-3s]", Slots("abcdef"), "[abc]"},
        {"[%3s]", Slots("abcdef"), "[abcdef]"},
        {"[%-3.4s]", Slots("abcdef"), "[abc]"},
        {"[%3.4s]", Slots("abcdef"), "[abcd]"},
    });
}

TEST(WalkFormat, CountsAPrecisionBeyondTheTextAsGiven) {
    Check({
        {"[%.9s]", Slots("abc"), "[abc]"},
        {"[%9.5s]", Slots("abc"), "[    abc]"},
        {"[%-9.5s]", Slots("abc"), "[abc      ]"},
        {"[%-5.9s]", Slots("abc"), "[abc]"},
    });
}

TEST(WalkFormat, LaysOutCharactersAsTexts) {
    Check({
        {"%c%c", Slots('A', 0x4142), "AB"},
        {"[%3c]", Slots('A'), "[  A]"},
        {"[%-3c]", Slots('A'), "[A  ]"},
        {"[%.0c]", Slots('A'), "[]"},
        {"[%c%2c]", Slots('\0', '\0'), "[  ]"},
    });
}

TEST(WalkFormat, YieldsAtMost256CharactersPerConversion) {
    const std::string text(300, 'x'), cut(256, 'x'), blanks(254, ' ');
    const char* const x = text.c_str();
    Check({
        {"%s", Slots(x), cut},
        {"%.299s", Slots(x), cut},
        {"%-300s", Slots(x), cut},
        {"[%300s]", Slots("ab"), "[" + blanks + "ab]"},
        {"[%-99999999999s]", Slots("ab"), "[ab" + blanks + "]"},
        {"[%257.255s]", Slots(x), "[ " + std::string(cut, 1) + "]"},
        {"[%.4294967297s]", Slots("ab"), "[ab]"},  // not 1
        {"%s%s%s", Slots(x, x, x), cut + cut + cut},
    });
}

TEST(WalkFormat, ReadsNoTextFurtherThanItPrints) {
    GuardedBuffer five("abcde", 5), terminated("abc");
    GuardedBuffer longest(std::string(256, 'x').data(), 256);
    Check({
        {"%.5s", Slots(five.text()), "abcde"},
        {"%9.7s", Slots(terminated.text()), "  abc"},
        {"%s", Slots(longest.text()), std::string(256, 'x')},
    });
}

TEST(WalkFormat, TakesAllThatTheFormatterMayWrite) {
    const auto fill = [](const Conversion&, char* out) {
        std::memset(out, 'y', Conversion::kLongest);
        return Conversion::kLongest;
    };
    kit::WorkText out;
    kit::WalkFormat("%d|%f", Slots(1, 1.5).cursor(), fill, out);
    EXPECT_EQ(std::string(256, 'y') + "|" + std::string(256, 'y'), out.text());
}

}  // namespace
