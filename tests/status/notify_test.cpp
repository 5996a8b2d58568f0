#include "status/notify.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>

namespace {

// What the callback saw.
struct Seen {
    unsigned int message = 0;
    FUNCTION_NOTIFYRECORD record{};
    std::int64_t parameter = 0;
};

ulong32 Remember(unsigned int message, const FUNCTION_NOTIFYRECORD* record, std::int64_t parameter,
                 std::uint64_t context) {
    *reinterpret_cast<Seen*>(context) = {message, *record, parameter};
    return 0xFFFFFFFE;
}

TEST(Notify, CallbackGetsTheRecordTheParameterAndItsContext) {
    Seen seen;
    const FUNCTION_NOTIFYSTRUCT target = {Remember, reinterpret_cast<std::uint64_t>(&seen)};
    EXPECT_EQ(0xFFFFFFFEu, SendNotifyMessageA(target, 0x8001, 0xFFFFFFFF, 0xFEDCBA9876543210, -2,
                                              std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(0x8001u, seen.message);
    EXPECT_EQ(0xFFFFFFFFu, seen.record.kind);
    EXPECT_EQ(0xFEDCBA9876543210u, seen.record.value);
    EXPECT_EQ(-2, seen.record.parameter);
    EXPECT_EQ(0x8000000000000000u, seen.record.extra);
    EXPECT_EQ(-2, seen.parameter);
}

TEST(Notify, NoCallbackGivesZero) {
    EXPECT_EQ(0u, SendNotifyMessageA({nullptr, 7}, 1, 2, 3, 4, 5));
}

TEST(Notify, RecordIsLaidOutAsCallbacksReadIt) {
    EXPECT_EQ(0u, offsetof(FUNCTION_NOTIFYRECORD, kind));
    EXPECT_EQ(8u, offsetof(FUNCTION_NOTIFYRECORD, value));
    EXPECT_EQ(16u, offsetof(FUNCTION_NOTIFYRECORD, parameter));
    EXPECT_EQ(24u, offsetof(FUNCTION_NOTIFYRECORD, extra));
}

}  // namespace
