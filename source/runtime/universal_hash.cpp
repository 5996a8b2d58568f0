#include "runtime/universal_hash.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

#include "runtime/detail/key_bytes.h"

#if defined(_MSC_VER) && !defined(__clang__)
#include <xmmintrin.h>
#endif

static_assert(sizeof(CQELUniversalHash) == 72, "the fields are part of the binary interface");
static_assert(sizeof(std::size_t) == 8, "a pool may be larger than 4 GB");

namespace {

using kit::Any;
using kit::Copy;
using kit::Equal;
using kit::Fixed;
using kit::Hash;
using kit::SizeFrom;

// A node: the address of the next one (in its bucket or in the free list), the key, the value.
// They are packed, so that nothing in a node is aligned.
constexpr int kKeyOffset = 8;

unsigned char* NextOf(const void* link) {
    unsigned char* next;
    std::memcpy(&next, link, sizeof next);
    return next;
}

void SetNext(void* link, const unsigned char* next) { std::memcpy(link, &next, sizeof next); }

void PrefetchForWrite(const void* address) {
#if defined(_MSC_VER) && !defined(__clang__)
    _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
#else
    __builtin_prefetch(address, 1);
#endif
}

// Stands behind the end of a chain: a node with some key and without a next one.
constexpr int kLargestFixedKey = 32;
const unsigned char nobody[kKeyOffset + kLargestFixedKey] = {};

// `condition ? yes : no` without a branch, whatever a compiler thinks of it.
unsigned char* Select(bool condition, unsigned char* yes, unsigned char* no) {
    const auto mask = 0 - static_cast<std::uintptr_t>(condition);
    const auto yes_bits = reinterpret_cast<std::uintptr_t>(yes);
    const auto no_bits = reinterpret_cast<std::uintptr_t>(no);
    return reinterpret_cast<unsigned char*>(((yes_bits ^ no_bits) & mask) ^ no_bits);
}

unsigned char* OrNobody(unsigned char* node) {
    return Select(node != nullptr, node, const_cast<unsigned char*>(nobody));
}

// In 64 bits, before anything is narrowed or allocated.
bool SizesFit(std::int64_t capacity, std::int64_t key_size, std::int64_t value_size) {
    return capacity >= 1 && key_size >= 1 && value_size >= 1 &&
           kKeyOffset + key_size + value_size <= INT_MAX && capacity + capacity / 5 <= INT_MAX;
}

}  // namespace

struct CQELUniversalHash::Engine {
    using Table = CQELUniversalHash;

    // h modulo the number of buckets. The quotient from the rounded reciprocal is right or one too
    // small; in the second case the rest is corrected, in the first the subtraction wraps.
    static std::uint32_t BucketNumber(const Table& t, std::uint32_t h) {
        const auto count = static_cast<std::uint32_t>(t.bucket_count_);
        const auto product = static_cast<std::uint64_t>(h) * t.reciprocal_;
        const std::uint32_t rest = h - static_cast<std::uint32_t>(product >> 32) * count;
        return (std::min)(rest, rest - count);
    }

    template <typename KeySize>
    static unsigned char** BucketOf(const Table& t, const unsigned char* key) {
        if constexpr (std::is_same_v<KeySize, Any>) return t.buckets_ + t.HashFunction(key);
        return t.buckets_ + BucketNumber(t, Hash(key, SizeFrom<KeySize>(0)));
    }

    static unsigned char* NodeAt(const Table& t, int index) {
        return t.pool_ + static_cast<std::size_t>(index) * static_cast<std::size_t>(t.node_size_);
    }

    // Only the front of the free list has to be linked. A node that is linked to itself was never
    // used: its neighbour in the pool follows it, and after the last node nothing.
    static void SetFresh(unsigned char* node) { SetNext(node, node); }

    static unsigned char* TakeFree(Table& t) {
        unsigned char* node = t.free_;
        t.free_ = NextOf(node);
        if (t.free_ == node) {
            t.free_ = node + t.node_size_;
            if (t.free_ == NodeAt(t, t.capacity_)) {
                t.free_ = nullptr;
            } else {
                SetFresh(t.free_);
            }
        }
        return node;
    }

    template <typename KeySize>
    static unsigned char* FindInChain(unsigned char* node, const unsigned char* key, KeySize size) {
        while (node && !Equal(node + kKeyOffset, key, size)) node = NextOf(node);
        return node;
    }

    // Which node ends a search is chance. As long as a table stays in the processor's caches, a
    // wrong guess costs more than the whole search, so the first two nodes, which end 19 of 20
    // searches in a full table, are looked at without a branch between them. In a larger table
    // guessing wins: it loads what comes next while memory is still waited for.
    static bool IsCached(const Table& t) { return t.bucket_count_ <= 1 << 14; }

    template <int kSize>
    static unsigned char* FindWithoutGuess(unsigned char* node, const unsigned char* key,
                                           Fixed<kSize> size) {
        static_assert(kSize <= kLargestFixedKey);
        unsigned char* first = OrNobody(node);
        unsigned char* next = OrNobody(NextOf(first));
        node = Select(Equal(first + kKeyOffset, key, size), first, next);
        if (Equal(node + kKeyOffset, key, size)) return node != nobody ? node : nullptr;
        return FindInChain(NextOf(node), key, size);
    }

    static unsigned char* FindWithoutGuess(unsigned char* node, const unsigned char* key,
                                           Any size) {
        return FindInChain(node, key, size);
    }

    // --- The operations for one size of keys and one size of values -----------------------------

    template <typename KeySize>
    static unsigned char* ValueOf(const Table& t, unsigned char* node) {
        return node + kKeyOffset + SizeFrom<KeySize>(t.key_size_);
    }

    template <typename KeySize>
    static unsigned char* FindNode(const Table& t, unsigned char* first, const unsigned char* key) {
        const auto size = SizeFrom<KeySize>(t.key_size_);
        return IsCached(t) ? FindWithoutGuess(first, key, size) : FindInChain(first, key, size);
    }

    template <typename KeySize, typename>
    static void* At(const Table& t, const unsigned char* key) {
        unsigned char* node = FindNode<KeySize>(t, *BucketOf<KeySize>(t, key), key);
        return node ? ValueOf<KeySize>(t, node) : nullptr;
    }

    template <typename KeySize, typename ValueSize>
    static int Give(const Table& t, unsigned char* node, void* value) {
        if (!node) return 1;
        if (value) Copy(value, ValueOf<KeySize>(t, node), SizeFrom<ValueSize>(t.value_size_));
        return 0;
    }

    // Two returns, so that neither way of searching has to pass through what it shares.
    template <typename KeySize, typename ValueSize>
    static int Find(const Table& t, const unsigned char* key, void* value) {
        unsigned char* first = *BucketOf<KeySize>(t, key);
        const auto size = SizeFrom<KeySize>(t.key_size_);
        if (IsCached(t)) {
            return Give<KeySize, ValueSize>(t, FindWithoutGuess(first, key, size), value);
        }
        return Give<KeySize, ValueSize>(t, FindInChain(first, key, size), value);
    }

    template <typename KeySize, typename ValueSize>
    static int Add(Table& t, const unsigned char* key, const void* value) {
        unsigned char** bucket = BucketOf<KeySize>(t, key);
        if (FindNode<KeySize>(t, *bucket, key)) return 1;
        unsigned char* node = TakeFree(t);
        Copy(node + kKeyOffset, key, SizeFrom<KeySize>(t.key_size_));
        Copy(ValueOf<KeySize>(t, node), value, SizeFrom<ValueSize>(t.value_size_));
        SetNext(node, *bucket);
        *bucket = node;
        return 0;
    }

    template <typename KeySize, typename ValueSize>
    static int Remove(Table& t, const unsigned char* key, void* value) {
        void* link = BucketOf<KeySize>(t, key);
        unsigned char* node = NextOf(link);
        while (node && !Equal(node + kKeyOffset, key, SizeFrom<KeySize>(t.key_size_))) {
            link = node;
            node = NextOf(node);
        }
        if (Give<KeySize, ValueSize>(t, node, value) != 0) return 1;
        SetNext(link, NextOf(node));
        SetNext(node, t.free_);
        t.free_ = node;
        return 0;
    }

    // Adds every node of the full table `from` to the empty table `to`, in pool order. The keys are
    // known to differ and every node keeps its place in the pool, so this is a copy and the
    // linking; the buckets, far apart, are asked for some nodes ahead.
    template <typename KeySize, typename>
    static void AddAll(Table& to, const Table& from) {
        constexpr int kAhead = 32;
        unsigned char** buckets[kAhead];
        for (int first = 0; first < from.capacity_; first += kAhead) {
            const int count = (std::min)(kAhead, from.capacity_ - first);
            unsigned char* const nodes = NodeAt(to, first);
            Copy(nodes, NodeAt(from, first), static_cast<std::size_t>(count) * from.node_size_);
            unsigned char* node = nodes;
            for (int i = 0; i < count; ++i, node += to.node_size_) {
                buckets[i] = BucketOf<KeySize>(to, node + kKeyOffset);
                PrefetchForWrite(buckets[i]);
            }
            node = nodes;
            for (int i = 0; i < count; ++i, node += to.node_size_) {
                SetNext(node, *buckets[i]);
                *buckets[i] = node;
            }
        }
        to.free_ = NodeAt(to, from.capacity_);
        SetFresh(to.free_);
    }

    // --- The table of them ----------------------------------------------------------------------

    struct Operations {
        void* (*at)(const Table&, const unsigned char* key);
        int (*find)(const Table&, const unsigned char* key, void* value);
        int (*add)(Table&, const unsigned char* key, const void* value);
        int (*remove)(Table&, const unsigned char* key, void* value);
        void (*add_all)(Table& to, const Table& from);
    };

    template <typename KeySize, typename ValueSize>
    static constexpr Operations kFor = {&At<KeySize, ValueSize>, &Find<KeySize, ValueSize>,
                                        &Add<KeySize, ValueSize>, &Remove<KeySize, ValueSize>,
                                        &AddAll<KeySize, ValueSize>};

    static const Operations kOperations[];

    // Quirk: a full table grows before it is known whether the key is new. Callers rely on the
    // capacity that follows. Pinned by UniversalHash.GrowsEvenForAKeyThatIsPresent.
    static int Grow(Table& t, const void* key, const void* value) {
        if (t.capacity_ > INT_MAX / 2) return 2;
        Table* successor = nullptr;
        new (std::nothrow) Table(2 * t.capacity_, t.key_size_, t.value_size_, &successor);
        if (!successor) return 2;
        const Operations& operations = kOperations[t.operations_];
        operations.add_all(*successor, t);
        const int result =
            operations.add(*successor, static_cast<const unsigned char*>(key), value);
        successor->owner_ = t.owner_;
        *successor->owner_ = successor;
        delete &t;
        return result;
    }
};

// The row is that of the key size, the column that of the value size; OperationsFor finds them.
// clang-format off
constinit const CQELUniversalHash::Engine::Operations CQELUniversalHash::Engine::kOperations[] = {
    kFor<Fixed<4>,  Fixed<4>>, kFor<Fixed<4>,  Fixed<8>>, kFor<Fixed<4>,  Fixed<64>>, kFor<Fixed<4>,  Any>,
    kFor<Fixed<8>,  Fixed<4>>, kFor<Fixed<8>,  Fixed<8>>, kFor<Fixed<8>,  Fixed<64>>, kFor<Fixed<8>,  Any>,
    kFor<Fixed<16>, Fixed<4>>, kFor<Fixed<16>, Fixed<8>>, kFor<Fixed<16>, Fixed<64>>, kFor<Fixed<16>, Any>,
    kFor<Fixed<32>, Fixed<4>>, kFor<Fixed<32>, Fixed<8>>, kFor<Fixed<32>, Fixed<64>>, kFor<Fixed<32>, Any>,
    kFor<Any,       Fixed<4>>, kFor<Any,       Fixed<8>>, kFor<Any,       Fixed<64>>, kFor<Any,       Any>,
};
// clang-format on

namespace {

// The place of `size` in the list, or behind its end when it has none.
template <std::size_t kCount>
std::size_t IndexOf(int size, const int (&sizes)[kCount]) {
    return static_cast<std::size_t>(std::find(sizes, sizes + kCount, size) - sizes);
}

std::uint32_t OperationsFor(int key_size, int value_size) {
    return static_cast<std::uint32_t>(IndexOf(key_size, {4, 8, 16, 32}) * 4 +
                                      IndexOf(value_size, {4, 8, 64}));
}

}  // namespace

CQELUniversalHash::CQELUniversalHash(int capacity, int keySize, int valueSize,
                                     CQELUniversalHash** owner)
    : capacity_(capacity),
      bucket_count_(0),
      key_size_(keySize),
      value_size_(valueSize),
      node_size_(0),
      reciprocal_(0),
      pool_(nullptr),
      buckets_(nullptr),
      value_offset_(0),
      operations_(0),
      owner_(owner) {
    if (SizesFit(capacity, keySize, valueSize)) {
        bucket_count_ = capacity + capacity / 5;
        reciprocal_ = UINT32_MAX / static_cast<std::uint32_t>(bucket_count_);
        value_offset_ = kKeyOffset + keySize;
        node_size_ = value_offset_ + valueSize;
        operations_ = OperationsFor(keySize, valueSize);
        pool_ = static_cast<unsigned char*>(
            std::malloc(static_cast<std::size_t>(capacity) * static_cast<std::size_t>(node_size_)));
        buckets_ = static_cast<unsigned char**>(
            std::calloc(static_cast<std::size_t>(bucket_count_), sizeof *buckets_));
    }
    free_ = pool_;
    if (pool_ && buckets_) {
        Engine::SetFresh(free_);
        *owner = this;
    } else {
        *owner = nullptr;
        delete this;
    }
}

// Quirk: a copy uses the pool and the buckets of its original, so that only one of the two may be
// destroyed. Callers hand a table on that way. Pinned by UniversalHash.SharesItsNodesWithACopy.
CQELUniversalHash::CQELUniversalHash(const CQELUniversalHash& other) = default;
CQELUniversalHash& CQELUniversalHash::operator=(const CQELUniversalHash& other) = default;

CQELUniversalHash::~CQELUniversalHash() {
    std::free(pool_);
    std::free(buckets_);
}

namespace {
const unsigned char* Bytes(const void* key) { return static_cast<const unsigned char*>(key); }
}  // namespace

int CQELUniversalHash::Add(const void* key, const void* value) {
    if (!key || !value) return 2;
    if (!free_) return Engine::Grow(*this, key, value);
    return Engine::kOperations[operations_].add(*this, Bytes(key), value);
}

int CQELUniversalHash::Find(const void* key, void* value) const {
    if (!key) return 1;
    return Engine::kOperations[operations_].find(*this, Bytes(key), value);
}

void* CQELUniversalHash::operator[](const void* key) const {
    if (!key) return nullptr;
    return Engine::kOperations[operations_].at(*this, Bytes(key));
}

int CQELUniversalHash::Remove(const void* key, void* value) {
    if (!key) return 1;
    return Engine::kOperations[operations_].remove(*this, Bytes(key), value);
}

int CQELUniversalHash::FindByIndex(int index, void* key, void* value) const {
    if (index < 0 || index >= bucket_count_ || !buckets_[index]) return 1;
    // Quirk: only the first node of a bucket is shown, so that the indexes do not reach every entry.
    // Callers take it for "some entry of the bucket". Pinned by UniversalHash.ShowsTheNewestOfABucket.
    const unsigned char* node = buckets_[index];
    if (key) Copy(key, node + kKeyOffset, key_size_);
    if (value) Copy(value, node + value_offset_, value_size_);
    return 0;
}

int CQELUniversalHash::GetMaxIndex() const { return bucket_count_; }

long32 CQELUniversalHash::HashFunction(const void* key) const {
    const auto h = key_size_ == 4 ? Hash(Bytes(key), Fixed<4>()) : Hash(Bytes(key), key_size_);
    return static_cast<long32>(Engine::BucketNumber(*this, h));
}
