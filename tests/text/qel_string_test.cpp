#include "text/qel_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <string>
#include <tuple>

#include "base/cp1251.h"
#include "support/code_page.h"
#include "support/guarded_buffer.h"

namespace {

using S = CQELString;

const char* Text(const S& s) { return s; }

const char* const kNull = nullptr;

int Sign(int order) { return (order > 0) - (order < 0); }

TEST(String, OwnsNoBodyForAnEmptyText) {
    S null("x"), empty("x"), emptied("x"), loaded("x");
    null = kNull;
    empty = "";
    emptied.Empty();
    loaded.Load(nullptr, 3);
    // The last three lengths cannot be allocated.
    const S cases[] = {
        S(),
        S(kNull),
        S(""),
        S("abc", std::uint64_t{0}),
        S("", 5),
        S(kNull, 3),
        S("ab").Mid(1, 0),
        null,
        empty,
        emptied,
        loaded,
        S("abc", INT_MAX),
        S("abc", 0x100000001),
        S("abc", UINT64_MAX),
    };
    for (const S& s : cases) {
        SCOPED_TRACE(&s - cases);
        EXPECT_FALSE(s.IsValid());
        EXPECT_TRUE(s.IsEmpty());
        EXPECT_EQ(0, s.GetLength());
        EXPECT_STREQ("", s);
        EXPECT_TRUE(s.IsValidString());
    }
}

TEST(String, CopiesCountedBytesThatNoTerminatorEnds) {
    GuardedBuffer bytes("ab\0cd", 5);
    const S all(bytes.text(), 5);
    EXPECT_EQ(5, all.Length());
    EXPECT_EQ('d', all[4]);
    EXPECT_STREQ("d", S(bytes.text() + 4, 1));
    EXPECT_STREQ("A", S('A'));
    EXPECT_EQ(1, S('\0').Length());
    EXPECT_EQ(1, (S() += '\0').Length());
    S s;
    s.Load(bytes.data(), 5);  // up to the first zero byte
    EXPECT_EQ(2, s.Length());
    s.Load(bytes.data() + 3, 2);
    EXPECT_STREQ("cd", s);
    s.Load(bytes.data() + 2, 3);
    EXPECT_FALSE(s.IsValid());
}

TEST(String, SharesItsBodyWithCopiesUntilOneIsAssigned) {
    S first("text"), second(first), third;
    third = first;
    EXPECT_EQ(Text(first), Text(second));
    EXPECT_EQ(Text(first), Text(third));
    first = "other";
    third.Empty();
    EXPECT_STREQ("text", second);
    EXPECT_STREQ("other", first);
    const char* const own = second;
    second = static_cast<const S&>(second);
    second = own;
    EXPECT_EQ(own, Text(second));
    second = own + 2;
    EXPECT_STREQ("xt", second);
}

TEST(String, ReadsZeroOutsideItsText) {
    const S s("ab");
    EXPECT_EQ('b', s[1]);
    EXPECT_EQ('b', s[std::uint64_t{1}]);
    for (int index : {2, 3, INT_MAX, -1, INT_MIN}) EXPECT_EQ('\0', s[index]) << index;
    EXPECT_EQ('\0', s[std::uint64_t{0x100000000}]);
    EXPECT_EQ('\0', S()[0]);
}

TEST(String, SavesTheTextItself) {
    const S texts[] = {"abc", ""};
    for (const S& s : texts) {
        unsigned int n = 77;
        unsigned char* data = nullptr;
        s.Save(n, data);
        EXPECT_EQ(static_cast<unsigned int>(s.Length()), n);
        EXPECT_EQ(Text(s), reinterpret_cast<char*>(data));
    }
}

TEST(Concatenation, TakesItsOwnTextAndZeroBytes) {
    EXPECT_EQ(5, (S("a\0b", 3) + "cd").Length());
    S s("ab");
    s += s;
    s += Text(s) + 3;
    EXPECT_STREQ("ababb!", s + '!');
    EXPECT_NE(Text(s), Text(s.Left(5)));  // the whole text is a copy too
}

TEST(Concatenation, SharesTheRightSideOnlyWhenTheLeftIsEmpty) {
    const S right("right");
    S empty, left("left");
    empty += right;
    EXPECT_EQ(Text(right), Text(empty));
    EXPECT_EQ(Text(right), Text(S() + right));
    const S copy(left);
    left += S();  // nothing to add, and yet a body of its own
    EXPECT_STREQ("left", left);
    EXPECT_NE(Text(copy), Text(left));
}

TEST(Comparison, EqualityTellsEmptyFromAnEmptyText) {
    EXPECT_FALSE(S() == "" || S("a") == kNull || S("a") == S() || "a" == S("b"));
    EXPECT_TRUE(S() == kNull && S() == S() && "a" == S("a"));
    EXPECT_TRUE("a" != S("b") && S("a") != S("b") && S("a") != "b");
}

TEST(Comparison, LetsEmptinessDecideBeforeAnyText) {
    using Member = int (S::*)(const char*, bool) const;
    for (Member compare : {&S::Compare, &S::Collate}) {
        for (bool no_case : {false, true}) {
            EXPECT_EQ(0, (S().*compare)(kNull, no_case));
            EXPECT_EQ(-1, (S().*compare)("", no_case));
            EXPECT_EQ(1, (S("a").*compare)(kNull, no_case));
            EXPECT_EQ(1, Sign((S("a").*compare)("", no_case)));
        }
    }
    const S ab("ab"), empty;
    EXPECT_FALSE(ab < empty || empty < ab || ab > empty || empty > ab);
}

TEST(Comparison, EndsAtAZeroByteAndIgnoresCaseOnRequest) {
    EXPECT_EQ(0, S("a\0b", 3).Compare("a"));
    EXPECT_TRUE(S("a\0b", 3) == S("a\0c", 3));
    EXPECT_EQ(0, S("ABC").Compare("abc", true));
    EXPECT_EQ(0, S("ABC").CompareNoCase("aBc"));
    EXPECT_GT(0, S("ABC").CompareNoCase("abd"));
    const RuntimeLocale russian(LC_ALL, "Russian_Russia.1251");
    EXPECT_EQ(0, S(kit::Cp1251(u"ЁЖ").data()).CompareNoCase(kit::Cp1251(u"ёж").data()));
}

TEST(Comparison, PutsCharactersOfTwoBytesAboveSingleOnes) {
    const S half_width("x\xB1"), kanji("x\x88\x9F");  // 0xB1 is above the byte 0x88
    EXPECT_TRUE(kanji < half_width);
    const MultiByteCodePage japanese(932);
    EXPECT_TRUE(half_width < kanji);
    EXPECT_EQ(-1, Sign(half_width.Compare(kanji)));
}

TEST(Collation, FollowsTheRussianDictionary) {
    constexpr auto kYo = kit::Cp1251(u"ёж"), kYe = kit::Cp1251(u"еж"), kZhe = kit::Cp1251(u"жж");
    constexpr auto kLargeYo = kit::Cp1251(u"ЁЖ");
    const char *const yo = kYo.data(), *const ye = kYe.data(), *const zhe = kZhe.data();
    const std::tuple<const char*, const char*, int, int> cases[] = {
        {"abc", "abc", 0, 0},         {"abc", "ABC", -1, 0}, {"ab", "a-b", -1, -1},
        {"a-b", "ac", -1, -1},        {yo, ye, 1, 1},        {yo, zhe, -1, -1},
        {yo, kLargeYo.data(), -1, 0},
    };
    const RuntimeLocale mixed(LC_NUMERIC, "English_United States.1252");
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const auto& [a, b, order, no_case] : cases) {
        EXPECT_EQ(order, Sign(S(a).Collate(b))) << a << ' ' << b;
        EXPECT_EQ(no_case, Sign(S(a).Collate(b, true))) << a << ' ' << b;
        EXPECT_EQ(no_case, Sign(S(a).CollateNoCase(b))) << a << ' ' << b;
    }
    EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr));  // of every category
}

TEST(Search, FindsInAnyCase) {
    const std::tuple<const char*, const char*, int> cases[] = {
        {"abAB", "BA", 1}, {"aAab", "AB", 2}, {"abc", "abcd", -1}, {"abc", "", 0},
        {"", "", -1},      {"", "a", -1},     {"abc", kNull, -1},  {"", kNull, -1},
    };
    for (const auto& [text, wanted, at] : cases) EXPECT_EQ(at, S(text).FindNocase(wanted)) << text;
    const S forest(kit::Cp1251(u"в ЛЕСу").data());
    EXPECT_EQ(2, forest.FindNocase(kit::Cp1251(u"леС").data()));
    EXPECT_STREQ(kit::Cp1251(u"в ЛЕСу").data(), forest);
    EXPECT_EQ(-1, S("ab").Find('\0'));
}

}  // namespace
