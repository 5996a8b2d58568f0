#include "file_com/detail/record_header.h"

#include <gtest/gtest.h>

#include <string>

#include "support/header_bytes.h"

namespace {

constexpr std::int64_t kMax = 0x7FFFFFFF;
constexpr std::int64_t kMin = -kMax - 1;

// A header read from these bytes.
struct Reading {
    Reading(const std::string& bytes, const CRecordInfo* info) {
        BytesSource source(bytes);
        verdict = kit::ReadHeader(source, info, short_header, block);
    }
    kit::RecordHeader header() { return kit::RecordHeader(block ? block.get() : short_header); }
    unsigned char short_header[36] = {};
    kit::HeaderBlock block;
    kit::HeaderVerdict verdict = {-1, false};
};

TEST(RecordHeader, TellsUnreadableFromDamaged) {
    CRecFieldInfo fields[] = {{kFileDataInteger, 4}, {kFileDataText, 4}};
    const CRecordInfo one(1, fields);
    const CRecordInfo two(2, fields);
    const CRecordInfo none(0, nullptr);
    constexpr bool kUnreadable = true;
    constexpr bool kRefused = false;
    const std::string fitting = Numbers({44, 8, 0, 0, 0, 0, 2, 2, 4, 1, 4});
    const struct {
        std::string bytes;
        int status;
        bool is_unreadable;
        const CRecordInfo* info = nullptr;
    } cases[] = {
        {"", 5, kUnreadable},
        {std::string("\x24\0\0", 3), 5, kUnreadable},
        {"this is no record file at all, but long enough", 5, kUnreadable},
        {fitting.substr(0, 43), 5, kUnreadable},
        {Numbers({-1, 8, 0, 0, 0, 0, 0, 0, 0}), 16, kUnreadable},
        {Numbers({kMin, 8, 0, 0, 0, 0, 0, 0, 0}), 16, kUnreadable},
        {Numbers({kMax, 8, 0, 0, 0, 0, 0, 0, 0}), 5, kUnreadable},
        {Numbers({kMax, 8, 0, 0, 0, 0, 0, 0, 0}), 74, kUnreadable, &one},
        {fitting, 74, kUnreadable, &one},  // more fields than described
        {std::string(100, '\0'), 74, kRefused},
        {Numbers({27, 8, 0, 0, 0, 0, 0, 0, 0}), 74, kRefused},
        {Numbers({36, -1, 0, 0, 0, 0, 0, 0, 0}), 74, kRefused},
        {Numbers({36, 8, -1, 0, 0, 0, 0, 0, 0}), 74, kRefused},
        {Numbers({36, 8, 0, 0, kMin, 0, 0, 0, 0}), 74, kRefused},
        {Numbers({36, 8, 0, 0, 0, -1, 0, 0, 0}), 74, kRefused},
        {Numbers({36, 8, 0, 0, 0, 0, -1, 0, 0}), 74, kRefused},
        {Numbers({36, 8, 0, 0, 0, 0, 2, 2, 4}), 74, kRefused},           // fields past the header
        {Numbers({36, 8, 0, 0, 0, 0, 0x20000001, 2, 4}), 74, kRefused},  // 8 x fields wraps to 8
        {Numbers({36, 8, 0, 0, 0, 0, 1, 2, -4}), 74, kRefused},
        {Numbers({36, 8, 0, 0, 0, 0, 1, 2, 5}), 74, kRefused, &two},  // longer than described
        {fitting, 0, kRefused, &none},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const Reading reading(c.bytes, c.info);
        EXPECT_EQ(c.status, reading.verdict.status);
        EXPECT_EQ(c.is_unreadable, reading.verdict.is_unreadable);
        EXPECT_FALSE(c.is_unreadable && reading.block) << "allocated for a length that is a lie";
    }
}

struct Changing : BytesSource {
    using BytesSource::BytesSource;
    int Read(unsigned char* to, std::size_t size) override {
        const int status = BytesSource::Read(to, size);
        if (size > 4) kit::StoreLe32(to, 0x7FFFFFFF);
        return status;
    }
};

TEST(RecordHeader, RefusesAHeaderThatChangesWhileItIsRead) {
    Changing source(Numbers({36, 8, 0, 0, 0, 0, 0, 0, 0}));
    unsigned char header[36];
    kit::HeaderBlock block;
    const auto verdict = kit::ReadHeader(source, nullptr, header, block);
    EXPECT_TRUE(verdict.status == 74 && !verdict.is_unreadable);
}

TEST(RecordHeader, FindsNoFieldThatLeavesItsRecord) {
    kit::FieldPlace place = {};
    Reading reading(Numbers({52, 8, 0, 0, 0, 0, 3, 0, kMax, 0, kMax, 0, 2}), nullptr);
    ASSERT_EQ(0, reading.verdict.status);
    EXPECT_FALSE(kit::FindField(reading.header(), 0, place));
    EXPECT_FALSE(kit::FindField(reading.header(), 2, place)) << "the sizes wrap to an offset of -2";
    Reading exact(Numbers({44, 8, 0, 0, 0, 0, 2, 0, 5, 0, 3}), nullptr);
    EXPECT_TRUE(kit::FindField(exact.header(), 1, place));
}

TEST(RecordHeader, LowersACountThatTheFileDoesNotHold) {
    using kit::CountFit;
    const struct {
        std::int64_t record_length, count;
        std::int64_t file_length;
        CountFit fit;
        int count_after;
    } cases[] = {
        {8, 3, 60, CountFit::kFits, 3},
        {8, 3, 100, CountFit::kFits, 3},
        {8, 3, 59, CountFit::kLowered, 2},
        {8, 3, 37, CountFit::kLowered, 0},
        {8, 3, 36, CountFit::kNothingBehind, 3},
        {0, kMax, 36, CountFit::kFits, kMax},
        {1, kMax, 37, CountFit::kLowered, 1},
        {0x10000, 0x10000, 100, CountFit::kLowered, 0},  // 32 bits would see a product of 0
        {kMax, kMax, 0x100000022, CountFit::kLowered, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.record_length << " x " << c.count);
        Reading reading(Numbers({36, c.record_length, c.count, 0, 0, 0, 0, 0, 0}), nullptr);
        ASSERT_EQ(0, reading.verdict.status);
        EXPECT_EQ(c.fit, kit::FitCount(reading.header(), c.file_length));
        EXPECT_EQ(c.count_after, reading.header().Count());
    }
}

}  // namespace
