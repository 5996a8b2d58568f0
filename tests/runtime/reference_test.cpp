#include "runtime/reference.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

#include "status/qel_status.h"

namespace {

// A body that counts its deaths.
class Counted : public CQELReference {
public:
    explicit Counted(std::atomic<int>& deaths) : deaths_(deaths) {}
    Counted(const Counted&) = default;
    Counted& operator=(const Counted&) { return *this; }
    ~Counted() override { ++deaths_; }

private:
    std::atomic<int>& deaths_;
};

TEST(Reference, DeletesItselfOnItsLastRelease) {
    std::atomic<int> deaths{0};
    auto* const body = new Counted(deaths);
    EXPECT_TRUE(body->IsSingleOwner());
    EXPECT_EQ(2, body->AddRef());
    EXPECT_FALSE(body->IsSingleOwner());
    EXPECT_EQ(1, body->Release());
    EXPECT_TRUE(body->IsSingleOwner());
    EXPECT_EQ(0, deaths);
    EXPECT_EQ(0, body->Release());
    EXPECT_EQ(1, deaths);
}

TEST(Reference, CopiesNeverTakeTheCount) {
    std::atomic<int> deaths{0};
    auto* const shared = new Counted(deaths);
    shared->AddRef();
    auto* const copy = new Counted(*shared);
    EXPECT_TRUE(copy->IsSingleOwner());
    *copy = *shared;
    EXPECT_TRUE(copy->IsSingleOwner());
    *shared = *copy;
    EXPECT_FALSE(shared->IsSingleOwner());
    EXPECT_EQ(0, copy->Release());
    EXPECT_EQ(1, shared->Release());
    EXPECT_EQ(0, shared->Release());
    EXPECT_EQ(2, deaths);
}

TEST(Reference, OwnersReleaseFromSeveralThreads) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 20000;
    std::atomic<int> deaths{0};
    std::atomic<int> last_releases{0};
    auto* const body = new Counted(deaths);
    const auto own_and_drop = [&] {
        for (int i = 0; i < kRounds; ++i) {
            body->AddRef();
            if (body->Release() == 0) ++last_releases;
        }
        if (body->Release() == 0) ++last_releases;  // the owner that this thread was given
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        body->AddRef();
        threads.emplace_back(own_and_drop);
    }
    if (body->Release() == 0) ++last_releases;
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(1, last_releases);
    EXPECT_EQ(1, deaths);
}

TEST(Reference, CheckRefusesNullOnly) {
    std::atomic<int> deaths{0};
    auto* const body = new Counted(deaths);
    EXPECT_NO_THROW(CQELReference::CheckImplementation(body));
    body->Release();
    try {
        CQELReference::CheckImplementation(nullptr);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const XQELStatus& failure) {
        EXPECT_EQ(117, failure.Status());
        EXPECT_THROW(failure.XQELMsg::SetError(), XQELStatus) << "its raise flag is set";
    }
}

#ifdef __GNUC__
// Callers that were compiled apart call through the table: two destructors, AddRef, Release.
TEST(Reference, VirtualFunctionsKeepTheirOrder) {
    using Count = long32 (*)(CQELReference*);
    std::atomic<int> deaths{0};
    CQELReference* const body = new Counted(deaths);
    void* const* const table = *reinterpret_cast<void* const* const*>(body);
    EXPECT_EQ(2, reinterpret_cast<Count>(table[2])(body));
    EXPECT_EQ(1, reinterpret_cast<Count>(table[3])(body));
    body->Release();
}
#endif

}  // namespace
