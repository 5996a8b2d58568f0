#pragma once

#include <atomic>

#include "base/export.h"
#include "base/types.h"

// An intrusive reference count, the base of bodies that several owners share.
//
// The count starts at 1, for the creator. The object deletes itself on its last release, so it is
// always created with `new`. AddRef and Release are atomic (sequentially consistent): owners may
// release from different threads. Nothing else about the object is guarded.
//
// The order of the virtual functions (destructor, AddRef, Release) and of the fields is part of
// the binary interface: add only at the end.
class QELKIT_API CQELReference {
public:
    // Count 1, for the creator.
    CQELReference();
    // A copy is an object of its own, with one owner; a count is never copied.
    CQELReference(const CQELReference&);
    CQELReference& operator=(const CQELReference&);
    virtual ~CQELReference();

    // Adds an owner; returns the new count.
    virtual long32 AddRef();

    // Drops an owner and deletes the object when it was the last; returns the new count.
    virtual long32 Release();

    // Whether the count is 1.
    bool IsSingleOwner() const;

    // Throws XQELStatus with status 117 (internal error) when `p` is null.
    static void CheckImplementation(const CQELReference* p);

private:
    std::atomic<long32> count_;
};

inline CQELReference::CQELReference() : count_(1) {}
inline CQELReference::CQELReference(const CQELReference&) : count_(1) {}
inline CQELReference& CQELReference::operator=(const CQELReference&) { return *this; }
inline bool CQELReference::IsSingleOwner() const { return count_.load() == 1; }
