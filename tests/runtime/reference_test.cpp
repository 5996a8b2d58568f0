#include "runtime/reference.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
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

TEST(Reference, DeletesItselfOnItsLastReleaseAndCopiesNoCount) {
    std::atomic<int> deaths{0};
    auto* const shared = new Counted(deaths);
    EXPECT_TRUE(shared->IsSingleOwner());
    EXPECT_EQ(2, shared->AddRef());
    auto* const copy = new Counted(*shared);
    EXPECT_TRUE(copy->IsSingleOwner());
    *copy = *shared;
    EXPECT_TRUE(copy->IsSingleOwner());
    *shared = *copy;
    EXPECT_FALSE(shared->IsSingleOwner());
    EXPECT_EQ(0, copy->Release());
    EXPECT_EQ(1, shared->Release());
    EXPECT_EQ(1, deaths);
    EXPECT_EQ(0, shared->Release());
    EXPECT_EQ(2, deaths);
}

TEST(Reference, OwnersReleaseFromSeveralThreads) {
    std::atomic<int> deaths{0}, last_releases{0};
    auto* const body = new Counted(deaths);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        body->AddRef();
        threads.emplace_back([&] {
            for (int round = 0; round < 20000; ++round) {
                body->AddRef();
                last_releases += body->Release() == 0;
            }
            last_releases += body->Release() == 0;  // the owner that this thread was given
        });
    }
    last_releases += body->Release() == 0;
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(1, last_releases);
    EXPECT_EQ(1, deaths);
}

TEST(Reference, CheckRefusesNullOnly) {
    std::atomic<int> deaths{0};
    Counted body(deaths);
    EXPECT_NO_THROW(CQELReference::CheckImplementation(&body));
    try {
        CQELReference::CheckImplementation(nullptr);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const XQELStatus& failure) {
        EXPECT_EQ(117, failure.Status());
        EXPECT_THROW(failure.XQELMsg::SetError(), XQELStatus) << "its raise flag is set";
    }
}

}  // namespace
