// The lock beside the bare critical section, and the worker beside a thread that takes messages.

#include <atomic>

#include "runtime/lock.h"
#include "runtime/thread_binder.h"
#include "support/wine_bench.h"

namespace {

void Locks(WineBench& bench) {
    QEL::CLock lock;
    bench.Run("runtime/lock and unlock/qelkit", [&] {
        lock.Lock();
        lock.Unlock();
    });
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    bench.Run("runtime/lock and unlock/bare", [&] {
        EnterCriticalSection(&section);
        LeaveCriticalSection(&section);
    });
    DeleteCriticalSection(&section);
}

constexpr int kPosts = 100000;  // ten times what a queue holds
std::atomic<int> g_ran{0};

void AwaitAll() {
    while (g_ran != kPosts) Sleep(0);
    g_ran = 0;
}

class Count : public QEL::IFunction {
    void Invoke() override { ++g_ran; }
};

DWORD WINAPI TakeMessages(void* ready) {
    MSG message;
    PeekMessageA(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
    SetEvent(static_cast<HANDLE>(ready));
    while (GetMessageA(&message, nullptr, 0, 0) > 0) ++g_ran;
    return 0;
}

void Workers(WineBench& bench) {
    const TRef<QEL::IThreadBinder> worker = QEL::CreateSimpleThreadBinder();
    bench.Run("runtime/100,000 functions on a worker/qelkit", [&] {
        for (int i = 0; i < kPosts; ++i) worker->BindInvoke(new Count);
        AwaitAll();
    });
    const HANDLE ready = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    DWORD id;
    const HANDLE thread = CreateThread(nullptr, 0, &TakeMessages, ready, 0, &id);
    WaitForSingleObject(ready, INFINITE);
    bench.Run("runtime/100,000 functions on a worker/bare", [&] {
        for (int i = 0; i < kPosts; ++i) {
            while (!PostThreadMessageA(id, WM_USER, 0, 0)) Sleep(1);  // the queue is full
        }
        AwaitAll();
    });
    PostThreadMessageA(id, WM_QUIT, 0, 0);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    CloseHandle(ready);
}

}  // namespace

int main() {
    WineBench bench;
    Locks(bench);
    Workers(bench);
    return bench.Print();
}
