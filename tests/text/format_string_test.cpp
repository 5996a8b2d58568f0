#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <string>

#include "support/code_page.h"
#include "support/import_patch.h"
#include "text/qel_string.h"

namespace {

std::string Text(const CQELString& string) { return static_cast<const char*>(string); }

// The members that take an argument list, with one.
template <auto kMember>
CQELString& WithList(CQELString* string, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    (string->*kMember)(fmt, args);
    va_end(args);
    return *string;
}
constexpr auto FormatV = WithList<&CQELString::FormatV>;
constexpr auto Sprintf = WithList<&CQELString::Sprintf>;

// What becomes of the string "old".
constexpr auto Formatted = [](const char* fmt, auto... arguments) {
    return Text(CQELString("old").Format(fmt, arguments...));
};
constexpr auto FormattedV = [](const char* fmt, auto... arguments) {
    CQELString string("old");
    return Text(FormatV(&string, fmt, arguments...));
};
constexpr auto Printed = [](const char* fmt, auto... arguments) {
    CQELString string("old");
    return Text(Sprintf(&string, fmt, arguments...));
};

const char* const kNoText = nullptr;
const char* const kUnreadable = reinterpret_cast<const char*>(1);

TEST(Format, SpeaksTheRuntimesDialect) {
    EXPECT_EQ("a 5 b 100%", Formatted("%s %d %c 100%%", "a", 5, 'b'));
    EXPECT_EQ("1.500000e+000 1E-010 1.5E+000", Formatted("%e %G %.1E", 1.5, 1e-10, 1.5));
    EXPECT_EQ("-9000000000 FF", Formatted("%I64d %I64X", -9000000000ll, 255ll));
    EXPECT_EQ("wide (null) [abcdef]", Formatted("%S %s [%-3s]", L"wide", kNoText, "abcdef"));
    int count = 0;
    EXPECT_EQ("abc", Formatted("ab%nc", &count));
    EXPECT_EQ(2, count);
    for (std::size_t length : {0, 511, 512, 513, 515, 70000}) {
        const std::string text(length, 'x');
        EXPECT_EQ(text, Formatted("%s", text.c_str()));
    }
    EXPECT_EQ("old", Formatted("%d %S", 1, L"\u4E00"));  // not in the runtime's locale
}

TEST(Formatting, LeavesTheStringWhenTheFormatIsUnreadable) {
    for (const char* format : {kNoText, kUnreadable}) {
        EXPECT_EQ("old", Formatted(format, 5));
        EXPECT_EQ("old", FormattedV(format, 5));
        EXPECT_EQ("old", Printed(format, 5));
    }
}

TEST(Formatting, MayReadTheStringThatItChanges) {
    CQELString string("%s-%s");
    EXPECT_EQ("a-%s-%s", Text(string.Format(string, "a", static_cast<const char*>(string))));
    FormatV(&string, string, static_cast<const char*>(string), "b");
    EXPECT_EQ("a-a-%s-%s-b", Text(string));
    Sprintf(&string, string, static_cast<const char*>(string), "c");
    EXPECT_EQ("a-a-a-a-%s-%s-b-c-b", Text(string));
}

TEST(FormatV, FormatsWhatFitsItsEstimate) {
    EXPECT_EQ("a|   5|1.50|wide|%", FormattedV("%s|%4d|%.2f|%S|%%", "a", 5, 1.5, L"wide"));
    EXPECT_EQ("   7|7   |[abcdef]", FormattedV("%*d|%*d|[%-3s]", 4, 7, -4, 7, "abcdef"));
    EXPECT_EQ(std::string(39, '0') + "5", FormattedV("%.40d", 5));  // 40 of 40
    EXPECT_EQ(1u + 300, FormattedV("%.0f", 1e300).size());
}

TEST(FormatV, BecomesTheFormatWhenTheResultIsLongerThanTheEstimateOrFails) {
    EXPECT_EQ("%E %s", FormattedV("%E %s", 1.5, "text"));
    EXPECT_EQ("%.40d", FormattedV("%.40d", -5));  // 41 characters
    EXPECT_EQ("%.600d", FormattedV("%.600d", -5));
    EXPECT_EQ("%d %S", FormattedV("%d %S", 1, L"\u4E00"));
    EXPECT_EQ(8u, FormattedV("\x81%d", 1234567).size());
    const MultiByteCodePage japanese(932);
    // One character of two bytes and a "d": less than the formatter makes of it.
    EXPECT_EQ("\x81%d", FormattedV("\x81%d", 1234567));
}

TEST(FormatV, TellsAnEstimateBeyond32BitsByAConstantText) {
    EXPECT_EQ("(CQELPtr:ZeroItems)", FormattedV("%4294967295d", 1));
}

TEST(Sprintf, PrintsNumbersByTheRuntimeAndTextsByItself) {
    EXPECT_EQ("-42 00042 ff 5d x", Printed("%d %05d %x %+-5d %#x", -42, 42, 255, 42, 255));
    EXPECT_EQ("   42|  1.50|1E-010 100%", Printed("%*d|%*.*f|%G 100%%", 5, 42, 6, 2, 1.5, 1e-10));
    EXPECT_EQ("0000000000001234 wide", Printed("%p %S", std::uint64_t{0x1234}, L"wide"));
    EXPECT_EQ("[]5 [abc] (null)", Printed("[%C]%d [%-3s] %s", 0, 5, "abcdef", kNoText));
    int count = -1;
    EXPECT_EQ("abc", Printed("abc%n", &count));
    EXPECT_EQ(0, count);  // a conversion knows nothing of what is before it
    EXPECT_EQ("[abc] 1.500000e+000", Text(CQELString().lFormat("[%-3s] %E", "ABCDEF", 1.5)));
    // Numbers are cut too; what an earlier one wrote is not seen when a later one fails.
    EXPECT_EQ("1." + std::string(254, '0') + "|", Printed("%.300f|", 1.0));
    EXPECT_EQ(std::string(256, ' ') + "|", Printed("%300d|%S", 42, L"\u4E00"));
}

TEST(FormatByMessage, TakesItsFormatFromTheLibraryOrTheMainExecutable) {
    CQELString string;
    EXPECT_EQ("Open returns error 5", Text(string.FormatEx(nullptr, 1010, "Open", 5)));
    EXPECT_EQ("Read returns error 6", Text(string.Format(1010, "Read", 6)));
    EXPECT_EQ("Seek returns error 7", Text(string.FormatEx("qelkit2_64.dll", 1010, "Seek", 7)));
    EXPECT_EQ("", Text(string.FormatEx("no such module", 1010, "Open", 5)));
    EXPECT_EQ("", Text(CQELString("old").Format(65000)));  // a code without a message
    EXPECT_EQ("seven of the program", Text(CQELSprintf(7)));
    EXPECT_EQ("", Text(CQELSprintf(1010, "Open", 5)));  // a message of the library alone
    EXPECT_EQ("a 5", Text(CQELSprintf("%s %d", "a", 5)));
    EXPECT_EQ("%E", Text(CQELSprintf("%E", 1.5)));
    EXPECT_EQ("", Text(CQELSprintf(kUnreadable)));
}

void* NoMemory(std::size_t) { return nullptr; }

// Runs `format` on the string "old" while the library gets no memory.
template <typename Operation>
std::string WithoutMemory(Operation format) {
    CQELString string("old");
    try {
        const ImportPatch patch(kLibrary, "malloc", NoMemory);
        format(string);
    } catch (char* message) {
        return message + (": " + Text(string));
    }
    return Text(string);
}

TEST(Formatting, ThrowsATextWhenItsRoomCannotBeHad) {
    const std::string text(2000, 'x');
    const char* const x = text.c_str();
    EXPECT_EQ("MemoryError: old", WithoutMemory([=](auto& s) { s.Format("%s", x); }));
    EXPECT_EQ("MemoryError: old", WithoutMemory([=](auto& s) { FormatV(&s, "%s", x); }));
    EXPECT_EQ("MemoryError: old", WithoutMemory([=](auto& s) { Sprintf(&s, x); }));
    EXPECT_EQ("MemoryError: old", WithoutMemory([=](auto& s) { Sprintf(&s, "%s%s%s", x, x, x); }));
    // Only the body cannot be had: empty.
    EXPECT_EQ("", WithoutMemory([](auto& s) { s.Format("%d", 5); }));
    EXPECT_EQ("", WithoutMemory([](auto& s) { FormatV(&s, "%d", 5); }));
    EXPECT_EQ("", WithoutMemory([](auto& s) { Sprintf(&s, "%d", 5); }));
}

}  // namespace
