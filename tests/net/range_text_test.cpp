// The text forms, through Boost inside the library.

#include <gtest/gtest.h>

#include <new>

#include "net/ip_string.h"
#include "net/range_lists.h"
#include "support/formats_page.h"
#include "text/qel_string.h"

namespace {

const auto kNone = Ranges({});
const auto kOne = Ranges({{0x01000001, 0x01000009}});
const auto kThree = Ranges({{0x01000001, 0x01000009}, {0xFFFFFFFF, 0}, {0x0A000002, 0x0A000001}});

TEST(RangeText, OfARangeHasBothEndsUnlessItIsAPoint) {
    EXPECT_EQ("1.0.0.1-1.0.0.9", kOne.front().GetItemIpString(1));
    EXPECT_EQ("10.0.0.2 - 10.0.0.1", CQELRangeIP(0x0A000002, 0x0A000001).GetItemIpString(2));
    for (const ulong32 style : {0, 1, 2}) {
        EXPECT_EQ("10.0.0.1", CQELRangeIP(0x0A000001, 0).GetItemIpString(style));
        EXPECT_EQ("255.255.255.255", CQELRangeIP(0xFFFFFFFF, 0xFFFFFFFF).GetItemIpString(style));
    }
}

TEST(RangeText, RunsTogetherInAnUnknownStyle) {
    EXPECT_EQ("1.0.0.11.0.0.9", kOne.front().GetItemIpString(0));
    EXPECT_EQ("1.0.0.11.0.0.9", kOne.front().GetItemIpString(3));
}

TEST(RangeText, OfAListNamesTheFirstOrAll) {
    EXPECT_EQ("0.0.0.0", kNone.GetItemIpString());
    EXPECT_EQ("1.0.0.1-1.0.0.9", kOne.GetItemIpString());
    EXPECT_EQ("1.0.0.1-1.0.0.9...", kThree.GetItemIpString());
    EXPECT_EQ("0.0.0.0", kNone.GetRangeListIpString());
    EXPECT_EQ("1.0.0.1-1.0.0.9, 255.255.255.255, 10.0.0.2-10.0.0.1", kThree.GetRangeListIpString());
    EXPECT_EQ("rl: size=0", kNone.DumpRangeIpList(1));
    EXPECT_EQ("rl: size=3 1.0.0.1-1.0.0.9, 255.255.255.255-0.0.0.0, 10.0.0.2-10.0.0.1",
              kThree.DumpRangeIpList(1));
    EXPECT_EQ("1.0.0.1 - 1.0.0.9; 255.255.255.255; 10.0.0.2 - 10.0.0.1; ",
              kThree.DumpRangeIpList(2));
    EXPECT_EQ("", kNone.DumpRangeIpList(2) + kThree.DumpRangeIpList(0) + kThree.DumpRangeIpList(3));
    // As docs/formats.md shows.
    const auto list = Ranges({{0x0A000000, 0x0A0000FF}, {0xC0A8010A, 0}});
    EXPECT_EQ(Fenced("style=1"), list.DumpRangeIpList(1));
    EXPECT_EQ(Fenced("style=2"), list.DumpRangeIpList(2));
}

TEST(RangeText, AppendsADumpOfIdentifiersAndAddresses) {
    CQELString out("log: ");
    Ranges({{0x2A, 0x0A000001}, {0xDEADBEEF, 0x0A000002}}).DumpIDIPList(out);
    kNone.DumpIDIPList(out);
    EXPECT_STREQ("log: rl: size=2 0000002A-10.0.0.1, DEADBEEF-10.0.0.2\r\nrl: size=0\r\n", out);
}

const auto kAddresses = Addresses({0x01020304, 0xFFFFFFFF, 0});

TEST(RangeText, JoinsAddressesByFlags) {
    const std::pair<ulong32, const char*> cases[] = {
        {0, "1.2.3.4 255.255.255.255 0.0.0.0"},
        {1, "1.2.3.4, 255.255.255.255, 0.0.0.0"},
        {2, "        1.2.3.4 255.255.255.255         0.0.0.0"},
        {3, "        1.2.3.4, 255.255.255.255,         0.0.0.0"},
        {5, "1.2.3.4;255.255.255.255;0.0.0.0"},
        {6, "        1.2.3.4;255.255.255.255;        0.0.0.0"},
    };
    for (const auto& [flags, text] : cases) {
        EXPECT_EQ(text, kAddresses.FormatIPString(flags)) << flags;
        EXPECT_EQ("0.0.0.0", CQELLongList().FormatIPString(flags)) << flags;
    }
}

TEST(RangeText, GivesTheFlagOfFullTextTwoRoles) {
    EXPECT_EQ("1.2.3.4         255.255.255.255 0.0.0.0        ",
              kAddresses.GetFullIPString(true, 1));
    EXPECT_EQ("        1.2.3.4 255.255.255.255         0.0.0.0",
              kAddresses.GetFullIPString(false, 1));
    for (const int mode : {0, 2, -1}) {
        EXPECT_EQ("1.2.3.4, 255.255.255.255, 0.0.0.0", kAddresses.GetFullIPString(true, mode));
        EXPECT_EQ("1.2.3.4 255.255.255.255 0.0.0.0", kAddresses.GetFullIPString(false, mode));
    }
    EXPECT_EQ("0.0.0.0", CQELLongList().GetFullIPString(true, 1));
}

TEST(IpString, HoldsTheTextOfAnAddress) {
    EXPECT_TRUE(CQELIPString().IsEmpty());
    CQELIPString plain(0x0A000001, 0), padded(0x0A000001, 1), copy(plain);
    EXPECT_STREQ("010.000.000.001", CQELIPString(std::move(padded)));
    EXPECT_EQ(&plain, &(plain = "any text"));
    EXPECT_STREQ("any text", plain);
    EXPECT_STREQ("10.0.0.1", copy);
    copy = plain;
    copy.Format("%s!", "formatted");  // the inherited engines
    EXPECT_STREQ("formatted!", copy);
}

// A thousandfold of what any address space holds, so that no setting of the system lets it pass.
TEST(GetList, EndsInTheAllocatorsException) {
    CQELRangeIPList list;
    for (int i = 0; i < 5000; ++i) list.emplace_back(0, 0xFFFFFFFF);
    auto out = Addresses({7});
    EXPECT_THROW(list.GetList(out), std::bad_alloc);
    EXPECT_EQ(Addresses({7}), out);
}

}  // namespace
