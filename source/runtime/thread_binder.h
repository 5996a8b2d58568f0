#pragma once

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "runtime/ref_count.h"

// A worker thread that runs function objects one at a time, in the order in which they were
// posted:
//
//     class Save : public QEL::IFunction {
//         void Invoke() override { ... on the worker ... }
//     };
//     const TRef<QEL::IThreadBinder> worker = QEL::CreateSimpleThreadBinder();
//     worker->BindInvoke(new Save);   // the worker deletes it afterwards
//
// The worker is in COM's multithreaded apartment. It serves its message queue between functions;
// a function that runs a message loop of its own, a message box for example, swallows what is
// posted meanwhile. An exception that leaves a function ends the process.

namespace QEL {

// Work for the worker. Its count is not atomic: from BindInvoke until it has run, the object
// belongs to the worker, and whoever keeps a reference must neither copy nor drop it meanwhile.
//
// The order of the virtual functions is part of the binary interface; the four reserved ones keep
// the invocation in its place.
class QELKIT_API IFunction : public CRefCnt {
public:
    ~IFunction() override;
    // Do nothing and are never called.
    virtual void Reserved1();
    virtual void Reserved2();
    virtual void Reserved3();
    virtual void Reserved4();
    // The work; called once for each BindInvoke, on the worker.
    virtual void Invoke() = 0;
};

// The order of the virtual functions (destructor, BindInvoke) is part of the binary interface.
class QELKIT_API IThreadBinder : public CRefCnt {
public:
    ~IThreadBinder() override;

    // Adds a reference to `function` and posts it; the worker drops that reference after it has run
    // the function. Null does nothing. Any thread may post, the worker too. While the worker's
    // queue is full (10,000 functions by default) the call waits; only what the worker then posts to
    // itself is kept aside until there is room. A function that cannot be posted because there is
    // no worker is released unrun.
    virtual void BindInvoke(IFunction* function) = 0;
};

// The fields are part of the binary interface.
class QELKIT_API CThreadBinder : public IThreadBinder {
public:
    // Starts the worker and returns when it can take functions. When the system has no thread to
    // give there is no worker: every function is released unrun.
    CThreadBinder();
    CThreadBinder(const CThreadBinder&) = delete;
    CThreadBinder& operator=(const CThreadBinder&) = delete;
    // Lets the worker run what was posted before and waits for its end. Functions that are posted
    // later, by other threads, never run and keep their reference. Destroyed by a function on the
    // worker itself, it does not wait: the worker ends by itself.
    ~CThreadBinder() override;

    void BindInvoke(IFunction* function) override;

private:
    ulong32 thread_id_ = 0;
    HANDLE thread_ = nullptr;
    HANDLE started_ = nullptr;
};

// A new worker, ended by the last reference to it; an empty reference when memory runs out. The
// count of references is not atomic: hand threads the plain pointer, or a reference under a lock.
QELKIT_API TRef<IThreadBinder> CreateSimpleThreadBinder();

}  // namespace QEL
