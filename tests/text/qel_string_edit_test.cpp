#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>

#include "support/code_page.h"
#include "support/guarded_buffer.h"
#include "support/import_patch.h"
#include "text/qel_string.h"

namespace {

using S = CQELString;

const char* Text(const S& s) { return s; }

// The text and its length; an empty text has no body.
void Expect(const char* expected, const S& s) {
    EXPECT_STREQ(expected, s);
    EXPECT_EQ(std::strlen(expected), static_cast<std::size_t>(s.Length())) << expected;
    EXPECT_EQ(*expected != '\0', s.IsValid());
}

TEST(Editing, InPlaceOperationsChangeEveryCopyAndTheOthersNone) {
    const std::function<void(S&)> edits[] = {
        [](S& s) { s.MakeLower(); },
        [](S& s) { s.MakeUpper(); },
        [](S& s) { s.LowerRus(); },
        [](S& s) { s.UpperRus(); },
        [](S& s) { s.Replace('A', 'x'); },
        [](S& s) { s.TrimLeft(); },
        [](S& s) { s.TrimRight(); },
        [](S& s) { s.TrimLeft(" A"); },
        [](S& s) { s.TrimRight(" ;"); },
        [](S& s) { s.Replace("A", "x"); },  // from here on a copy is made
        [](S& s) { s.Delete(0, 1); },
        [](S& s) { s.Insert("x", 0); },
        [](S& s) { s.InsertRow("x", 0); },
        [](S& s) { s.RemoveSubstring("Aa"); },
        [](S& s) { s.Exclude(","); },
        [](S& s) { s.Strip(S::kStripLeadingBlanks); },
        [](S& s) { s.BeginNewLine(); },
        [](S& s) { s.StrAddSlash(); },
        [](S& s) { s += "x"; },
        [](S& s) { s.CharToOemA(); },
        [](S& s) { s.OemToCharA(); },
    };
    constexpr char kBefore[] = "  Aa,B;\n\xC0  ";
    for (const auto& edit : edits) {
        S edited(kBefore);
        const S copy(edited);
        edit(edited);
        const bool in_place = &edit - edits < 9;
        EXPECT_STRNE(kBefore, edited) << &edit - edits;
        Expect(in_place ? Text(edited) : kBefore, copy);
    }
    S trimmed("   ");
    const S copy(trimmed);
    Expect("", trimmed.TrimLeft());  // nothing is left, of the copy neither
    EXPECT_TRUE(copy == trimmed);
    Expect("x", S(copy) += "x");
}

TEST(Editing, InsertsAColumnIntoTheLinesThatReachIt) {
    const std::tuple<const char*, const char*, int, const char*> cases[] = {
        {"abc\nx", "|", 2, "ab|c\nx"},   {"ab\r\ncd", "|", 3, "ab\r|\ncd"},
        {"ab\n", "> ", 0, "> ab\n> "},   {"\n\n", "-", 0, "-\n-\n-"},
        {"ab\ncd", "|", -4, "|ab\n|cd"}, {"ab\ncd", "|", 3, "ab\ncd"},
        {"ab\ncd", "", 1, "ab\ncd"},
    };
    for (const auto& [text, other, at, expected] : cases) {
        Expect(expected, S(text).InsertRow(other, at));
    }
}

TEST(Editing, TakesItsOwnTextAsAnArgument) {
    S s("abc");
    Expect("aabcbc", s.Insert(s, 1));
    Expect("aaaabcbccaabcbcc", s.Replace("b", s));
    Expect("y", s.Replace(s, "y"));
}

TEST(Editing, RemovesInAnyCase) {
    Expect("abBC", S("abcABC").RemoveSubstring("CA", true));
    Expect("\xE0\xE2", S("\xE0\xE1\xE2").RemoveSubstring("\xC1", true));
    Expect("abc", S("abc").RemoveSubstring(nullptr, true));
}

TEST(Editing, TrimsWholeCharactersOfTwoBytes) {
    Expect(".", S("  .  ").TrimLeft().TrimRight());
    Expect(".", S("\xFF\xFF.\xFF").TrimLeft('\xFF').TrimRight('\xFF'));
    const MultiByteCodePage japanese(932);  // 83 5C and 83 41 and 81 40 are characters
    Expect("\x83\x5C", S("\x83\x5C\\").TrimRight('\\'));
    Expect("\x83\x5C", S("\x83\x5C\\").TrimRight("\\"));
    Expect("a\x83\x41", S("a\x83\x41").TrimRight("A"));
    Expect("\x83\x41.", S("\x83\x41.").TrimLeft('\x83'));
    Expect("a", S("\x81\x40 a \x81\x40").TrimLeft(" \x81\x40").TrimRight(" \x81\x40"));
    Expect("a", S("a\x81").TrimRight('\x81'));  // a lead byte without a second
}

constexpr auto kLead = S::kStripLeadingBlanks, kTrail = S::kStripTrailingBlanks,
               kLineFeed = S::kStripLineFeed, kSlash = S::kStripSlash, kUrl = S::kStripUrl,
               kLineEnds = S::kStripLineEnds, kAllBlanks = S::kStripAllBlanks,
               kQuotes = S::kStripQuotes;
const auto kEvery = kLead | kTrail | kQuotes | kSlash | kLineFeed | kLineEnds | kUrl | kAllBlanks;

using StripCase = std::tuple<const char*, S::EStripType, const char*>;

TEST(Strip, AppliesEachBit) {
    const StripCase cases[] = {
        {" a b ", kLead, "a b "},     {" a   ", kTrail, " a"},
        {"\ta ", kTrail, "\ta"},      {"\" a\"", kQuotes, "a"},
        {"a\\", kSlash, "a"},         {"a//", kSlash, "a/"},
        {"a\n\n", kLineFeed, "a\n"},  {"a\r\n\r\n", kLineEnds, "a"},
        {" a  b ", kAllBlanks, "ab"}, {"   ", kAllBlanks, ""},
        {"   ", kLead, ""},           {"\\", kSlash, ""},
        {"\n", kLineFeed, ""},        {"", kEvery, ""},
    };
    for (const auto& [text, flags, expected] : cases) Expect(expected, S(text).Strip(flags));
}

TEST(Strip, DropsTheSchemeOfAddressesOfEightCharacters) {
    const std::pair<const char*, const char*> cases[] = {
        {"http://abc/", "abc"},     {"HTTP://a", "a"}, {"http:/", "http:/"},
        {"http://", "http://"},     {"http:///", ""},  {"https://ab/", "https://ab"},
        {" http://a", " http://a"},
    };
    for (const auto& [text, expected] : cases) Expect(expected, S(text).Strip(kUrl));
    Expect("a", S("  http://a").Strip(kUrl | kLead));
}

TEST(Strip, LooksAtTheEndOfTheUnstrippedText) {
    const StripCase cases[] = {
        {"a/  ", kTrail | kSlash, "a/"},       {"a/\n", kSlash | kLineEnds, "a/"},
        {"ab\n", kLineFeed | kLineEnds, "ab"}, {"a \n", kLineFeed | kTrail, "a "},
        {"a\"\\", kQuotes | kSlash, "a\""},    {"\"a\"\n", kQuotes | kLineFeed, "a\""},
    };
    for (const auto& [text, flags, expected] : cases) Expect(expected, S(text).Strip(flags));
}

TEST(Editing, KeepsTheBodyWhenNothingChanges) {
    S s("plain\ntext");
    const char* const before = s;
    s.InsertRow("|", 9).InsertRow("", 0).Exclude("#").Strip(kEvery).Replace("#", "").Delete(20, 1);
    EXPECT_EQ(before, Text(s));
}

TEST(Editing, EndsFoldersAndLinesOnce) {
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        // text, added to a string, added to a buffer with one character of room, cut
        {"", "\\", "\\", ""},
        {"C:", "C:\\", "C:\\", "C:"},
        {"C:\\", "C:\\", "C:\\", "C:"},
        {"C:/", "C:\\", "C:/\\", "C:/"},
        {"C:\\\\", "C:\\\\", "C:\\\\", "C:\\"},
        {"\\", "\\", "\\", ""},
    };
    for (const auto& [text, string, buffer, without] : cases) {
        Expect(string, S(text).StrAddSlash());
        GuardedBuffer added(std::strlen(buffer) + 1), cut(text);
        std::strcpy(added.text(), text);
        S::StrAddSlash(added.text());
        EXPECT_STREQ(buffer, added.text());
        S::StrCutSlash(cut.text());
        EXPECT_STREQ(without, cut.text());
    }
    Expect("a\r\n", S("a").BeginNewLine().BeginNewLine());
    Expect("a\r\r\n", S("a\r").BeginNewLine());
    Expect("", S().BeginNewLine());
    S::StrAddSlash(nullptr);
    S::StrCutSlash(nullptr);
}

TEST(Editing, LeavesAStringAloneThatWouldExceedItsLengthField) {
    const std::string many(1 << 16, 'x');
    S s(many.c_str()), lines(std::string((1 << 16) - 1, '\n').c_str());
    Expect(many.c_str(), s.Replace("x", many.c_str()));  // 2^32 bytes
    EXPECT_EQ((1 << 16) - 1, lines.InsertRow(s, 0).Length());
    EXPECT_EQ(3 << 16, s.Replace("xx", "abcdef").Length());
}

void* NoMemory(std::size_t) { return nullptr; }

TEST(Editing, WithoutMemoryChangesNothing) {
    S s("ab\ncd "), shared("xy"), constructed, assigned("old"), sum;
    const char* thrown = "";
    {
        const ImportPatch patch(kLibrary, "malloc", NoMemory);
        constructed = S("new");
        assigned = "new";
        sum = s + "x";
        s += "x";
        s += 'x';
        s += shared;
        s.Insert(shared, 1).InsertRow(shared, 1).Delete(0, 1).Replace("a", "xyz").Exclude("a");
        s.Strip(kTrail).BeginNewLine();
        try {
            s.CharToOemA();
        } catch (char* text) {
            thrown = text;
        }
    }
    Expect("ab\ncd ", s);
    Expect("", constructed);
    Expect("", assigned);
    Expect("", sum);
    EXPECT_STREQ("MemoryError", thrown);
}

}  // namespace
