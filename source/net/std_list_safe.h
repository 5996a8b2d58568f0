#pragma once

#include <list>
#include <memory>

#include "base/export.h"
#include "base/types.h"
#include "net/ip_range.h"

// The list under CQELLongList and CQELRangeIPList: T is ulong32 or CQELRangeIP. A std::list with a
// flat binary form, by which other components store lists in records and settings:
//
//   the elements one behind another in list order, no header, no count, no terminator
//   ulong32      4 bytes, little-endian
//   CQELRangeIP  8 bytes: `from`, then `to`, little-endian
//
// A list is nobody's set: it keeps the order of insertion, and its duplicates. One list belongs to
// one thread at a time. Growing beyond the greatest element count throws std::length_error
// "list<T> too long"; memory that runs out throws std::bad_alloc.
//
// The order of the virtual functions (destructor, Load, Save, Sizeof) and of the fields (the list
// with its element count, the save buffer) is part of the binary interface.
template <typename T>
class StdListSafe : public std::list<T> {
public:
    // No elements.
    StdListSafe() = default;
    // Copies the elements; a save buffer stays with its owner.
    StdListSafe(const StdListSafe& other);
    StdListSafe(StdListSafe&& other) noexcept;
    virtual ~StdListSafe();

    StdListSafe& operator=(const StdListSafe& other);
    StdListSafe& operator=(StdListSafe&& other) noexcept;

    // Replaces the elements by those of the `length` bytes at `data`. Null gives an empty list; a
    // fragment behind the last whole element is ignored. When memory runs out the list is
    // unchanged.
    virtual void Load(const unsigned char* data, unsigned int length);

    // Makes the flat form. `length` receives its size in bytes and `data` a buffer of that size,
    // which this list owns and keeps until its next Save or its end; the buffer of the last Save is
    // gone. The form of an empty list has length 0, and `data` is left as it was. A form of 4 GiB
    // or more throws std::length_error, after which everything is as before.
    virtual void Save(unsigned int& length, unsigned char*& data);

    // The bytes of one element in the flat form.
    virtual int Sizeof() const;

    // Removes every element that is equal to an element of b, which may be this list.
    void RemoveList(const StdListSafe& b);

private:
    std::unique_ptr<unsigned char[]> saved_;
};

// Both instances live in the library. Visual C++ exports them where they are defined and does not
// want `extern` and export together.
#if defined(_MSC_VER) && defined(QELKIT_BUILD)
#define QELKIT_LIST_INSTANCE QELKIT_API
#else
#define QELKIT_LIST_INSTANCE
extern template class QELKIT_API StdListSafe<ulong32>;
extern template class QELKIT_API StdListSafe<CQELRangeIP>;
#endif
