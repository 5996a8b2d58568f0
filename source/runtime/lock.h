#pragma once

#include "base/export.h"
#include "platform/windows.h"

namespace QEL {

// A critical section: keeps all threads but one of this process out. The thread that has it may
// enter again, and leaves as often as it entered. Leaving without having entered, and destroying a
// lock that somebody has, are errors of the caller that nothing reports.
//
// The fields are part of the binary interface.
class QELKIT_API CLock {
public:
    // Nobody has it.
    CLock();
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    // Enters, after waiting for as long as another thread has the lock.
    void Lock();
    // Leaves; the last leaving lets a waiting thread in.
    void Unlock();

    // Enters if that is possible at once; returns whether it did. On a platform that cannot try
    // (see below) it waits like Lock() and returns true.
    bool TryLock();

    // The platform's function for trying, looked up by the first TryLock() of the process; null
    // before that, and where the platform has none.
    using TryEnter = BOOL(WINAPI*)(CRITICAL_SECTION*);
    static TryEnter s_TryEnterCryticalSection;

private:
    CRITICAL_SECTION section_;
};

}  // namespace QEL
