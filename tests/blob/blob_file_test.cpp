// Blobs in files.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "blob/crypt_bit_blob.h"
#include "blob/ident_obj.h"
#include "file_com/qel_file.h"
#include "support/hex_bytes.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

constexpr ulong32 kHere = 0xFFFFFFFF;
const std::string kAbc = FromHex("03 00 00 00 61 62 63");
const std::string kAbcBits = kAbc + FromHex("05 00 00 00");

std::string Hex(const CRYPTOAPI_BLOB& blob) { return ToHex(blob.pbData, blob.cbData); }

CQELCryptBitBlob BitBlob(const char* text, ulong32 unused_bits) {
    CQELCryptBitBlob blob;
    blob.Assign(text, static_cast<ulong32>(std::strlen(text)));
    blob.cUnusedBits = unused_bits;
    return blob;
}

class BlobFile : public testing::Test {
protected:
    CQELFile Open(const std::string& bytes, const char* mode = "r+b", bool raise = false) {
        return CQELFile(folder_.Write("blobs", bytes).c_str(), mode, raise);
    }
    std::string Written() { return folder_.Read("blobs"); }

    TempFolder folder_;
};

TEST_F(BlobFile, IsReadAtAnOffsetAndAtThePosition) {
    const CQELFile file = Open("__" + kAbcBits + kAbcBits);
    IdentObj blob;
    EXPECT_EQ(7u, blob.ReadData(file, 2));
    EXPECT_EQ("61 62 63", Hex(blob));
    CQELCryptBitBlob bits;
    EXPECT_EQ(11u, bits.ReadData(file, 2));
    EXPECT_EQ("61 62 63", Hex(bits));
    EXPECT_EQ(5u, bits.cUnusedBits);
    bits.Empty();
    EXPECT_EQ(11u, bits.ReadData(file, kHere));  // the second one
    EXPECT_EQ("61 62 63", Hex(bits));
    EXPECT_EQ(24u, file.CurPos());
}

TEST_F(BlobFile, LeavesABlobEmptyThatIsCutOff) {
    for (std::size_t size = 0; size < kAbcBits.size(); ++size) {
        SCOPED_TRACE(size);
        const CQELFile file = Open("__" + kAbcBits.substr(0, size));
        IdentObj blob("old", 3);
        EXPECT_EQ(size < 7 ? 0u : 7u, blob.ReadData(file, 2));
        EXPECT_EQ(size < 4 ? "6F 6C 64" : size < 7 ? "" : "61 62 63", Hex(blob));
        CQELCryptBitBlob bits = BitBlob("old", 1);
        EXPECT_EQ(0u, bits.ReadData(file, 2));
        EXPECT_TRUE(bits.IsEmpty());
        EXPECT_EQ(0u, bits.cUnusedBits);
    }
}

TEST_F(BlobFile, KeepsTheBlobWhenTheCountLies) {
    for (const char* count : {"04 00 00 80", "FF FF FF FF", "0B 00 00 00"}) {
        SCOPED_TRACE(count);
        const CQELFile file = Open("__" + FromHex(count) + "abcd");  // 8 bytes from offset 2 on
        IdentObj blob("old", 3);
        EXPECT_EQ(0u, blob.ReadData(file, 2));
        EXPECT_EQ("6F 6C 64", Hex(blob));
        file.Seek(2, SEEK_SET);
        EXPECT_EQ(0u, blob.ReadData(file, kHere));
        EXPECT_EQ("6F 6C 64", Hex(blob));
    }
    // A count no greater than the rest of the file is tried; there are four bytes too few.
    const CQELFile file = Open("__" + FromHex("08 00 00 00") + "abcd");
    IdentObj blob("old", 3);
    EXPECT_EQ(0u, blob.ReadData(file, 2));
    EXPECT_TRUE(blob.IsEmpty());
}

TEST_F(BlobFile, EndsForBlobsWhereItStillBeginsForBitBlobs) {
    const CQELFile file = Open(kAbcBits);
    for (const ulong32 offset : {11u, 12u, 0xFFFFFFFEu}) {
        SCOPED_TRACE(offset);
        IdentObj blob("old", 3);
        EXPECT_EQ(0u, blob.ReadData(file, offset));
        EXPECT_EQ("6F 6C 64", Hex(blob));
        CQELCryptBitBlob bits = BitBlob("old", 1);
        EXPECT_EQ(0u, bits.ReadData(file, offset));
        EXPECT_EQ(offset == 11 ? "" : "6F 6C 64", Hex(bits));
    }
    const CQELFile closed(nullptr, nullptr, false);
    IdentObj blob("old", 3);
    EXPECT_EQ(0u, blob.ReadData(closed, 0));
    EXPECT_EQ(0u, blob.ReadData(closed, kHere));
    EXPECT_EQ("6F 6C 64", Hex(blob));
}

TEST_F(BlobFile, IsWrittenAtAnOffsetAndAtThePosition) {
    {
        CQELFile file = Open("0123456789");
        EXPECT_EQ(7u, IdentObj("abc", 3).WriteData(file, 2));
        EXPECT_EQ(11u, BitBlob("abc", 5).WriteData(file, kHere));
        EXPECT_EQ(4u, IdentObj().WriteData(file, 20));  // written, but not yet in the file
        EXPECT_EQ(0u, IdentObj().WriteData(file, 25));
        IdentObj blob;
        EXPECT_EQ(7u, blob.ReadData(file, 2));  // reading follows writing
        EXPECT_EQ("61 62 63", Hex(blob));
    }
    EXPECT_EQ("01" + kAbc + kAbcBits + std::string(4, '\0'), Written());
    CQELFile closed(nullptr, nullptr, false);
    EXPECT_EQ(0u, IdentObj().WriteData(closed, kHere));
}

TEST_F(BlobFile, ReachesBeyondTwoGigabytes) {
    constexpr ulong32 kFar = 0x80000010;
    CQELFile file = Open("");
    file.Seek(0x7FFFFFFF, SEEK_SET);
    file.Seek(0x11, SEEK_CUR);
    file.Write("x", 1);  // a file with a hole
    file.Flush();
    ASSERT_EQ(kFar + 1, file.Length());
    EXPECT_EQ(7u, IdentObj("abc", 3).WriteData(file, kFar));
    IdentObj blob;
    EXPECT_EQ(7u, blob.ReadData(file, kFar));
    EXPECT_EQ("61 62 63", Hex(blob));
}

std::size_t room_on_disk = 0;

// Takes what there is room for, as fwrite does when the disk is full.
std::size_t WriteToFullDisk(const void* from, std::size_t, std::size_t count, FILE* stream) {
    const std::size_t taken = count < room_on_disk ? count : room_on_disk;
    room_on_disk -= taken;
    std::fwrite(from, 1, taken, stream);
    errno = 28;
    return taken;
}

TEST_F(BlobFile, KeepsNoPartOfARecordThatDoesNotFitTheDisk) {
    for (const bool raise : {false, true}) {
        for (std::size_t room = 0; room < kAbcBits.size(); ++room) {
            SCOPED_TRACE(room);
            CQELFile file = Open("before, and what is overwritten", "r+b", raise);
            const ImportPatch full_disk(kLibrary, "fwrite", &WriteToFullDisk);
            room_on_disk = room;
            if (raise) {
                EXPECT_THROW(BitBlob("abc", 5).WriteData(file, 6), XQELFile);
            } else {
                EXPECT_EQ(0u, BitBlob("abc", 5).WriteData(file, 6));
                EXPECT_EQ(6, file.Status());  // still told
            }
            file.Close();
            EXPECT_EQ("before", Written());
        }
    }
}

}  // namespace
