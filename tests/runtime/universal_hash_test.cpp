#include "runtime/universal_hash.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <map>
#include <new>
#include <random>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "support/guarded_buffer.h"

namespace {

// The caller's variable, with the table that is in it.
struct Owner {
    Owner(int capacity, int key_size, int value_size) {
        new CQELUniversalHash(capacity, key_size, value_size, &table);
    }
    ~Owner() { delete table; }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    CQELUniversalHash* operator->() { return table; }

    CQELUniversalHash* table = nullptr;
};

int Add(Owner& owner, int key, int value) { return owner->Add(&key, &value); }
int Find(Owner& owner, int key) {
    int value = -1;
    owner->Find(&key, &value);
    return value;
}
int Remove(Owner& owner, int key) { return owner->Remove(&key, nullptr); }
char* AddressOf(Owner& owner, int key) { return static_cast<char*>((*owner.table)[&key]); }

}  // namespace

TEST(UniversalHash, RefusesSizesThatCannotBeAndNull) {
    const std::tuple<int, int, int> cases[] = {
        {0, 4, 4},       {-1, 4, 4},       {10, 0, 4},          {10, -4, 4},
        {10, 4, 0},      {10, 4, INT_MIN}, {INT_MAX, 1, 1},     {1789569707, 1, 1},
        {1, INT_MAX, 1}, {1, 1, INT_MAX},  {1, 1, INT_MAX - 8},
    };
    for (const auto& [capacity, key_size, value_size] : cases) {
        int anything;
        auto* table = reinterpret_cast<CQELUniversalHash*>(&anything);
        new CQELUniversalHash(capacity, key_size, value_size, &table);
        EXPECT_EQ(nullptr, table) << capacity << ' ' << key_size << ' ' << value_size;
    }
    Owner owner(10, 4, 4);
    EXPECT_EQ(2, owner->Add(nullptr, &owner));
    EXPECT_EQ(2, owner->Add(&owner, nullptr));
    EXPECT_EQ(1, owner->Find(nullptr, nullptr));
    EXPECT_EQ(1, owner->Remove(nullptr, nullptr));
    EXPECT_EQ(nullptr, (*owner.table)[nullptr]);
}

// 1200 buckets. Outside four bytes a byte that n others follow is rotated left by 7 n.
TEST(UniversalHash, PutsKeysIntoTheirBuckets) {
    const std::pair<std::string, int> cases[] = {
        {std::string("\x11\0\0\0", 4), 17},
        {std::string("\xFF\xFF\xFF\xFF", 4), 495},  // 4294967295 = 3579139 * 1200 + 495
        {"\xFF", 255},
        {"\x01\x02", 130},                            // 128 ^ 2
        {"\x7F\x80", 528},                            // 0x3F80 ^ 0x80 = 13 * 1200 + 528: unsigned
        {std::string("\x80\0\0\0\0", 5), 8},          // 2^(7 + 28) comes round to 2^3
        {std::string("\x01\0\0\0\0\0\0\0", 8), 272},  // rotated by 49: 2^17 = 109 * 1200 + 272
        {std::string("\x03", 1) + std::string(15, '\0'), 336},  // by 105: 3 * 2^9 = 1536
        {std::string("\x01", 1) + std::string(31, '\0'), 32},   // by 217: 2^25
    };
    for (const auto& [key, bucket] : cases) {
        SCOPED_TRACE(testing::PrintToString(key));
        Owner owner(1000, static_cast<int>(key.size()), 1);
        ASSERT_EQ(0, owner->Add(key.data(), "v"));
        std::string found(key.size(), '?');
        EXPECT_EQ(0, owner->FindByIndex(bucket, found.data(), nullptr));
        EXPECT_EQ(key, found);
    }
}

TEST(UniversalHash, GrowsInTheCallersVariable) {
    Owner owner(10, 4, 4);
    for (int key = 0; key < 10; ++key) ASSERT_EQ(0, Add(owner, key, 100 + key));
    const auto* full = owner.table;
    EXPECT_EQ(12, owner->GetMaxIndex());
    // The value may lie in the table that is replaced.
    const int key = 10;
    EXPECT_EQ(0, owner->Add(&key, AddressOf(owner, 3)));
    EXPECT_NE(full, owner.table);
    EXPECT_EQ(24, owner->GetMaxIndex());
    EXPECT_EQ(103, Find(owner, 10));
}

TEST(UniversalHash, GrowsEvenForAKeyThatIsPresent) {
    Owner owner(1, 4, 4);
    EXPECT_EQ(0, Add(owner, 5, 50));
    EXPECT_EQ(1, Add(owner, 5, 51));
    EXPECT_EQ(2, owner->GetMaxIndex());
    EXPECT_EQ(50, Find(owner, 5));
}

TEST(UniversalHash, ReusesRemovedNodesLastOneFirst) {
    Owner owner(10, 4, 4);
    for (int key = 0; key < 5; ++key) Add(owner, key, key);
    char* const first = AddressOf(owner, 0);
    EXPECT_EQ(0, Remove(owner, 1));
    EXPECT_EQ(0, Remove(owner, 3));
    EXPECT_EQ(1, Remove(owner, 3));
    constexpr int kNodeSize = 16;
    for (const auto& [key, node] :
         {std::pair(20, 3), {21, 1}, {22, 5}, {23, 6}}) {  // 5: never used
        ASSERT_EQ(0, Add(owner, key, 0));
        EXPECT_EQ(first + node * kNodeSize, AddressOf(owner, key)) << key;
    }
}

// 5, 17 and 29 share bucket 5 of 12.
TEST(UniversalHash, ShowsTheNewestOfABucket) {
    Owner owner(10, 4, 4);
    for (int key : {5, 17, 29}) Add(owner, key, 10 * key);
    int key = -1, value = -1;
    EXPECT_EQ(0, owner->FindByIndex(5, &key, &value));
    EXPECT_EQ(29, key);
    EXPECT_EQ(290, value);
    EXPECT_EQ(0, owner->FindByIndex(5, nullptr, nullptr));
    for (int index : {-1, 0, 4, 12, INT_MAX, INT_MIN}) {
        key = value = -1;
        EXPECT_EQ(1, owner->FindByIndex(index, &key, &value)) << index;
        EXPECT_EQ(-1, key) << index;
        EXPECT_EQ(-1, value) << index;
    }
}

TEST(UniversalHash, SharesItsNodesWithACopy) {
    Owner owner(10, 4, 4), other(5, 8, 8);
    Add(owner, 1, 100);
    // Neither copy is ever destroyed: that would free the nodes of the original.
    alignas(CQELUniversalHash) unsigned char room[2][sizeof(CQELUniversalHash)];
    auto* const copy = new (room[0]) CQELUniversalHash(*owner.table);
    auto* const assigned = new (room[1]) CQELUniversalHash(*other.table);
    *assigned = *owner.table;
    const int key = 1;
    EXPECT_EQ((*owner.table)[&key], (*copy)[&key]);
    EXPECT_EQ((*owner.table)[&key], (*assigned)[&key]);
    EXPECT_EQ(12, assigned->GetMaxIndex());
}

// Keys and values end at an inaccessible page; sizes below, at and above those made for speed.
TEST(UniversalHash, TouchesNoByteBehindKeysAndValues) {
    for (int size : {1, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 64, 100}) {
        SCOPED_TRACE(size);
        const auto bytes = static_cast<std::size_t>(size);
        Owner owner(2, size, size);
        for (char c : {'a', 'b', 'c', 'd', 'e'}) {
            const std::string content(bytes, c);
            GuardedBuffer key(content.data(), bytes), value(content.data(), bytes), out(bytes);
            EXPECT_EQ(0, owner->Add(key.data(), value.data()));
            EXPECT_EQ(0, owner->Find(key.data(), out.data()));
            EXPECT_EQ(content, std::string(out.text(), bytes));
            std::memset(out.data(), 0, bytes);
            EXPECT_EQ(0, owner->Remove(key.data(), out.data()));
            EXPECT_EQ(content, std::string(out.text(), bytes));
            EXPECT_EQ(0, owner->Add(key.data(), value.data()));
        }
        GuardedBuffer key(bytes), value(bytes);
        for (int i = 0; i < owner->GetMaxIndex(); ++i) {
            if (owner->FindByIndex(i, key.data(), value.data()) != 0) continue;
            EXPECT_EQ(0, std::memcmp(key.data(), value.data(), bytes));
        }
    }
}

// --- Against a plain map ------------------------------------------------------------------------

namespace {

// The table's results, from a map; the bucket of a key, byte by byte.
class Model {
public:
    Model(int capacity, int key_size, int value_size)
        : owner_(capacity, key_size, value_size), capacity_(capacity), key_size_(key_size) {}

    void Add(const std::string& key, const std::string& value) {
        const bool grows = static_cast<int>(entries_.size()) == capacity_;
        const bool added = entries_.try_emplace(key, Entry{value, ++time_}).second;
        ASSERT_EQ(added ? 0 : 1, owner_->Add(key.data(), value.data()));
        if (grows) Regrow(key, added);
    }
    // Find, or Remove, which finds the value for the last time.
    void Take(const std::string& key, bool remove) {
        std::string value(64, '?'), expected = value;
        const auto found = entries_.find(key);
        const bool is_absent = found == entries_.end();
        if (!is_absent) expected.replace(0, found->second.value.size(), found->second.value);
        EXPECT_EQ(is_absent, (*owner_.table)[key.data()] == nullptr);
        ASSERT_EQ(is_absent, remove ? owner_->Remove(key.data(), value.data())
                                    : owner_->Find(key.data(), value.data()));
        ASSERT_EQ(expected, value);
        if (remove && !is_absent) entries_.erase(found);
    }
    // Every bucket shows its newest entry, and nothing else is in the table.
    void CheckBuckets() {
        std::vector<std::pair<int, std::string>> newest(static_cast<std::size_t>(Buckets()));
        for (const auto& [key, entry] : entries_) {
            auto& bucket = newest[Bucket(key)];
            if (entry.time > bucket.first) bucket = {entry.time, key};
        }
        ASSERT_EQ(Buckets(), owner_->GetMaxIndex());
        std::string key(static_cast<std::size_t>(key_size_), '?');
        for (int i = 0; i < Buckets(); ++i) {
            const auto& expected = newest[static_cast<std::size_t>(i)];
            ASSERT_EQ(expected.first == 0, owner_->FindByIndex(i, key.data(), nullptr)) << i;
            ASSERT_TRUE(expected.first == 0 || expected.second == key) << i;
        }
    }

private:
    struct Entry {
        std::string value;
        int time;  // of its insertion
    };

    int Buckets() const { return capacity_ + capacity_ / 5; }

    std::size_t Bucket(const std::string& key) const {
        std::uint32_t hash = 0;
        if (key.size() == 4) {
            std::memcpy(&hash, key.data(), 4);
        } else {
            for (unsigned char byte : key) hash = (hash << 7 | hash >> 25) ^ byte;
        }
        return hash % static_cast<std::uint32_t>(Buckets());
    }

    // Growing inserts everything anew, in the order of the nodes; a new key comes last.
    void Regrow(const std::string& new_key, bool added) {
        capacity_ *= 2;
        std::map<void*, Entry*> by_address;
        for (auto& [key, entry] : entries_) {
            if (!added || key != new_key) by_address[(*owner_.table)[key.data()]] = &entry;
        }
        for (const auto& [address, entry] : by_address) entry->time = ++time_;
        if (added) entries_[new_key].time = ++time_;
    }

    Owner owner_;
    int capacity_;
    int key_size_;
    int time_ = 0;
    std::unordered_map<std::string, Entry> entries_;
};

}  // namespace

TEST(UniversalHash, AgreesWithAMapOverAMillionOperations) {
    std::mt19937 random(20240607);
    const struct {
        int capacity, key_size, value_size, operations;
        unsigned keys;  // so many different ones
    } cases[] = {
        {1, 4, 8, 200000, 3000},  {10, 16, 64, 200000, 300},       {3, 32, 4, 200000, 3000},
        {40, 8, 7, 100000, 100},  {1, 7, 1, 100000, 1000},         {100, 1, 4, 50000, 256},
        {7, 33, 8, 50000, 30000}, {50000, 4, 4, 100000, 1u << 31},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "key size " << c.key_size << ", " << c.keys << " keys");
        Model model(c.capacity, c.key_size, c.value_size);
        for (int i = 0; i < c.operations && !testing::Test::HasFatalFailure(); ++i) {
            std::string key(static_cast<std::size_t>(c.key_size), '\0');
            const std::uint32_t number = random() % c.keys;
            std::memcpy(key.data(), &number, key.size() < 4 ? key.size() : 4);
            if (key.size() > 4) key.back() = static_cast<char>(number % 251);
            if (random() % 8 < 3) {
                const auto fill = static_cast<char>(random());
                model.Add(key, std::string(static_cast<std::size_t>(c.value_size), fill));
            } else {
                model.Take(key, random() % 5 < 2);
            }
            if (i % (c.operations / 10) == 0) model.CheckBuckets();
        }
        model.CheckBuckets();
    }
}
