// Blobs in files.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
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

CQELCryptBitBlob BitBlob(const char* text, ulong32 unused_bits) {
    CQELCryptBitBlob blob;
    blob.Assign(text, static_cast<ulong32>(std::strlen(text)));
    blob.cUnusedBits = unused_bits;
    return blob;
}

// The result of reading a blob, then what it holds afterwards: before, it held "old".
template <typename Blob>
std::string Read(const CQELFile& file, ulong32 offset) {
    Blob blob;
    blob.Assign("old", 3);
    const ulong32 result = blob.ReadData(file, offset);
    return std::to_string(result) + std::string(reinterpret_cast<char*>(blob.pbData), blob.cbData);
}

class BlobFile : public testing::Test {
protected:
    CQELFile Open(const std::string& bytes, bool raise = false) {
        return CQELFile(folder_.Write("blobs", bytes).c_str(), "r+b", raise);
    }

    TempFolder folder_;
};

TEST_F(BlobFile, IsEmptiedByARecordThatIsCutOffAndKeptWhenTheCountLies) {
    const struct {
        std::string bytes, blob, bits;
    } cases[] = {
        {kAbcBits + "more", "7abc", "11abc"},
        {kAbcBits.substr(0, 10), "7abc", "0"},
        {kAbcBits.substr(0, 7), "7abc", "0"},
        {kAbcBits.substr(0, 6), "0", "0"},
        {kAbcBits.substr(0, 4), "0", "0"},
        {kAbcBits.substr(0, 3), "0old", "0"},
        {FromHex("08 00 00 00") + "abcd", "0", "0"},  // no more than what is there: it is tried
        {FromHex("0B 00 00 00") + "abcd", "0old", "0"},
        {FromHex("04 00 00 80") + "abcd", "0old", "0"},
        {FromHex("FF FF FF FF") + "abcd", "0old", "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const CQELFile file = Open("__" + c.bytes);
        EXPECT_EQ(c.blob, Read<IdentObj>(file, 2));
        EXPECT_EQ(c.bits, Read<CQELCryptBitBlob>(file, 2));
        file.Seek(2, SEEK_SET);
        EXPECT_EQ(c.blob, Read<IdentObj>(file, kHere));
    }
}

TEST_F(BlobFile, EndsForBlobsWhereItStillBeginsForBitBlobs) {
    const CQELFile file = Open(kAbcBits), closed(nullptr, nullptr, false);
    for (const ulong32 offset : {11u, 12u, 0xFFFFFFFEu}) {
        EXPECT_EQ("0old", Read<IdentObj>(file, offset)) << offset;
        EXPECT_EQ(offset == 11 ? "0" : "0old", Read<CQELCryptBitBlob>(file, offset)) << offset;
        EXPECT_EQ("0old", Read<IdentObj>(closed, offset)) << offset;
    }
    // A count greater than what is behind the offset, but not than the whole file.
    EXPECT_EQ("0old", Read<IdentObj>(Open("__" + FromHex("09 00 00 00") + "abcd"), 2));
}

TEST_F(BlobFile, IsWrittenAtAnOffsetAndAtThePosition) {
    {
        CQELFile file = Open("0123456789");
        EXPECT_EQ(7u, IdentObj("abc", 3).WriteData(file, 2));
        EXPECT_EQ(11u, BitBlob("abc", 5).WriteData(file, kHere));
        EXPECT_EQ(4u, IdentObj().WriteData(file, 20));  // written, but not yet in the file
        EXPECT_EQ(0u, IdentObj().WriteData(file, 25));
        CQELCryptBitBlob bits = BitBlob("old", 1);
        EXPECT_EQ(11u, bits.ReadData(file, 9));  // reading follows writing
        EXPECT_TRUE(bits == BitBlob("abc", 5));
        EXPECT_EQ(0u, bits.ReadData(file, 20));
        EXPECT_TRUE(bits == CQELCryptBitBlob());
    }
    EXPECT_EQ("01" + kAbc + kAbcBits + std::string(4, '\0'), folder_.Read("blobs"));
    CQELFile closed(nullptr, nullptr, false);
    EXPECT_EQ(0u, IdentObj().WriteData(closed, kHere));
}

TEST_F(BlobFile, ReachesBeyondTwoGigabytes) {
    constexpr ulong32 kFar = 0x80000010;
    SetLength(folder_.Write("far", ""), kFar + 1);  // a file with a hole
    CQELFile file((folder_ / "far").c_str(), "r+b", false);
    EXPECT_EQ(7u, IdentObj("abc", 3).WriteData(file, kFar));
    EXPECT_EQ("7abc", Read<IdentObj>(file, kFar));
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
    for (std::size_t room = 0; room < 2 * kAbcBits.size(); ++room) {
        SCOPED_TRACE(room);
        const bool raise = room % 2 != 0;
        CQELFile file = Open("before, and what is overwritten", raise);
        const ImportPatch full_disk(kLibrary, "fwrite", &WriteToFullDisk);
        room_on_disk = room / 2;
        if (raise) {
            EXPECT_THROW(BitBlob("abc", 5).WriteData(file, 6), XQELFile);
        } else {
            EXPECT_EQ(0u, BitBlob("abc", 5).WriteData(file, 6));
            EXPECT_EQ(6, file.Status());  // still told
        }
        file.Close();
        EXPECT_EQ("before", folder_.Read("blobs"));
    }
}

}  // namespace
