#include "status/notify.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

// What the callback saw.
struct Seen {
    unsigned int message;
    FUNCTION_NOTIFYRECORD record;
    std::int64_t parameter;
};

ulong32 Remember(unsigned int message, const FUNCTION_NOTIFYRECORD* record, std::int64_t parameter,
                 std::uint64_t context) {
    *reinterpret_cast<Seen*>(context) = {message, *record, parameter};
    return 0xFFFFFFFE;
}

TEST(Notify, CallbackGetsTheRecordTheParameterAndItsContext) {
    Seen seen = {};
    const FUNCTION_NOTIFYSTRUCT target = {Remember, reinterpret_cast<std::uint64_t>(&seen)};
    EXPECT_EQ(0xFFFFFFFEu, SendNotifyMessageA(target, 0x8001, 0xFFFFFFFF, 0xFEDCBA9876543210, -2,
                                              std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(0x8001u, seen.message);
    EXPECT_EQ(0xFFFFFFFFu, seen.record.kind);
    EXPECT_EQ(-2, seen.parameter);
    EXPECT_EQ(0xFEDCBA9876543210u, seen.record.value);
    EXPECT_EQ(-2, seen.record.parameter);
    EXPECT_EQ(0x8000000000000000u, seen.record.extra);
    EXPECT_EQ(0u, SendNotifyMessageA({nullptr, 7}, 1, 2, 3, 4, 5));
}

}  // namespace
