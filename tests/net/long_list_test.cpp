#include "net/long_list.h"

#include <gtest/gtest.h>

#include <string>

#include "net/range_lists.h"
#include "support/guarded_buffer.h"

namespace {

TEST(LongList, IndexesFromZeroAndSharesOneDummy) {
    auto list = Addresses({7, 8});
    list[1] = 9;
    EXPECT_EQ(Addresses({7, 9}), list);
    CQELLongList empty, one(5);
    EXPECT_EQ(5u, one[0]);
    EXPECT_EQ(&empty[0], &list[2]);
    EXPECT_EQ(&empty[0], &one[-1]);
}

TEST(LongList, AddsWhatIsMissingAndTakesAwayAllThatIsEqual) {
    auto list = Addresses({1, 1, 2});
    list += Addresses({3, 2, 3, 4, 1});
    EXPECT_EQ(Addresses({1, 1, 2, 3, 4}), list);
    list += list;
    EXPECT_EQ(Addresses({1, 1, 2, 3, 4}), list);
    list -= Addresses({1, 4, 4, 9});
    EXPECT_EQ(Addresses({2, 3}), list);
    list -= list;
    EXPECT_TRUE(list.empty());
}

TEST(LongList, TakesAnotherOverButKeepsItsFirstAddressFirst) {
    const struct {
        CQELLongList list, b;
        bool changed;
        CQELLongList result;
    } cases[] = {
        {Addresses({}), Addresses({}), true, Addresses({})},
        {Addresses({}), Addresses({1, 2}), true, Addresses({1, 2})},
        {Addresses({1, 2}), Addresses({}), false, Addresses({1, 2})},
        {Addresses({1, 2}), Addresses({1, 2}), false, Addresses({1, 2})},
        {Addresses({1, 2}), Addresses({2, 1, 3, 1}), true, Addresses({1, 2, 3})},
        {Addresses({1, 2}), Addresses({1, 3, 1}), true, Addresses({1, 3, 1})},
        {Addresses({1, 2}), Addresses({3, 4}), true, Addresses({3, 4})},
    };
    for (const auto& c : cases) {
        auto list = c.list;
        EXPECT_EQ(c.changed, list.ChangeRemainFirst(c.b));
        EXPECT_EQ(c.result, list);
    }
    auto list = Addresses({1, 2});
    EXPECT_FALSE(list.ChangeRemainFirst(list));
}

TEST(LongList, ReadsTheValidTokensOfAText) {
    const struct {
        const char* text;
        char separator;
        CQELLongList result;
    } cases[] = {
        {nullptr, ';', Addresses({})},
        {"", ';', Addresses({})},
        {"1.2.3.4; 5.6.7.8;;bad;9.9.9.9", ';', Addresses({0x01020304, 0x05060708, 0x09090909})},
        {"1.2.3.4", ';', Addresses({0x01020304})},
        {";1.2.3.4;", ';', Addresses({0x01020304})},
        {" 1 . 2.3. 4 ,1.2.3.4", ',', Addresses({0x01020304, 0x01020304})},
        {"1.2.3.4 5.6.7.8", ' ', Addresses({0x01020304, 0x05060708})},
        {"1.2.3.4\t;5.6.7.8", ';', Addresses({0x05060708})},
        {"1.2.3.4;5.6.7.8", ',', Addresses({})},
        {"1.2.3.4;5.6.7.8", '.', Addresses({})},
        {"1.2.3.4;5.6.7.8", '\0', Addresses({})},
        {"1.2.3.4", '\0', Addresses({0x01020304})},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text ? c.text : "(null)");
        auto list = Addresses({1, 2, 3});
        EXPECT_EQ(&list, &list.FromString(c.text, c.separator));
        EXPECT_EQ(c.result, list);
    }
}

TEST(LongList, SkipsTokensThatAreTooLong) {
    const std::string longest = std::string(292, ' ') + "1.2.3.4";  // 299 characters
    GuardedBuffer text(
        (longest + ";" + longest + " ;0" + std::string(400, '0') + "1.1.1.1;2.2.2.2").c_str());
    CQELLongList list;
    list.FromString(text.text(), ';');
    EXPECT_EQ(Addresses({0x01020304, 0x02020202}), list);
}

}  // namespace
