#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"

// A hash table of records of one size: keys and values are so many bytes, both held by value in
// nodes of a pool that is allocated with the table. Adding takes a node of the pool and removing
// gives it back, so nothing is allocated per entry.
//
// When the pool is used up, Add builds a table of twice the capacity, moves every entry into it,
// stores it in the caller's variable and deletes the full one. Therefore a table is always created
// with `new`, and after that it is only ever reached through the variable given to the constructor:
//
//     CQELUniversalHash* table = nullptr;
//     new CQELUniversalHash(1000, sizeof key, sizeof value, &table);
//     if (!table) ...                         // no memory, or a size below 1
//     table->Add(&key, &value);               // `table` may be another object from here on
//     delete table;
//
// Keys are compared as bytes, padding included. A key or value pointer may have any alignment. A
// table is used by one thread at a time; only const operations may overlap.
//
// The order of the virtual functions (the destructor alone) and of the fields is part of the
// binary interface: add only at the end.
class QELKIT_API CQELUniversalHash {
public:
    // Makes an empty table and stores it in *owner.
    //   capacity   entries it takes before it grows
    //   keySize    bytes of every key
    //   valueSize  bytes of every value
    //   owner      the caller's variable, not null; it must outlive the table, which also stores
    //              its successors there
    // When memory runs out, a size or the capacity is below 1, or a node (8 + keySize + valueSize
    // bytes) or the number of buckets (1.2 * capacity) would exceed 2^31 - 1: *owner is null and
    // the object has deleted itself, so that what `new` returns must not be used.
    CQELUniversalHash(int capacity, int keySize, int valueSize, CQELUniversalHash** owner);

    // Copies every field as it is: both objects then use the same pool and buckets, which the
    // first destructor frees. At most one of them may be changed, grown or destroyed.
    CQELUniversalHash(const CQELUniversalHash& other);
    CQELUniversalHash& operator=(const CQELUniversalHash& other);

    // Frees the entries. The caller's variable keeps its value.
    virtual ~CQELUniversalHash();

    // Adds a copy of `key` and `value`. `value` may lie inside the table.
    // Returns 0 when added, 1 when the key is present (its value stays as it is), 2 when the table
    // was full and could not grow, or a pointer is null; then nothing has changed.
    // A full table grows even when the key turns out to be present: after every Add take the table
    // from the variable again, and no address from operator[] is valid any more.
    int Add(const void* key, const void* value);

    // Copies the value of `key` to `value`, or nowhere when that is null.
    // Returns 0, or 1 when the key is absent or null; then `value` is untouched.
    int Find(const void* key, void* value) const;

    // The address of the stored value, of any alignment, to read or to change it in place; null
    // when the key is absent or null. Valid until the entry is removed or the table grows.
    void* operator[](const void* key) const;

    // Removes the entry of `key`, after copying its value to `value` unless that is null.
    // Returns 0, or 1 when the key is absent or null; then `value` is untouched.
    int Remove(const void* key, void* value);

    // Copies the newest entry of bucket `index`, key and value, each unless its pointer is null.
    // Returns 0, or 1 when the bucket is empty or `index` outside [0, GetMaxIndex()); then nothing
    // is copied. Older entries of the same bucket are not reached: this shows one entry a bucket
    // and does not enumerate the table.
    int FindByIndex(int index, void* key, void* value) const;

    // The number of buckets: 1.2 * capacity, rounded down.
    int GetMaxIndex() const;

private:
    struct Engine;  // the operations, compiled for the common sizes

    // The bucket of a key.
    long32 HashFunction(const void* key) const;

    int capacity_;
    int bucket_count_;
    int key_size_;
    int value_size_;
    int node_size_;
    std::uint32_t reciprocal_;  // of bucket_count_; lies in what would be padding
    unsigned char* free_;       // first unused node
    unsigned char* pool_;
    unsigned char** buckets_;
    int value_offset_;
    std::uint32_t operations_;  // those for the sizes; lies in what would be padding
    CQELUniversalHash** owner_;
};
