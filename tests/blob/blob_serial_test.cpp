#include "blob/detail/blob_serial.h"

#include <gtest/gtest.h>

#include <string>

#include "support/formats_page.h"
#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"

namespace {

using kit::BlobForm;
using kit::BlobRead;

kit::SerialBlob Read(const std::string& serial, BlobForm form) {
    const GuardedBuffer buffer(serial.data(), serial.size());
    return kit::ReadBlobFromMemory(const_cast<GuardedBuffer&>(buffer).data(),
                                   static_cast<std::uint32_t>(serial.size()), form);
}

TEST(BlobSerial, IsReadFromEverythingThatHoldsIt) {
    const std::string serial = FromHex("03 00 00 00 61 62 63 05 00 00 00 99");
    for (std::size_t size = 0; size <= serial.size(); ++size) {
        SCOPED_TRACE(size);
        const std::string part = serial.substr(0, size);
        const auto bytes = Read(part, BlobForm::kBytes);
        EXPECT_EQ(size >= 7, bytes.outcome == BlobRead::kDone);
        const auto bits = Read(part, BlobForm::kBits);
        EXPECT_EQ(size >= 11, bits.outcome == BlobRead::kDone);
        if (size < 11) continue;
        EXPECT_EQ("61 62 63", ToHex(bytes.bytes.get(), bytes.count));
        EXPECT_EQ("61 62 63", ToHex(bits.bytes.get(), bits.count));
        EXPECT_EQ(5u, bits.unused_bits);
    }
    EXPECT_NE(BlobRead::kDone, kit::ReadBlobFromMemory(nullptr, 100, BlobForm::kBytes).outcome);
    EXPECT_EQ(BlobRead::kDone, Read(FromHex("00 00 00 00"), BlobForm::kBytes).outcome);
}

TEST(BlobSerial, AllocatesNothingForACountThatLies) {
    for (const char* count : {"06 00 00 00", "FC FF FF FF", "FF FF FF FF", "00 00 00 80"}) {
        for (const BlobForm form : {BlobForm::kBytes, BlobForm::kBits}) {
            const auto blob = Read(FromHex(count) + "abcde", form);
            EXPECT_EQ(BlobRead::kRefused, blob.outcome) << count;
            EXPECT_EQ(nullptr, blob.bytes.get()) << count;
        }
    }
}

TEST(BlobSerial, IsWrittenOnlyWhereItFits) {
    const auto* const abc = reinterpret_cast<const unsigned char*>("abc");
    const struct {
        kit::BlobView blob;
        const char* serial;
    } cases[] = {
        {{BlobForm::kBytes, abc, 3, 5}, "03 00 00 00 61 62 63"},
        {{BlobForm::kBits, abc, 3, 5}, "03 00 00 00 61 62 63 05 00 00 00"},
        {{BlobForm::kBytes, nullptr, 0, 0}, "00 00 00 00"},
        {{BlobForm::kBits, nullptr, 0, 0x01020304}, "00 00 00 00 04 03 02 01"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.serial);
        const std::string serial = FromHex(c.serial);
        const auto size = static_cast<std::uint32_t>(serial.size());
        GuardedBuffer exact(size);
        EXPECT_EQ(size, kit::WriteBlobToMemory(exact.data(), size, c.blob));
        EXPECT_EQ(c.serial, ToHex(exact.data(), size));
        unsigned char untouched[16] = {};
        EXPECT_EQ(0u, kit::WriteBlobToMemory(untouched, size - 1, c.blob));
        EXPECT_EQ(0, untouched[0]);
        EXPECT_EQ(0u, kit::WriteBlobToMemory(nullptr, 100, c.blob));
    }
    // 4 + count does not fit 32 bits: no room is enough.
    unsigned char small[4];
    EXPECT_EQ(0u, kit::WriteBlobToMemory(small, 4, {BlobForm::kBytes, abc, 0xFFFFFFFF, 0}));
}

TEST(FormatsPage, ShowsTheBlobsAsTheyAreWritten) {
    const std::string bytes = FromHex("0A 1B 2C F0");
    const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
    unsigned char out[12];
    EXPECT_EQ(8u, kit::WriteBlobToMemory(out, sizeof out, {BlobForm::kBytes, data, 4, 0}));
    const std::string blob = DumpedBytes("dump=blob");
    EXPECT_EQ(ToHex(blob.data(), blob.size()), ToHex(out, 8));
    EXPECT_EQ(12u, kit::WriteBlobToMemory(out, sizeof out, {BlobForm::kBits, data, 4, 4}));
    const std::string bit_blob = DumpedBytes("dump=bit-blob");
    EXPECT_EQ(ToHex(bit_blob.data(), bit_blob.size()), ToHex(out, 12));
}

}  // namespace
