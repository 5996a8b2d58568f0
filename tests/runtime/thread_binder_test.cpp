#include "runtime/thread_binder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <numeric>
#include <thread>
#include <vector>

#include "support/handle_count.h"
#include "support/import_patch.h"

namespace {

using Worker = TRef<QEL::IThreadBinder>;

std::atomic<int> g_functions{0};  // alive

class Function : public QEL::IFunction {
public:
    explicit Function(std::function<void()> work) : work_(std::move(work)) { ++g_functions; }
    ~Function() override { --g_functions; }
    void Invoke() override { work_(); }

private:
    const std::function<void()> work_;
};

void Post(const Worker& worker, std::function<void()> work) {
    worker->BindInvoke(new Function(std::move(work)));
}

std::vector<int> Numbers(std::size_t count) {
    std::vector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

TEST(ThreadBinder, RunsEachFunctionOnceInEachPostersOrder) {
    constexpr int kPosters = 4, kEach = 25000;
    std::vector<int> ran[kPosters];
    DWORD ran_by = 0;
    {
        const Worker worker = QEL::CreateSimpleThreadBinder();
        std::vector<std::thread> posters;
        for (auto& numbers : ran) {
            posters.emplace_back([&] {
                for (int i = 0; i < kEach; ++i) Post(worker, [&, i] { numbers.push_back(i); });
            });
        }
        for (auto& poster : posters) poster.join();
        Post(worker, [&] { ran_by = GetCurrentThreadId(); });
        worker->BindInvoke(nullptr);
    }  // waits for all of them
    for (const auto& numbers : ran) EXPECT_EQ(Numbers(kEach), numbers);
    EXPECT_NE(GetCurrentThreadId(), ran_by);
    EXPECT_EQ(0, g_functions);
}

TEST(ThreadBinder, LeavesNoHandleAndNoThread) {
    QEL::CreateSimpleThreadBinder();  // what the system makes once
    const auto before = HandleCount();
    for (int i = 0; i < 1000; ++i) QEL::CreateSimpleThreadBinder();
    EXPECT_NEAR(before, HandleCount(), 100);
}

// Three of four posts find the queue full.
BOOL WINAPI PostIntoANarrowQueue(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam) {
    static std::atomic<unsigned> count{0};
    if (++count % 4 == 0) return PostThreadMessageA(thread, message, wparam, lparam);
    SetLastError(ERROR_NOT_ENOUGH_QUOTA);
    return FALSE;
}

TEST(ThreadBinder, LosesNothingWhileTheQueueIsFull) {
    const ImportPatch post(kLibrary, "PostThreadMessageA", &PostIntoANarrowQueue);
    std::vector<int> from_outside, from_worker;
    {
        const Worker worker = QEL::CreateSimpleThreadBinder();
        for (int i = 0; i < 20; ++i) Post(worker, [&, i] { from_outside.push_back(i); });
        Post(worker, [&, binder = worker.get()] {
            for (int i = 0; i < 20; ++i) {
                binder->BindInvoke(new Function([&, i] { from_worker.push_back(i); }));
            }
        });
    }
    EXPECT_EQ(Numbers(20), from_outside);
    EXPECT_EQ(Numbers(20), from_worker);
}

HANDLE WINAPI NoThread(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD, DWORD*) {
    return nullptr;
}

TEST(ThreadBinder, ReleasesFunctionsUnrunWithoutAThread) {
    const ImportPatch thread(kLibrary, "CreateThread", &NoThread);
    const int before = g_functions;
    Post(QEL::CreateSimpleThreadBinder(), [] { ADD_FAILURE(); });
    EXPECT_EQ(before, g_functions);
}

}  // namespace
