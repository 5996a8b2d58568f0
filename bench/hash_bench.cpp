// The hash table beside those that one would use instead.
//   hash insert  fills a new table that was told the number of entries
//   hash growth  fills a table that was not
//   hash hit     looks up keys that are there, in random order, and copies their values
//   hash miss    looks up keys that are not there
//   hash remove  empties the table, in random order
// All figures are for one entry. Keys are random bytes; a case is "key size, value size, entries".

#include <absl/container/flat_hash_map.h>
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <boost/functional/hash.hpp>
#include <boost/unordered_map.hpp>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <unordered_map>
#include <vector>

#include "runtime/universal_hash.h"

namespace {

constexpr int kMaxEntries = 1000000;

template <int kSize>
using Bytes = std::array<unsigned char, kSize>;
// A key of four bytes is a number for those that ask for its type.
template <int kSize>
using KeyOf = std::conditional_t<kSize == 4, std::uint32_t, Bytes<kSize>>;

struct BytesHash {
    template <std::size_t kSize>
    std::size_t operator()(const std::array<unsigned char, kSize>& key) const {
        return std::hash<std::string_view>()(
            std::string_view(reinterpret_cast<const char*>(key.data()), kSize));
    }
};

// --- Contenders: Table(n) has room for n entries, Table() says nothing of their number ----------

template <int kKey, int kValue>
class Qelkit {
public:
    using Key = KeyOf<kKey>;
    using Value = Bytes<kValue>;
    explicit Qelkit(int room = 16) { new CQELUniversalHash(room, kKey, kValue, &table_); }
    ~Qelkit() { delete table_; }
    Qelkit(const Qelkit&) = delete;
    Qelkit& operator=(const Qelkit&) = delete;
    void Add(const Key& key, const Value& value) { table_->Add(&key, &value); }
    bool Find(const Key& key, Value& value) const { return table_->Find(&key, &value) == 0; }
    void Remove(const Key& key) { table_->Remove(&key, nullptr); }

private:
    CQELUniversalHash* table_ = nullptr;
};

template <typename Map>
class StandardMap {
public:
    using Key = typename Map::key_type;
    using Value = typename Map::mapped_type;
    StandardMap() = default;
    explicit StandardMap(int room) { map_.reserve(static_cast<std::size_t>(room)); }
    void Add(const Key& key, const Value& value) { map_.emplace(key, value); }
    bool Find(const Key& key, Value& value) const {
        const auto found = map_.find(key);
        if (found == map_.end()) return false;
        value = found->second;
        return true;
    }
    void Remove(const Key& key) { map_.erase(key); }

private:
    Map map_;
};

template <int kKey, typename NumberHash>
using HashFor = std::conditional_t<kKey == 4, NumberHash, BytesHash>;

template <int kKey, int kValue>
using Std = StandardMap<
    std::unordered_map<KeyOf<kKey>, Bytes<kValue>, HashFor<kKey, std::hash<std::uint32_t>>>>;
template <int kKey, int kValue>
using Boost = StandardMap<
    boost::unordered_map<KeyOf<kKey>, Bytes<kValue>, HashFor<kKey, boost::hash<std::uint32_t>>>>;
template <int kKey, int kValue>
using Absl = StandardMap<absl::flat_hash_map<KeyOf<kKey>, Bytes<kValue>>>;

// --- Data ---------------------------------------------------------------------------------------

// kMaxEntries keys to add and as many that are absent: different, of no pattern, always the same.
template <typename Key>
const std::vector<Key>& Keys() {
    static const std::vector<Key> keys = [] {
        std::vector<Key> made(2 * kMaxEntries);
        std::mt19937_64 random(20240229);
        for (std::uint32_t i = 0; i < made.size(); ++i) {
            // Odd multiplications and shifted xors lose nothing: no two numbers become equal.
            std::uint32_t unique = i;
            unique = (unique ^ unique >> 16) * 0x85EBCA6B;
            unique = (unique ^ unique >> 13) * 0xC2B2AE35;
            unique ^= unique >> 16;
            auto* bytes = reinterpret_cast<unsigned char*>(&made[i]);
            for (std::size_t at = 4; at < sizeof(Key); at += 4) {
                const auto part = static_cast<std::uint32_t>(random());
                std::memcpy(bytes + at, &part, 4);
            }
            std::memcpy(bytes, &unique, 4);
        }
        return made;
    }();
    return keys;
}

// `count` of the keys [from, from + entries) in random order; each once when count is entries.
template <typename Key>
std::vector<Key> Shuffled(int from, int entries, int count) {
    std::vector<Key> order;
    while (static_cast<int>(order.size()) < count) {
        order.insert(order.end(), Keys<Key>().begin() + from, Keys<Key>().begin() + from + entries);
    }
    std::shuffle(order.begin(), order.end(), std::mt19937(7));
    order.resize(static_cast<std::size_t>(count));
    return order;
}

template <typename Table>
void Fill(Table& table, int entries) {
    typename Table::Value value{};
    for (int i = 0; i < entries; ++i) {
        value[0] = static_cast<unsigned char>(i);
        table.Add(Keys<typename Table::Key>()[static_cast<std::size_t>(i)], value);
    }
}

// --- Measurements -------------------------------------------------------------------------------

// The table of the last lookups, for the next ones; every other measurement drops it.
struct Kept {
    std::string name;
    std::shared_ptr<void> table;
};
Kept kept;

enum class Start { kRoomy, kSmall };

template <typename Table, Start kStart>
void Insert(benchmark::State& state, int entries) {
    kept = {};
    auto table = std::make_unique<Table>(entries);  // once for the allocator and the caches
    Fill(*table, entries);
    while (state.KeepRunningBatch(entries)) {
        state.PauseTiming();
        table.reset();
        state.ResumeTiming();
        table =
            kStart == Start::kRoomy ? std::make_unique<Table>(entries) : std::make_unique<Table>();
        Fill(*table, entries);
    }
}

template <typename Table>
const Table& Filled(int entries) {
    const std::string name = typeid(Table).name() + std::to_string(entries);
    if (kept.name != name) {
        kept = {};
        const auto table = std::make_shared<Table>(entries);
        Fill(*table, entries);
        kept = {name, table};
    }
    return *static_cast<const Table*>(kept.table.get());
}

enum class Looked { kPresent, kAbsent };

template <typename Table, Looked kLooked>
void Look(benchmark::State& state, int entries) {
    const Table& table = Filled<Table>(entries);
    const int lookups = (std::max)(entries, 1 << 14);
    const auto keys = Shuffled<typename Table::Key>(kLooked == Looked::kPresent ? 0 : kMaxEntries,
                                                    entries, lookups);
    typename Table::Value value{};
    int found = 0;
    while (state.KeepRunningBatch(lookups)) {
        for (const auto& key : keys) {
            found += table.Find(key, value);
            benchmark::DoNotOptimize(value);
        }
    }
    if ((found != 0) != (kLooked == Looked::kPresent)) state.SkipWithError("wrong results");
}

template <typename Table>
void Remove(benchmark::State& state, int entries) {
    kept = {};
    const auto keys = Shuffled<typename Table::Key>(0, entries, entries);
    while (state.KeepRunningBatch(entries)) {
        state.PauseTiming();
        auto table = std::make_unique<Table>(entries);
        Fill(*table, entries);
        state.ResumeTiming();
        for (const auto& key : keys) table->Remove(key);
        state.PauseTiming();
        table.reset();
        state.ResumeTiming();
    }
}

using Measure = void (*)(benchmark::State&, int);

void Register(const char* group, const std::string& what, const char* contender, Measure measure,
              int entries) {
    benchmark::RegisterBenchmark((std::string(group) + "/" + what + "/" + contender).c_str(),
                                 [=](benchmark::State& state) { measure(state, entries); })
        ->MinTime(0.01);
}

template <typename Table>
void RegisterTable(const char* contender, const std::string& what, int entries) {
    Register("hash insert", what, contender, &Insert<Table, Start::kRoomy>, entries);
    Register("hash growth", what, contender, &Insert<Table, Start::kSmall>, entries);
    Register("hash hit", what, contender, &Look<Table, Looked::kPresent>, entries);
    Register("hash miss", what, contender, &Look<Table, Looked::kAbsent>, entries);
    Register("hash remove", what, contender, &Remove<Table>, entries);
}

template <int kKey, int kValue>
void RegisterSizes() {
    const struct {
        const char* name;
        int entries;
    } cases[] = {{"1e3", 1000}, {"1e5", 100000}, {"1e6", kMaxEntries}};
    for (const auto& c : cases) {
        char what[40];
        std::snprintf(what, sizeof what, "k%d v%d %s", kKey, kValue, c.name);
        RegisterTable<Qelkit<kKey, kValue>>("qelkit", what, c.entries);
        RegisterTable<Std<kKey, kValue>>("std::unordered_map", what, c.entries);
        RegisterTable<Boost<kKey, kValue>>("boost::unordered_map", what, c.entries);
        RegisterTable<Absl<kKey, kValue>>("absl::flat_hash_map", what, c.entries);
    }
}

}  // namespace

int main(int argc, char** argv) {
    // The allocator keeps what it once got from the system: what is measured is the table and not
    // the clearing of fresh pages, which depends on what ran before.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    RegisterSizes<4, 8>();
    RegisterSizes<4, 64>();
    RegisterSizes<16, 8>();
    RegisterSizes<16, 64>();
    RegisterSizes<32, 8>();
    RegisterSizes<32, 64>();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
