#include "text/qel_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <string>

#include "base/cp1251.h"
#include "support/code_page.h"
#include "support/guarded_buffer.h"

namespace {

const char* Text(const CQELString& s) { return s; }

const char* const kNull = nullptr;

int Sign(int order) { return (order > 0) - (order < 0); }

// --- Construction and assignment -------------------------------------------------------------

TEST(String, OwnsNoBodyForAnEmptyText) {
    CQELString assigned_null("x"), assigned_empty("x"), emptied("x"), loaded("x");
    assigned_null = kNull;
    assigned_empty = "";
    emptied.Empty();
    loaded.Load(nullptr, 3);
    // clang-format off
    const CQELString cases[] = {
        CQELString(), CQELString(kNull), CQELString(""),
        CQELString("abc", std::uint64_t{0}), CQELString("", 5), CQELString(kNull, 3),
        CQELString("ab").Mid(1, 0), assigned_null, assigned_empty, emptied, loaded,
    };
    // clang-format on
    for (const CQELString& s : cases) {
        SCOPED_TRACE(&s - cases);
        EXPECT_FALSE(s.IsValid());
        EXPECT_TRUE(s.IsEmpty());
        EXPECT_EQ(0, s.GetLength());
        EXPECT_STREQ("", s);
        EXPECT_TRUE(s.IsValidString());
    }
}

TEST(String, CopiesCountedBytesThatNoTerminatorEnds) {
    GuardedBuffer bytes("abc", 3);
    EXPECT_STREQ("abc", CQELString(bytes.text(), 3));
    EXPECT_STREQ("b", CQELString(bytes.text() + 1, 1));

    const CQELString with_zero("a\0b", 3);
    EXPECT_EQ(3, with_zero.Length());
    EXPECT_EQ('b', with_zero[2]);
}

TEST(String, IsEmptyWhenItsLengthCannotBeAllocated) {
    for (std::uint64_t n : {std::uint64_t{INT_MAX}, std::uint64_t{0x100000001}, UINT64_MAX}) {
        EXPECT_FALSE(CQELString("abc", n).IsValid()) << n;
    }
}

TEST(String, MakesABodyOfEverySingleCharacter) {
    EXPECT_STREQ("A", CQELString('A'));
    const CQELString zero('\0');
    EXPECT_TRUE(zero.IsValid());
    EXPECT_EQ(1, zero.Length());
    CQELString appended;
    appended += '\0';
    EXPECT_EQ(1, appended.Length());
}

TEST(String, SharesItsBodyWithCopiesUntilOneIsAssigned) {
    CQELString first("text");
    CQELString second(first), third;
    third = first;
    EXPECT_EQ(Text(first), Text(second));
    EXPECT_EQ(Text(first), Text(third));
    first = "other";
    third.Empty();
    EXPECT_STREQ("text", second);
    EXPECT_STREQ("other", first);
}

TEST(String, IsAssignedFromItself) {
    CQELString s("abcdef");
    const char* const own = s;
    CQELString& alias = s;
    s = alias;
    EXPECT_EQ(own, Text(s));
    s = own;
    EXPECT_EQ(own, Text(s));
    s = own + 3;
    EXPECT_STREQ("def", s);
}

// --- Access ----------------------------------------------------------------------------------

TEST(String, ReadsZeroOutsideItsText) {
    const CQELString s("ab");
    EXPECT_EQ('b', s[1]);
    EXPECT_EQ('b', s[std::uint64_t{1}]);
    for (int index : {2, 3, INT_MAX, -1, INT_MIN}) EXPECT_EQ('\0', s[index]) << index;
    EXPECT_EQ('\0', s[std::uint64_t{0x100000000}]);
    EXPECT_EQ('\0', CQELString()[0]);
}

TEST(String, LoadsUpToTheFirstZeroByte) {
    GuardedBuffer bytes("ab\0cd", 5);
    CQELString s;
    s.Load(bytes.data(), 5);
    EXPECT_STREQ("ab", s);
    EXPECT_EQ(2, s.Length());
    s.Load(bytes.data() + 3, 2);  // no zero byte before the inaccessible page
    EXPECT_STREQ("cd", s);
    s.Load(bytes.data() + 2, 3);
    EXPECT_FALSE(s.IsValid());
}

TEST(String, SavesTheTextItself) {
    const CQELString s("abc");
    unsigned int n = 77;
    unsigned char* data = nullptr;
    s.Save(n, data);
    EXPECT_EQ(3u, n);
    EXPECT_EQ(Text(s), reinterpret_cast<char*>(data));
    CQELString().Save(n, data);
    EXPECT_EQ(0u, n);
    EXPECT_EQ('\0', *data);
}

// --- Concatenation ---------------------------------------------------------------------------

TEST(Concatenation, JoinsBothParts) {
    const CQELString ab("ab"), empty;
    EXPECT_STREQ("abab", ab + ab);
    EXPECT_STREQ("abcd", ab + "cd");
    EXPECT_STREQ("ab!", ab + '!');
    EXPECT_STREQ("ab", empty + ab);
    EXPECT_STREQ("cd", empty + "cd");
    EXPECT_STREQ("!", empty + '!');
    EXPECT_STREQ("ab", ab + empty);
    EXPECT_STREQ("ab", ab + kNull);
    EXPECT_FALSE((empty + kNull).IsValid());
    EXPECT_STREQ("ab", ab);

    CQELString s("ab");
    s += s;
    s += Text(s) + 3;
    s += '.';
    EXPECT_STREQ("ababb.", s);
    EXPECT_EQ(6, s.Length());
    EXPECT_EQ(5, (CQELString("a\0b", 3) + "cd").Length());
}

TEST(Concatenation, SharesTheRightSideOnlyWhenTheLeftIsEmpty) {
    const CQELString right("right");
    CQELString empty, left("left");
    empty += right;
    EXPECT_EQ(Text(right), Text(empty));
    EXPECT_EQ(Text(right), Text(CQELString() + right));

    const CQELString copy(left);
    left += CQELString();  // nothing to add, and yet a body of its own
    EXPECT_STREQ("left", left);
    EXPECT_NE(Text(copy), Text(left));
    left = copy;
    left += "";
    EXPECT_NE(Text(copy), Text(left));
}

// --- Comparison ------------------------------------------------------------------------------

TEST(Comparison, EqualityTellsEmptyFromAnEmptyText) {
    EXPECT_FALSE(CQELString() == "");
    EXPECT_TRUE(CQELString() == kNull);
    EXPECT_TRUE(CQELString() == CQELString());
    EXPECT_FALSE(CQELString("a") == kNull);
    EXPECT_FALSE(CQELString("a") == "");
    EXPECT_FALSE(CQELString("a") == CQELString());
    EXPECT_TRUE(CQELString("a") == "a");
    EXPECT_TRUE("a" == CQELString("a"));
    EXPECT_TRUE(CQELString("a") != "b");
    EXPECT_TRUE("a" != CQELString("b"));
    EXPECT_TRUE(CQELString("a") != CQELString("b"));
}

TEST(Comparison, OrdersTextsByUnsignedBytes) {
    const struct {
        const char *a, *b;
        int order;
    } cases[] = {
        {"a", "a", 0},
        {"a", "b", -1},
        {"ab", "a", 1},
        {"z", "\xFF", -1},  // a letter in code page 1251, not a negative number
        {"0123456789abcdef0", "0123456789abcdef1", -1},
        {"0123456789abcdef", "0123456789abcdef0", -1},
        {"0123456\xE0", "0123456a", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.b);
        const CQELString a(c.a), b(c.b);
        EXPECT_EQ(c.order, a.Compare(b));
        EXPECT_EQ(-c.order, b.Compare(a));
        EXPECT_EQ(c.order == 0, a == b);
        EXPECT_EQ(c.order < 0, a < b);
        EXPECT_EQ(c.order > 0, a > b);
    }
    EXPECT_EQ(0, CQELString("a\0b", 3).Compare("a"));  // a zero byte ends a text here
    EXPECT_TRUE(CQELString("a\0b", 3) == CQELString("a\0c", 3));
}

TEST(Comparison, LetsEmptinessDecideBeforeAnyText) {
    using Member = int (CQELString::*)(const char*, bool) const;
    for (Member compare : {&CQELString::Compare, &CQELString::Collate}) {
        for (bool no_case : {false, true}) {
            EXPECT_EQ(0, (CQELString().*compare)(kNull, no_case));
            EXPECT_EQ(-1, (CQELString().*compare)("", no_case));
            EXPECT_EQ(1, (CQELString("a").*compare)(kNull, no_case));
            EXPECT_EQ(1, Sign((CQELString("a").*compare)("", no_case)));
        }
    }
    const CQELString ab("ab"), empty;
    EXPECT_FALSE(ab < empty);
    EXPECT_FALSE(empty < ab);
    EXPECT_FALSE(ab > empty);
    EXPECT_FALSE(empty > ab);
}

TEST(Comparison, IgnoresCaseOnRequest) {
    EXPECT_EQ(0, CQELString("ABC").Compare("abc", true));
    EXPECT_EQ(0, CQELString("ABC").CompareNoCase("aBc"));
    EXPECT_GT(0, CQELString("ABC").CompareNoCase("abd"));
    EXPECT_NE(0, CQELString("ABC").Compare("abc"));
    const RuntimeLocale russian(LC_ALL, "Russian_Russia.1251");
    EXPECT_EQ(0, CQELString(kit::Cp1251(u"ЁЖ").data()).CompareNoCase(kit::Cp1251(u"ёж").data()));
}

TEST(Comparison, PutsCharactersOfTwoBytesAboveSingleOnes) {
    const CQELString half_width("x\xB1"), kanji("x\x88\x9F");  // 0xB1 is above the byte 0x88
    EXPECT_TRUE(kanji < half_width);
    const MultiByteCodePage japanese(932);
    EXPECT_FALSE(kanji < half_width);
    EXPECT_TRUE(half_width < kanji);
    EXPECT_EQ(-1, Sign(half_width.Compare(kanji)));
}

TEST(Collation, FollowsTheRussianDictionary) {
    const struct {
        const char *a, *b;
        int order, no_case;
    } cases[] = {
        {"abc", "abc", 0, 0},
        {"abc", "ABC", -1, 0},
        {"ab", "a-b", -1, -1},
        {"a-b", "ac", -1, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.b);
        EXPECT_EQ(c.order, Sign(CQELString(c.a).Collate(c.b)));
        EXPECT_EQ(c.no_case, Sign(CQELString(c.a).Collate(c.b, true)));
        EXPECT_EQ(c.no_case, Sign(CQELString(c.a).CollateNoCase(c.b)));
    }
    const CQELString yo(kit::Cp1251(u"ёж").data());
    EXPECT_LT(0, yo.Collate(kit::Cp1251(u"еж").data()));  // by their bytes it is the other way
    EXPECT_GT(0, yo.Collate(kit::Cp1251(u"жж").data()));
    EXPECT_EQ(0, yo.CollateNoCase(kit::Cp1251(u"ЁЖ").data()));
    EXPECT_GT(0, yo.Collate(kit::Cp1251(u"ЁЖ").data()));
}

TEST(Collation, RestoresTheLocaleOfEveryCategory) {
    const RuntimeLocale mixed(LC_NUMERIC, "English_United States.1252");
    const std::string before = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE("C", before);
    CQELString("a").Collate("b");
    EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr));
}

// --- Search ----------------------------------------------------------------------------------

TEST(Search, FindsBytesAndTexts) {
    const CQELString s("abcabc\xFF");
    EXPECT_EQ(1, s.Find('b'));
    EXPECT_EQ(4, s.ReverseFind('b'));
    EXPECT_EQ(6, s.Find('\xFF'));
    EXPECT_EQ(-1, s.Find('B'));
    EXPECT_EQ(-1, s.Find('\0'));
    EXPECT_EQ(-1, CQELString().Find('a'));
    EXPECT_EQ(-1, CQELString().ReverseFind('a'));

    const struct {
        const char* text;
        const char* wanted;
        int at, no_case;
    } cases[] = {
        {"abcabc", "bc", 1, 1},     {"abcabc", "BC", -1, 1},
        {"abcabc", "abcabc", 0, 0}, {"abcabc", "abcabcd", -1, -1},
        {"abcabc", "cab", 2, 2},    {"aaab", "aab", 1, 1},
        {"abc", "", 0, 0},          {"", "", -1, -1},
        {"", "a", -1, -1},          {"abc", nullptr, -1, -1},
        {"", nullptr, -1, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.text << " / " << (c.wanted ? c.wanted : "(null)"));
        const CQELString text(c.text);
        EXPECT_EQ(c.at, text.Find(c.wanted));
        EXPECT_EQ(c.no_case, text.FindNocase(c.wanted));
        EXPECT_STREQ(c.text, text);
    }
}

TEST(Search, FindsCyrillicInAnyCase) {
    EXPECT_EQ(2, CQELString(kit::Cp1251(u"в ЛЕСУ").data()).FindNocase(kit::Cp1251(u"лес").data()));
    EXPECT_EQ(2, CQELString(kit::Cp1251(u"в лесу").data()).FindNocase(kit::Cp1251(u"ЛЕС").data()));
}

TEST(Search, SpansUpToTheFirstByteOfASet) {
    const CQELString s("key=value");
    EXPECT_STREQ("key", s.SpanExcluding("=:"));
    EXPECT_STREQ("key=value", s.SpanExcluding("#"));
    EXPECT_STREQ("key=value", s.SpanExcluding(""));
    EXPECT_STREQ("key=value", s.SpanExcluding(nullptr));
    EXPECT_FALSE(s.SpanExcluding("k").IsValid());
    EXPECT_STREQ("a", CQELString("a\xFF").SpanExcluding("\xFF"));
}

// --- Parts -----------------------------------------------------------------------------------

TEST(Parts, AreCutToTheText) {
    const CQELString s("abcde");
    const struct {
        CQELString part;
        const char* expected;
    } cases[] = {
        // clang-format off
        {s.Left(2), "ab"},   {s.Left(5), "abcde"},  {s.Left(INT_MAX), "abcde"},
        {s.Left(0), ""},     {s.Left(-1), ""},      {CQELString().Left(3), ""},
        {s.Right(2), "de"},  {s.Right(9), "abcde"}, {s.Right(INT_MAX), "abcde"},
        {s.Right(0), ""},    {s.Right(INT_MIN), ""}, {CQELString().Right(3), ""},
        {s.Mid(1, 3), "bcd"}, {s.Mid(-3, 2), "ab"}, {s.Mid(3, INT_MAX), "de"},
        {s.Mid(5, 1), ""},   {s.Mid(10, 2), ""},    {s.Mid(INT_MAX, INT_MAX), ""},
        {s.Mid(2, 0), ""},   {s.Mid(2, -1), ""},    {CQELString().Mid(0, 3), ""},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        EXPECT_STREQ(c.expected, c.part);
        EXPECT_EQ(*c.expected != '\0', c.part.IsValid());
    }
    EXPECT_NE(Text(s), Text(s.Left(5)));  // the whole text is a copy too
}

}  // namespace
