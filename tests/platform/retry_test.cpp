#include "platform/retry.h"

#include <gtest/gtest.h>

namespace {

using kit::Failure;

struct Outcome {
    int attempts = 0;
    int pauses = 0;
    bool done = false;
};

// Fails every attempt before `succeed_at` (1-based; 0 never succeeds) for the reason that
// `judge(attempt)` gives.
template <typename Judge>
Outcome Retry(int succeed_at, Judge judge) {
    Outcome outcome;
    outcome.done = kit::RetryWhileBusy(
        [&] { return ++outcome.attempts == succeed_at; }, [&] { return judge(outcome.attempts); },
        [&](unsigned ms) { outcome.pauses += ms == kit::kBusyPauseMs; });
    return outcome;
}

TEST(RetryWhileBusy, CountsAttemptsAndPausesByTheReasonOfEachFailure) {
    const struct {
        const char* name;
        int succeed_at;
        Failure (*judge)(int);
        int attempts, pauses;
        bool done;
    } cases[] = {
        {"first try", 1, [](int) { return Failure::kBusy; }, 1, 0, true},
        {"released in time", 3, [](int) { return Failure::kBusy; }, 3, 2, true},
        {"held for ever", 0, [](int) { return Failure::kBusy; }, 20, 19, false},
        {"refused for ever", 0, [](int) { return Failure::kRefused; }, 20, 0, false},
        {"not there", 0, [](int) { return Failure::kGone; }, 2, 0, false},
        {"comes back at once", 2, [](int) { return Failure::kGone; }, 2, 0, true},
        {"goes while we wait", 0,
         [](int attempt) { return attempt < 5 ? Failure::kBusy : Failure::kGone; }, 6, 4, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Outcome outcome = Retry(c.succeed_at, c.judge);
        EXPECT_EQ(c.attempts, outcome.attempts);
        EXPECT_EQ(c.pauses, outcome.pauses);
        EXPECT_EQ(c.done, outcome.done);
    }
}

}  // namespace
