#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <functional>
#include <string>

#include "support/code_page.h"
#include "support/guarded_buffer.h"
#include "support/import_patch.h"
#include "text/qel_string.h"

namespace {

const char* Text(const CQELString& s) { return s; }

using Edit = std::function<void(CQELString&)>;

struct EditCase {
    const char* text;
    Edit edit;
    const char* expected;
};

template <std::size_t N>
void ExpectEdits(const EditCase (&cases)[N]) {
    for (const EditCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases << ": " << c.text);
        CQELString s(c.text);
        c.edit(s);
        EXPECT_STREQ(c.expected, s);
        EXPECT_EQ(*c.expected != '\0', s.IsValid());
        EXPECT_EQ(std::strlen(c.expected), static_cast<std::size_t>(s.Length()));
    }
}

// --- What copies see -------------------------------------------------------------------------

TEST(Editing, InPlaceOperationsChangeEveryCopyAndTheOthersNone) {
    const struct {
        const char* name;
        Edit edit;
        bool in_place;
    } cases[] = {
        {"MakeLower", [](CQELString& s) { s.MakeLower(); }, true},
        {"MakeUpper", [](CQELString& s) { s.MakeUpper(); }, true},
        {"LowerRus", [](CQELString& s) { s.LowerRus(); }, true},
        {"UpperRus", [](CQELString& s) { s.UpperRus(); }, true},
        {"Replace characters", [](CQELString& s) { s.Replace('A', 'x'); }, true},
        {"TrimLeft", [](CQELString& s) { s.TrimLeft(); }, true},
        {"TrimRight", [](CQELString& s) { s.TrimRight(); }, true},
        {"TrimLeft set", [](CQELString& s) { s.TrimLeft(" A"); }, true},
        {"TrimRight set", [](CQELString& s) { s.TrimRight(" ;"); }, true},
        {"Replace texts", [](CQELString& s) { s.Replace("A", "x"); }, false},
        {"Delete", [](CQELString& s) { s.Delete(0, 1); }, false},
        {"Insert", [](CQELString& s) { s.Insert("x", 0); }, false},
        {"InsertRow", [](CQELString& s) { s.InsertRow("x", 0); }, false},
        {"RemoveSubstring", [](CQELString& s) { s.RemoveSubstring("Aa"); }, false},
        {"Exclude", [](CQELString& s) { s.Exclude(","); }, false},
        {"Strip", [](CQELString& s) { s.Strip(CQELString::kStripLeadingBlanks); }, false},
        {"BeginNewLine", [](CQELString& s) { s.BeginNewLine(); }, false},
        {"StrAddSlash", [](CQELString& s) { s.StrAddSlash(); }, false},
        {"append", [](CQELString& s) { s += "x"; }, false},
        {"CharToOemA", [](CQELString& s) { s.CharToOemA(); }, false},
        {"OemToCharA", [](CQELString& s) { s.OemToCharA(); }, false},
    };
    constexpr char kBefore[] = "  Aa,B;\n\xC0  ";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        CQELString edited(kBefore);
        const CQELString copy(edited);
        c.edit(edited);
        EXPECT_STRNE(kBefore, edited);
        if (c.in_place) {
            EXPECT_EQ(Text(edited), Text(copy));
            EXPECT_EQ(edited.Length(), copy.Length());
        } else {
            EXPECT_STREQ(kBefore, copy);
        }
    }
}

TEST(Editing, ATrimThatLeavesNothingEmptiesTheCopiesToo) {
    CQELString trimmed("   ");
    const CQELString copy(trimmed);
    trimmed.TrimLeft();
    EXPECT_FALSE(trimmed.IsValid());
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_STREQ("", copy);
    EXPECT_TRUE(copy == trimmed);
    EXPECT_STREQ("x", CQELString(copy) += "x");
}

// --- Delete, insert --------------------------------------------------------------------------

TEST(Editing, DeletesWithinTheText) {
    ExpectEdits({
        {"abcde", [](CQELString& s) { s.Delete(1, 2); }, "ade"},
        {"abcde", [](CQELString& s) { s.Delete(-7, 2); }, "cde"},
        {"abcde", [](CQELString& s) { s.Delete(3, INT_MAX); }, "abc"},
        {"abcde", [](CQELString& s) { s.Delete(0, 5); }, ""},
        {"abcde", [](CQELString& s) { s.Delete(5, 1); }, "abcde"},
        {"abcde", [](CQELString& s) { s.Delete(1, 0); }, "abcde"},
        {"abcde", [](CQELString& s) { s.Delete(1, -1); }, "abcde"},
        {"", [](CQELString& s) { s.Delete(0, 1); }, ""},
    });
}

TEST(Editing, InsertsUpToTheEnd) {
    ExpectEdits({
        {"abc", [](CQELString& s) { s.Insert("xy", 1); }, "axybc"},
        {"abc", [](CQELString& s) { s.Insert("xy", 3); }, "abcxy"},
        {"abc", [](CQELString& s) { s.Insert("xy", 4); }, "abc"},
        {"abc", [](CQELString& s) { s.Insert("xy", -2); }, "xyabc"},
        {"abc", [](CQELString& s) { s.Insert("", 1); }, "abc"},
        {"abc", [](CQELString& s) { s.Insert(s, 1); }, "aabcbc"},
        {"", [](CQELString& s) { s.Insert("xy", 9); }, "xy"},
    });
}

TEST(Editing, InsertsAColumnIntoTheLinesThatReachIt) {
    ExpectEdits({
        {"one\ntwo\nx", [](CQELString& s) { s.InsertRow("|", 2); }, "on|e\ntw|o\nx"},
        {"ab\r\ncd", [](CQELString& s) { s.InsertRow("|", 3); }, "ab\r|\ncd"},
        {"ab\n", [](CQELString& s) { s.InsertRow("> ", 0); }, "> ab\n> "},
        {"\n\n", [](CQELString& s) { s.InsertRow("-", 0); }, "-\n-\n-"},
        {"ab\ncd", [](CQELString& s) { s.InsertRow("|", -4); }, "|ab\n|cd"},
        {"ab\ncd", [](CQELString& s) { s.InsertRow("|", 3); }, "ab\ncd"},
        {"ab\ncd", [](CQELString& s) { s.InsertRow("", 1); }, "ab\ncd"},
        {"abc", [](CQELString& s) { s.InsertRow("|", 1); }, "a|bc"},
        {"abc", [](CQELString& s) { s.InsertRow("|", 4); }, "abc"},
        {"", [](CQELString& s) { s.InsertRow("|", 4); }, "|"},
    });
    CQELString untouched("ab\ncd");
    const char* const before = untouched;
    untouched.InsertRow("|", 3);
    EXPECT_EQ(before, Text(untouched));
}

// --- Replace, remove -------------------------------------------------------------------------

TEST(Editing, ReplacesFromLeftToRight) {
    ExpectEdits({
        {"aXbXc", [](CQELString& s) { s.Replace('X', '-'); }, "a-b-c"},
        {"a\xFF", [](CQELString& s) { s.Replace('\xFF', '-'); }, "a-"},
        {"abc", [](CQELString& s) { s.Replace('x', '-'); }, "abc"},
        {"", [](CQELString& s) { s.Replace('x', '-'); }, ""},
        {"one two one", [](CQELString& s) { s.Replace("one", "three"); }, "three two three"},
        {"one two one", [](CQELString& s) { s.Replace("one", "1"); }, "1 two 1"},
        {"aaaaa", [](CQELString& s) { s.Replace("aa", "b"); }, "bba"},
        {"ab", [](CQELString& s) { s.Replace("b", "bb"); }, "abb"},  // not searched again
        {"aaa", [](CQELString& s) { s.Replace("a", ""); }, ""},
        {"aba", [](CQELString& s) { s.Replace("a", nullptr); }, "b"},
        {"abc", [](CQELString& s) { s.Replace("x", "y"); }, "abc"},
        {"abc", [](CQELString& s) { s.Replace("", "y"); }, "abc"},
        {"abc", [](CQELString& s) { s.Replace(nullptr, "y"); }, "abc"},
        {"abc", [](CQELString& s) { s.Replace(s, "y"); }, "y"},
        {"abc", [](CQELString& s) { s.Replace("b", s); }, "aabcc"},
        {"", [](CQELString& s) { s.Replace("a", "y"); }, ""},
    });
}

TEST(Editing, RemovesTheFirstOccurrence) {
    ExpectEdits({
        {"abcabc", [](CQELString& s) { s.RemoveSubstring("bc"); }, "aabc"},
        {"abcabc", [](CQELString& s) { s.RemoveSubstring("BC"); }, "abcabc"},
        {"abcABC", [](CQELString& s) { s.RemoveSubstring("CA", true); }, "abBC"},
        {"\xE0\xE1\xE2", [](CQELString& s) { s.RemoveSubstring("\xC1", true); }, "\xE0\xE2"},
        {"abc", [](CQELString& s) { s.RemoveSubstring("abc"); }, ""},
        {"abc", [](CQELString& s) { s.RemoveSubstring(""); }, "abc"},
        {"abc", [](CQELString& s) { s.RemoveSubstring(nullptr, true); }, "abc"},
    });
}

TEST(Editing, ExcludesEveryByteOfASet) {
    ExpectEdits({
        {"a-b.c-", [](CQELString& s) { s.Exclude("-."); }, "abc"},
        {"\xFF-a", [](CQELString& s) { s.Exclude("\xFF"); }, "-a"},
        {"aaa", [](CQELString& s) { s.Exclude("a"); }, ""},
        {"abc", [](CQELString& s) { s.Exclude(""); }, "abc"},
        {"abc", [](CQELString& s) { s.Exclude(nullptr); }, "abc"},
    });
    CQELString untouched("abc");
    const char* const before = untouched;
    untouched.Exclude("xyz");
    EXPECT_EQ(before, Text(untouched));
}

// --- Trims -----------------------------------------------------------------------------------

TEST(Editing, TrimsRunsAtItsEnds) {
    ExpectEdits({
        {"  ab  ", [](CQELString& s) { s.TrimLeft(); }, "ab  "},
        {"  ab  ", [](CQELString& s) { s.TrimRight(); }, "  ab"},
        {"xxaxx", [](CQELString& s) { s.TrimLeft('x').TrimRight('x'); }, "a"},
        {"\xFF\xFF.\xFF", [](CQELString& s) { s.TrimLeft('\xFF').TrimRight('\xFF'); }, "."},
        {"-+a+-", [](CQELString& s) { s.TrimLeft("+-").TrimRight("+-"); }, "a"},
        {"-+-", [](CQELString& s) { s.TrimRight("+-"); }, ""},
        {"ab", [](CQELString& s) { s.TrimLeft("").TrimRight(""); }, "ab"},
        {"ab", [](CQELString& s) { s.TrimLeft(nullptr).TrimRight(nullptr); }, "ab"},
        {"", [](CQELString& s) { s.TrimLeft().TrimRight().TrimLeft("a").TrimRight("a"); }, ""},
    });
}

TEST(Editing, TrimsWholeCharactersOfTwoBytes) {
    const MultiByteCodePage japanese(932);
    ExpectEdits({
        // The second byte of the character is a backslash, of "A" in the next one.
        {"\x83\x5C\\", [](CQELString& s) { s.TrimRight('\\'); }, "\x83\x5C"},
        {"\x83\x5C\\", [](CQELString& s) { s.TrimRight("\\"); }, "\x83\x5C"},
        {"a\x83\x41", [](CQELString& s) { s.TrimRight("A"); }, "a\x83\x41"},
        {"\x83\x41.", [](CQELString& s) { s.TrimLeft('\x83'); }, "\x83\x41."},
        {"\x81\x40 a \x81\x40", [](CQELString& s) { s.TrimLeft(" \x81\x40"); }, "a \x81\x40"},
        {"\x81\x40 a \x81\x40", [](CQELString& s) { s.TrimRight(" \x81\x40"); }, "\x81\x40 a"},
        {"a\x81", [](CQELString& s) { s.TrimRight('\x81'); }, "a"},  // a lead byte without a second
    });
}

// --- Strip -----------------------------------------------------------------------------------

constexpr auto kLead = CQELString::kStripLeadingBlanks;
constexpr auto kTrail = CQELString::kStripTrailingBlanks;
constexpr auto kLineFeed = CQELString::kStripLineFeed;
constexpr auto kSlash = CQELString::kStripSlash;
constexpr auto kUrl = CQELString::kStripUrl;
constexpr auto kLineEnds = CQELString::kStripLineEnds;
constexpr auto kAllBlanks = CQELString::kStripAllBlanks;
constexpr auto kQuotes = CQELString::kStripQuotes;

struct StripCase {
    const char* text;
    CQELString::EStripType flags;
    const char* expected;
};

template <std::size_t N>
void ExpectStrips(const StripCase (&cases)[N]) {
    for (const StripCase& c : cases) {
        SCOPED_TRACE(testing::Message() << c.text << " with " << c.flags);
        EXPECT_STREQ(c.expected, CQELString(c.text).Strip(c.flags));
    }
}

TEST(Strip, AppliesEachBit) {
    ExpectStrips({
        {"  a b  ", kLead, "a b  "},
        {"  a b  ", kTrail, "  a b"},
        {"\ta ", kLead | kTrail, "\ta"},
        {" \" a \"\" ", kQuotes, "a"},
        {"a\\", kSlash, "a"},
        {"a//", kSlash, "a/"},
        {"a\n\n", kLineFeed, "a\n"},
        {"a\r\n\r\n", kLineEnds, "a"},
        {" a b  c ", kAllBlanks, "abc"},
        {"   ", kAllBlanks, ""},
        {"   ", kLead, ""},
        {"", kLead | kSlash | kUrl, ""},
        {"\\", kSlash | kLineFeed, ""},
    });
}

TEST(Strip, DropsTheSchemeOfAddressesOfEightCharacters) {
    ExpectStrips({
        {"http://abc/", kUrl, "abc"},
        {"HTTP://a", kUrl, "a"},
        {"http:/", kUrl, "http:/"},
        {"http://", kUrl, "http://"},
        {"http:///", kUrl, ""},
        {"https://abc/", kUrl, "https://abc"},
        {"abc/", kUrl, "abc/"},
        {"  http://a", kUrl, "  http://a"},
        {"  http://a", kUrl | kLead, "a"},
    });
}

TEST(Strip, LooksAtTheEndOfTheUnstrippedText) {
    ExpectStrips({
        {"a/  ", kTrail | kSlash, "a/"},
        {"a/\n", kSlash | kLineEnds, "a/"},
        {"ab\n", kLineFeed | kLineEnds, "ab"},
        {"ab  \n", kLineFeed | kTrail, "ab  "},
        {"a\"\\", kQuotes | kSlash, "a\""},
        {"\"a\"\n", kQuotes | kLineFeed, "a\""},
        {"\n", kLineFeed, ""},
    });
}

TEST(Strip, KeepsTheBodyWhenNothingGoes) {
    CQELString s("plain");
    const char* const before = s;
    s.Strip(kLead | kTrail | kQuotes | kSlash | kLineFeed | kLineEnds | kUrl | kAllBlanks);
    EXPECT_EQ(before, Text(s));
}

// --- Lines and slashes -----------------------------------------------------------------------

TEST(Editing, EndsLinesAndFolders) {
    ExpectEdits({
        {"a", [](CQELString& s) { s.BeginNewLine(); }, "a\r\n"},
        {"a\n", [](CQELString& s) { s.BeginNewLine(); }, "a\n"},
        {"a\r", [](CQELString& s) { s.BeginNewLine(); }, "a\r\r\n"},
        {"", [](CQELString& s) { s.BeginNewLine(); }, ""},
        {"C:", [](CQELString& s) { s.StrAddSlash(); }, "C:\\"},
        {"C:/", [](CQELString& s) { s.StrAddSlash(); }, "C:\\"},
        {"C:\\\\", [](CQELString& s) { s.StrAddSlash(); }, "C:\\\\"},
        {"", [](CQELString& s) { s.StrAddSlash(); }, "\\"},
    });
}

TEST(Slashes, OfACallersBufferNeedOneCharacterOfRoom) {
    const struct {
        const char *text, *added, *cut;
    } cases[] = {
        {"", "\\", ""},          {"C:", "C:\\", "C:"},         {"C:\\", "C:\\", "C:"},
        {"C:/", "C:/\\", "C:/"}, {"C:\\\\", "C:\\\\", "C:\\"}, {"\\", "\\", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        GuardedBuffer added(std::strlen(c.added) + 1);
        std::strcpy(added.text(), c.text);
        CQELString::StrAddSlash(added.text());
        EXPECT_STREQ(c.added, added.text());
        GuardedBuffer cut(c.text);
        CQELString::StrCutSlash(cut.text());
        EXPECT_STREQ(c.cut, cut.text());
    }
    CQELString::StrAddSlash(nullptr);
    CQELString::StrCutSlash(nullptr);
}

// --- Size and memory -------------------------------------------------------------------------

TEST(Editing, WorksOnAMegabyte) {
    CQELString s(std::string(1 << 20, 'a').c_str());
    EXPECT_EQ(3 << 19, s.Replace("aa", "bcd").Length());
    EXPECT_EQ((3 << 19) - 3, s.ReverseFind('b'));
    EXPECT_EQ(1 << 20, s.Exclude("c").Length());
    EXPECT_EQ(2, s.Replace('d', '\n').InsertRow("**", 1).Find('*') + 1);
    EXPECT_EQ((1 << 20) + (1 << 20), s.Length());
}

TEST(Editing, LeavesAStringAloneThatWouldExceedItsLengthField) {
    const std::string many(1 << 16, 'x');
    CQELString s(many.c_str());
    s.Replace("x", many.c_str());  // 2^32 bytes
    EXPECT_STREQ(many.c_str(), s);
    CQELString lines(std::string((1 << 16) - 1, '\n').c_str());
    EXPECT_EQ((1 << 16) - 1, lines.InsertRow(s, 0).Length());
}

void* NoMemory(std::size_t) { return nullptr; }

TEST(Editing, WithoutMemoryChangesNothing) {
    CQELString s("ab\ncd "), shared("xy");
    CQELString constructed, assigned("old"), sum;
    const char* thrown = "";
    {
        const ImportPatch no_memory(kLibrary, "malloc", &NoMemory);
        constructed = CQELString("new");
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
    EXPECT_STREQ("ab\ncd ", s);
    EXPECT_FALSE(constructed.IsValid());
    EXPECT_FALSE(assigned.IsValid());
    EXPECT_FALSE(sum.IsValid());
    EXPECT_STREQ("MemoryError", thrown);
}

}  // namespace
