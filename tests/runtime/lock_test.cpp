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

bool IsInApartment() {
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier)) &&
           qualifier != APTTYPEQUALIFIER_IMPLICIT_MTA;
}

TEST(ComInitializer, EndsOnlyWhatItBegan) {
    EXPECT_FALSE(IsInApartment());
    {
        const QEL::CCOMInitializer outer(COINIT_MULTITHREADED);
        { const QEL::CCOMInitializer again(COINIT_MULTITHREADED); }
        { const QEL::CCOMInitializer refused(COINIT_APARTMENTTHREADED); }
        EXPECT_TRUE(IsInApartment());
    }
    EXPECT_FALSE(IsInApartment());
}

TEST(CodeInstance, IsTheModuleOfTheCaller) {
    EXPECT_EQ(GetModuleHandleA(nullptr), QEL::GetCurrentCodeInstance());
}

}  // namespace
