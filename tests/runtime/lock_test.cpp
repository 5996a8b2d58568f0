#include "runtime/lock.h"

#include <gtest/gtest.h>

#include <objbase.h>

#include <thread>
#include <utility>

#include "runtime/code_instance.h"
#include "runtime/com_initializer.h"

namespace {

bool OtherThreadGets(QEL::CLock& lock) {
    bool got = false;
    std::thread([&] {
        got = lock.TryLock();
        if (got) lock.Unlock();
    }).join();
    return got;
}

TEST(Lock, LetsOneThreadInAsOftenAsItWants) {
    QEL::CLock lock;
    EXPECT_TRUE(OtherThreadGets(lock));
    lock.Lock();
    EXPECT_TRUE(lock.TryLock());
    EXPECT_FALSE(OtherThreadGets(lock));
    lock.Unlock();
    EXPECT_FALSE(OtherThreadGets(lock));
    lock.Unlock();
    EXPECT_TRUE(OtherThreadGets(lock));
}

TEST(Lock, EntersWhereThePlatformCannotTry) {
    QEL::CLock lock;
    ASSERT_TRUE(OtherThreadGets(lock));  // looks the function up
    const auto known = std::exchange(QEL::CLock::s_TryEnterCryticalSection, nullptr);
    EXPECT_TRUE(lock.TryLock());
    QEL::CLock::s_TryEnterCryticalSection = known;
    EXPECT_FALSE(OtherThreadGets(lock));
    lock.Unlock();
}

TEST(ComInitializer, EndsOnlyWhatItBegan) {
    const auto kind = [](DWORD wanted) {  // S_OK: there was no apartment
        const HRESULT result = CoInitializeEx(nullptr, wanted);
        if (SUCCEEDED(result)) CoUninitialize();
        return result;
    };
    {
        const QEL::CCOMInitializer outer(COINIT_MULTITHREADED);
        { const QEL::CCOMInitializer refused(COINIT_APARTMENTTHREADED); }
        EXPECT_EQ(S_FALSE, kind(COINIT_MULTITHREADED));
    }
    EXPECT_EQ(S_OK, kind(COINIT_APARTMENTTHREADED));
}

TEST(CodeInstance, IsTheModuleOfTheCaller) {
    EXPECT_EQ(GetModuleHandleA(nullptr), QEL::GetCurrentCodeInstance());
}

}  // namespace
