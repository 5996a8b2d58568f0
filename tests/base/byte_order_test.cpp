#include "base/byte_order.h"

#include <gtest/gtest.h>

TEST(ByteReader, TakesFieldsLittleEndianAndStopsForGoodAtTheEnd) {
    const unsigned char bytes[] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99};
    kit::ByteReader reader(bytes, sizeof bytes);
    EXPECT_EQ(0x11, reader.U8());
    EXPECT_EQ(0x3322, reader.U16());
    EXPECT_EQ(0x77665544u, reader.U32());
    EXPECT_EQ(2u, reader.left());
    EXPECT_EQ(0u, reader.U32());  // two bytes are not enough for a field of four
    EXPECT_FALSE(reader.ok());
    EXPECT_EQ(0, reader.U8());  // though one is there
    EXPECT_EQ(2u, reader.left());
}

TEST(ByteWriter, NeverPassesItsRoom) {
    unsigned char bytes[8] = {0, 0, 0, 0, 0, 0, 0, 0xEE};
    kit::ByteWriter writer(bytes, 7);
    writer.U32(0x44332211);
    writer.U16(0x6655);
    EXPECT_TRUE(writer.ok());
    writer.Bytes("ab", 2);
    EXPECT_FALSE(writer.ok());
    writer.U8(0x77);
    EXPECT_EQ(6u, writer.written());
    const unsigned char expected[8] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0, 0xEE};
    EXPECT_EQ(0, memcmp(expected, bytes, sizeof bytes));
}
