#include "net/long_list.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

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

TEST(LongList, TakesAnotherOverButKeepsItsFirstAddressFirst) {
    using A = std::vector<ulong32>;
    const std::tuple<A, A, bool, A> cases[] = {
        {{}, {}, true, {}},
        {{}, {1, 2}, true, {1, 2}},
        {{1, 2}, {}, false, {1, 2}},
        {{1, 2}, {1, 2}, false, {1, 2}},
        {{1, 2}, {2, 1, 3, 1}, true, {1, 2, 3}},
        {{1, 2}, {1, 3, 1}, true, {1, 3, 1}},
        {{1, 2}, {3, 4}, true, {3, 4}},
    };
    for (const auto& [before, b, changed, result] : cases) {
        auto list = Addresses(before);
        EXPECT_EQ(changed, list.ChangeRemainFirst(Addresses(b)));
        EXPECT_EQ(Addresses(result), list);
        EXPECT_EQ(list.empty(), list.ChangeRemainFirst(list));
    }
}

TEST(LongList, ReadsTheValidTokensOfAText) {
    constexpr ulong32 a = 0x01020304, b = 0x05060708;
    const std::tuple<const char*, char, std::vector<ulong32>> cases[] = {
        {nullptr, ';', {}},
        {"", ';', {}},
        {";1.2.3.4;", ';', {a}},
        {"1.2.3.4", '\0', {a}},
        {"1.2.3.4 5.6.7.8", ' ', {a, b}},
        {"1.2.3.4;5.6.7.8", ',', {}},
        {"1.2.3.4;5.6.7.8", '.', {}},
        {"1.2.3.4;5.6.7.8", '\0', {}},
        {"1.2.3.4\t;5.6.7.8", ';', {b}},
        {"1 . 2.3. 4 ,1.2.3.4", ',', {a, a}},
        {" 1.2.3.4;;bad;5.6.7.8", ';', {a, b}},
    };
    for (const auto& [text, separator, result] : cases) {
        auto list = Addresses({1, 2, 3});
        EXPECT_EQ(&list, &list.FromString(text, separator));
        EXPECT_EQ(Addresses(result), list) << (text ? text : "(null)");
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
