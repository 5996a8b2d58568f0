#include "net/std_list_safe.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "net/range_lists.h"
#include "support/formats_page.h"
#include "support/guarded_buffer.h"

namespace {

using Bytes = std::vector<unsigned char>;

template <typename T>
Bytes Save(StdListSafe<T>& list) {
    unsigned int length = 0;
    unsigned char* data = nullptr;
    list.Save(length, data);
    return Bytes(data, data + length);
}

// 10.0.0.0-10.0.0.255 and the point 192.168.1.10.
const auto kRanges = Ranges({{0x0A000000, 0x0A0000FF}, {0xC0A8010A, 0}});
const Bytes kRangeForm = {
    0x00, 0x00, 0x00, 0x0A, 0xFF, 0x00, 0x00, 0x0A,  //
    0x0A, 0x01, 0xA8, 0xC0, 0x00, 0x00, 0x00, 0x00,  //
};
const Bytes kAddressForm = {0x04, 0x03, 0x02, 0x01, 0xFF, 0xFF, 0xFF, 0xFF};

TEST(ListForm, IsLittleEndianWithoutACount) {
    const std::string dump = DumpedBytes("dump=ranges");  // of docs/formats.md
    EXPECT_EQ(kRangeForm, Bytes(dump.begin(), dump.end()));
    auto ranges = kRanges;
    auto addresses = Addresses({0x01020304, 0xFFFFFFFF});
    EXPECT_EQ(kRangeForm, Save(ranges));
    EXPECT_EQ(kAddressForm, Save(addresses));
    EXPECT_EQ(8, ranges.Sizeof());
    EXPECT_EQ(4, addresses.Sizeof());

    for (unsigned int length = 0; length <= 16; ++length) {  // to the last whole element
        GuardedBuffer cut(kRangeForm.data(), length);
        ranges.Load(cut.data(), length);
        EXPECT_EQ(length / 8, ranges.size());
        addresses.Load(cut.data(), length);
        EXPECT_EQ(length / 4, addresses.size());
    }
    EXPECT_EQ(Bits(kRanges), Bits(ranges));
    EXPECT_EQ(Addresses({0x0A000000, 0x0A0000FF, 0xC0A8010A, 0}), addresses);
}

TEST(ListForm, OfAnEmptyListIsNothing) {
    CQELLongList list;
    unsigned char untouched = 0;
    unsigned char* data = &untouched;
    unsigned int length = 99;
    list.Save(length, data);
    EXPECT_EQ(0u, length);
    EXPECT_EQ(&untouched, data);
    list = Addresses({1, 2});
    list.Load(nullptr, 8);
    EXPECT_TRUE(list.empty());
}

TEST(ListForm, StaysWithItsListUntilTheNextSave) {
    auto list = Addresses({0x01020304});
    unsigned int length;
    unsigned char* data;
    list.Save(length, data);
    auto copy = list;
    CQELLongList assigned;
    assigned = list;
    unsigned char* copy_data;
    copy.Save(length, copy_data);
    EXPECT_NE(data, copy_data);
    copy.clear();
    copy.Save(length, copy_data);  // frees the copy's buffer only
    EXPECT_EQ(0x04, data[0]);
    list.push_back(5);
    list.Load(data, 4);  // a list may read what it saved itself
    EXPECT_EQ(Addresses({0x01020304}), list);
    const CQELLongList moved = std::move(list);
    EXPECT_EQ(0x01, data[3]);  // the buffer moves along
    EXPECT_EQ(Addresses({0x01020304}), moved);
    EXPECT_EQ(moved, assigned);
}

}  // namespace
