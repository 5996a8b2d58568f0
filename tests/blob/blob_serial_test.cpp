#include "blob/detail/blob_serial.h"

#include <gtest/gtest.h>

#include <string>

#include "support/formats_page.h"
#include "support/guarded_buffer.h"

namespace {

using kit::BlobForm;

kit::SerialBlob Read(const std::string& serial, BlobForm form) {
    GuardedBuffer buffer(serial.data(), serial.size());
    return kit::ReadBlobFromMemory(buffer.data(), static_cast<std::uint32_t>(serial.size()), form);
}

TEST(BlobSerial, IsWrittenWhereItFitsAndReadWhereAllOfItIs) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>("\x0A\x1B\x2C\xF0");
    const struct {
        kit::BlobView blob;
        std::string serial;
    } cases[] = {
        {{BlobForm::kBytes, bytes, 4, 0}, DumpedBytes("dump=blob")},
        {{BlobForm::kBits, bytes, 4, 4}, DumpedBytes("dump=bit-blob")},
        {{BlobForm::kBytes, bytes, 1, 0}, FromHex("01 00 00 00 0A")},
        {{BlobForm::kBits, nullptr, 0, 0x01020304}, FromHex("00 00 00 00 04 03 02 01")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(ToHex(c.serial.data(), c.serial.size()));
        const auto size = static_cast<std::uint32_t>(c.serial.size());
        GuardedBuffer room(std::string(size, '~').data(), size);
        EXPECT_EQ(0u, kit::WriteBlobToMemory(nullptr, 100, c.blob));
        EXPECT_EQ(0u, kit::WriteBlobToMemory(room.data(), size - 1, c.blob));
        EXPECT_EQ(std::string(size, '~'), std::string(room.text(), size));
        EXPECT_EQ(size, kit::WriteBlobToMemory(room.data(), size, c.blob));
        EXPECT_EQ(c.serial, std::string(room.text(), size));
        for (std::uint32_t part = 0; part < size; ++part) {
            EXPECT_NE(kit::BlobRead::kDone, Read(c.serial.substr(0, part), c.blob.form).outcome);
        }
        const auto read = Read(c.serial + '~', c.blob.form);
        EXPECT_EQ(kit::BlobRead::kDone, read.outcome);
        EXPECT_EQ(ToHex(c.blob.bytes, c.blob.count), ToHex(read.bytes.get(), read.count));
        EXPECT_EQ(c.blob.unused_bits, read.unused_bits);
    }
}

TEST(BlobSerial, TakesNoCountThatLies) {
    for (const char* count : {"06 00 00 00", "FC FF FF FF", "FF FF FF FF", "00 00 00 80"}) {
        const auto blob = Read(FromHex(count) + "abcde", BlobForm::kBits);
        EXPECT_TRUE(blob.outcome == kit::BlobRead::kRefused && !blob.bytes) << count;
    }
    unsigned char buffer[4] = {};
    EXPECT_NE(kit::BlobRead::kDone, kit::ReadBlobFromMemory(nullptr, 4, BlobForm::kBytes).outcome);
    // 4 + count does not fit 32 bits: no room is enough.
    EXPECT_EQ(0u, kit::WriteBlobToMemory(buffer, 4, {BlobForm::kBytes, buffer, 0xFFFFFFFF, 0}));
}

}  // namespace
