#include "text/detail/format_walker.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/guarded_buffer.h"
#include "text/format_slots.h"

namespace {

using kit::Conversion;

// Tells what it was asked to print: "{%*d|5|i42}".
std::size_t Describe(const Conversion& conversion, char* out) {
    std::ostringstream text;
    text << '{' << conversion.spec << '|';
    for (int i = 0; i < conversion.star_count; ++i) text << conversion.stars[i] << '|';
    double number;
    std::memcpy(&number, &conversion.slot, sizeof number);
    if (conversion.value == Conversion::kDouble) text << 'd' << number;
    if (conversion.value == Conversion::kPointer) text << 'p' << conversion.slot;
    if (conversion.value == Conversion::kInteger) {
        text << 'i' << static_cast<std::uint32_t>(conversion.slot);
    }
    text << '}';
    return text.str().copy(out, Conversion::kLongest);
}

struct Case {
    const char* format;
    Slots slots;
    std::string text;
};

template <std::size_t N>
void Check(const Case (&cases)[N], kit::PrintConversion print = Describe) {
    for (const Case& c : cases) {
        kit::WorkText out;
        kit::WalkFormat(c.format, c.slots.cursor(), print, out);
        EXPECT_EQ(c.text, out.text()) << c.format;
    }
}

const char* const kNoText = nullptr;

TEST(WalkFormat, CopiesOrdinaryTextAndConversionsWithoutAType) {
    const std::string text(5000, 'x'), around = text + "%s" + text;
    const Case cases[] = {
        {"", Slots(), ""},
        {"abc", Slots(), "abc"},
        {"100%%", Slots(), "100%"},
        {"%%d%%", Slots(), "%d%"},
        {"%", Slots(), "%"},
        {"50%", Slots(), "50%"},
        {"a%-5", Slots(), "a%-5"},
        {"a%*.3l", Slots(7), "a%*.3l"},
        {around.c_str(), Slots("|"), text + "|" + text},
    };
    Check(cases);
}

TEST(WalkFormat, HandsNumbersAndStarsToTheFormatterWithTheirOwnText) {
    const Case cases[] = {
        {"<%i%o%u%x%X>", Slots(1, 2, 3, 4, 5), "<{%i|i1}{%o|i2}{%u|i3}{%x|i4}{%X|i5}>"},
        {"%C%S%q%d", Slots(1, 2, 3, 4), "{%C|i1}{%S|i2}{%q|i3}{%d|i4}"},
        {"%E%G%e%f%g", Slots(1.5, 2., -3., 4., 5.), "{%E|d1.5}{%G|d2}{%e|d-3}{%f|d4}{%g|d5}"},
        {"%n%p", Slots(7LL, 8LL), "{%n|p7}{%p|p8}"},
        {"%-+5.3ld%- 05hd%.f", Slots(1, 2, 3.), "{%-+5.3ld|i1}{%- 05hd|i2}{%.f|d3}"},
        {"%.*f%*.*f", Slots(2, 1.5, -9, -2, 2.5), "{%.*f|2|d1.5}{%*.*f|-9|-2|d2.5}"},
        {"%*d%d", Slots(5, 42, 43), "{%*d|5|i42}{%d|i43}"},
    };
    Check(cases);
}

TEST(WalkFormat, KnowsOneOrderOfFlags) {
    const Case cases[] = {
        {"%+-5d|%--5d|%+ d", Slots(1, 2, 3), "{%+-|i1}5d|{%--|i2}5d|{%+ |i3}d"},
        {"%#x|%0-5d|%5*d", Slots(1, 2, 3), "{%#|i1}x|{%0-|i2}5d|{%5*|i3}d"},
        {"%lld|%I64d", Slots(1, 2), "{%ll|i1}d|{%I|i2}64d"},
        {"%05s", Slots("ab"), "   ab"},  // a "0" is a digit of the width
    };
    Check(cases);
}

TEST(WalkFormat, LaysOutTextsAndCharacters) {
    const Case cases[] = {
        {"%5s|%-5s|%0s|%-s", Slots("ab", "ab", "ab", "ab"), "   ab|ab   |ab|ab"},
        {"%-4.1s|%4s|%hs%ls%Fs", Slots("ab", "cd", "e", "f", "g"), "a   |  cd|efg"},
        {"%.2s|%.s|%5.2s|%-5.2s", Slots("abc", "abc", "abc", "abc"), "ab||   ab|ab   "},
        {"%*s|%-*s|%*s|%*s", Slots(4, "ab", 4, "ab", -4, "ab", 0, "ab"), "  ab|ab  |ab  |ab"},
        {"%.*s|%9.*s", Slots(2, "abc", -2, "abcdef"), "ab|   abcdef"},
        {"%s|%.3s", Slots(kNoText, kNoText), "(null)|(nu"},
        {"%c%c|%3c|%-3c|%.0c|", Slots('A', 0x4142, 'C', 'D', 'E'), "AB|  C|D  ||"},
        {"[%c%2c]", Slots('\0', '\0'), "[  ]"},
    };
    Check(cases);
}

TEST(WalkFormat, CutsTextsAtTheWidthOnlyWhenLeftJustified) {
    const Case cases[] = {
        {"%-3s|%3s|%-3.4s|%3.4s", Slots("abcde", "abcde", "abcde", "abcde"), "abc|abcde|abc|abcd"},
        // A precision beyond the text counts as it is given.
        {"%.9s|%9.5s|%-9.5s|%-5.9s|", Slots("ab", "ab", "ab", "ab"), "ab|    ab|ab       |ab|"},
        {"%-5.5s|%5.5s|", Slots("ab", "ab"), "ab|ab|"},
    };
    Check(cases);
}

TEST(WalkFormat, YieldsAtMost256CharactersPerConversionAndReadsNoMore) {
    GuardedBuffer five("abcde", 5), terminated("abc"), longest(std::string(256, 'x').data(), 256);
    const std::string text(300, 'x'), cut(256, 'x'), blanks(254, ' ');
    const char* const x = text.c_str();
    const Case cases[] = {
        {"%s", Slots(longest.text()), cut},
        {"%.299s", Slots(x), cut},
        {"%-300s", Slots(x), cut},
        {"[%300s]", Slots("ab"), "[" + blanks + "ab]"},
        {"[%-99999999999s]", Slots("ab"), "[ab" + blanks + "]"},
        {"[%*s]", Slots(INT32_MIN, "ab"), "[ab" + blanks + "]"},
        {"[%257.255s]", Slots(x), "[ " + std::string(cut, 1) + "]"},
        {"[%.4294967297s]", Slots("ab"), "[ab]"},
        {"%s%s%s", Slots(x, x, x), cut + cut + cut},
        {"%.5s", Slots(five.text()), "abcde"},
        {"%9.7s", Slots(terminated.text()), "  abc"},
    };
    Check(cases);
    const Case filled[] = {
        {"%d|%f", Slots(1, 1.5), std::string(256, 'y') + "|" + std::string(256, 'y')}};
    Check(filled, [](const Conversion&, char* out) {
        std::memset(out, 'y', Conversion::kLongest);
        return Conversion::kLongest;
    });
}

}  // namespace
