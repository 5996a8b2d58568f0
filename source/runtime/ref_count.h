#pragma once

#include "base/export.h"
#include "base/types.h"

// An intrusive reference count for objects that one thread at a time handles. Unlike that of
// CQELReference (reference.h) it starts at 0 and is not atomic: two threads must not change the
// count of one object at the same time.
//
// Objects are created with `new`; the last Release deletes them. The virtual destructor and the
// count right behind the table pointer are part of the binary interface.
class QELKIT_API CRefCnt {
public:
    // Count 0: the first reference makes it 1.
    CRefCnt();
    // A copy is an object of its own; a count is never copied.
    CRefCnt(const CRefCnt&);
    CRefCnt& operator=(const CRefCnt&);
    virtual ~CRefCnt();

    // Add and drop a reference; each returns the new count. At 0 or below the object is deleted.
    long32 AddRef();
    long32 Release();

private:
    long32 count_ = 0;
};

inline CRefCnt::CRefCnt() = default;
inline CRefCnt::CRefCnt(const CRefCnt&) : CRefCnt() {}
inline CRefCnt& CRefCnt::operator=(const CRefCnt&) { return *this; }
inline long32 CRefCnt::AddRef() { return ++count_; }
inline long32 CRefCnt::Release() {
    const long32 left = --count_;
    if (left <= 0) delete this;
    return left;
}

// Holds an object derived from CRefCnt: one count for as long as it points there.
template <typename T>
class TRef {
public:
    // One more reference to `object`; null: none.
    TRef(T* object = nullptr) : object_(object) {
        if (object_) object_->AddRef();
    }
    TRef(const TRef& other) : TRef(other.object_) {}
    TRef(TRef&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
    // By value: serves copying and moving, and itself.
    TRef& operator=(TRef other) noexcept {
        T* const mine = object_;
        object_ = other.object_;
        other.object_ = mine;
        return *this;
    }
    ~TRef() {
        if (object_) object_->Release();
    }

    // The object, null when there is none; no reference is added.
    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    // Whether there is an object.
    explicit operator bool() const { return object_ != nullptr; }

private:
    T* object_;
};
