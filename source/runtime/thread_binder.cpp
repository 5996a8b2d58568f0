#include "runtime/thread_binder.h"

#include <deque>
#include <new>

#include "runtime/com_initializer.h"

#ifdef _MSC_VER
static_assert(sizeof(QEL::CThreadBinder) == 40, "part of the binary interface");
#else
static_assert(sizeof(QEL::CThreadBinder) == 32, "part of the binary interface");
#endif

namespace {

// What a posted function looks like in the worker's queue. The second parameter tells it from
// whatever else somebody may post to the thread.
constexpr UINT kInvoke = WM_USER;
constexpr LPARAM kMark = 123456789;

// Posts to a thread. Waits while its queue is full; false when the thread is gone.
bool PostWhenThereIsRoom(DWORD thread_id, UINT message, WPARAM wparam, LPARAM lparam) {
    constexpr DWORD kPauseMs = 1;
    while (!::PostThreadMessageA(thread_id, message, wparam, lparam)) {
        if (::GetLastError() != ERROR_NOT_ENOUGH_QUOTA) return false;
        ::Sleep(kPauseMs);
    }
    return true;
}

// The life of one worker thread.
class Worker {
public:
    static DWORD WINAPI Run(void* started) {
        const QEL::CCOMInitializer com(0);
        MSG message;
        ::PeekMessageA(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);  // makes the queue
        Worker worker;
        ::SetEvent(static_cast<HANDLE>(started));
        worker.Serve();
        return 0;
    }

    // The worker that the calling thread is, or null.
    static Worker* Current() { return current_; }

    // Posts to this worker from its own thread, which cannot wait for itself: what finds the queue
    // full is kept aside, and so is everything behind it.
    bool PostToSelf(QEL::IFunction* function) {
        if (aside_.empty()) {
            if (Post(function)) return true;
            if (::GetLastError() != ERROR_NOT_ENOUGH_QUOTA) return false;
        }
        aside_.push_back(function);
        return true;
    }

private:
    Worker() { current_ = this; }
    ~Worker() { current_ = nullptr; }

    static bool Post(QEL::IFunction* function) {
        return ::PostThreadMessageA(::GetCurrentThreadId(), kInvoke,
                                    reinterpret_cast<WPARAM>(function), kMark) != 0;
    }

    static void Invoke(QEL::IFunction* function) {
        function->Invoke();
        function->Release();
    }

    void Serve() {
        MSG message;
        while (::GetMessageA(&message, nullptr, 0, 0) > 0) {
            if (message.message != kInvoke || message.lParam != kMark) continue;
            Invoke(reinterpret_cast<QEL::IFunction*>(message.wParam));
            while (!aside_.empty() && Post(aside_.front())) aside_.pop_front();
        }
        while (!aside_.empty()) {
            QEL::IFunction* const function = aside_.front();
            aside_.pop_front();
            Invoke(function);
        }
    }

    static thread_local Worker* current_;
    std::deque<QEL::IFunction*> aside_;
};

thread_local Worker* Worker::current_ = nullptr;

}  // namespace

QEL::IFunction::~IFunction() = default;
void QEL::IFunction::Reserved1() {}
void QEL::IFunction::Reserved2() {}
void QEL::IFunction::Reserved3() {}
void QEL::IFunction::Reserved4() {}

QEL::IThreadBinder::~IThreadBinder() = default;

QEL::CThreadBinder::CThreadBinder() : started_(::CreateEventA(nullptr, FALSE, FALSE, nullptr)) {
    if (!started_) return;
    DWORD id = 0;
    thread_ = ::CreateThread(nullptr, 0, &Worker::Run, started_, 0, &id);
    if (!thread_) return;
    thread_id_ = id;
    ::Sleep(0);
    ::WaitForSingleObject(started_, INFINITE);
}

QEL::CThreadBinder::~CThreadBinder() {
    if (thread_) {
        if (thread_id_ == ::GetCurrentThreadId()) {
            ::PostQuitMessage(0);
        } else {
            PostWhenThereIsRoom(thread_id_, WM_QUIT, 0, 0);
            ::WaitForSingleObject(thread_, INFINITE);
        }
        ::CloseHandle(thread_);
    }
    if (started_) ::CloseHandle(started_);
}

void QEL::CThreadBinder::BindInvoke(IFunction* function) {
    if (!function) return;
    function->AddRef();
    const bool by_worker = thread_ && thread_id_ == ::GetCurrentThreadId();
    const bool posted =
        by_worker ? Worker::Current()->PostToSelf(function)
                  : thread_ && PostWhenThereIsRoom(thread_id_, kInvoke,
                                                   reinterpret_cast<WPARAM>(function), kMark);
    if (!posted) function->Release();
}

TRef<QEL::IThreadBinder> QEL::CreateSimpleThreadBinder() {
    return TRef<IThreadBinder>(new (std::nothrow) CThreadBinder);
}
