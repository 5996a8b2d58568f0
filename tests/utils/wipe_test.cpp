#include "utils/wipe.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

// What the disk holds of the file that is being wiped, after each pass.
const TempFolder* folder;
std::vector<std::string> after_pass;
std::uint64_t written = 0;

int __cdecl LookAfterFlush(FILE* stream) {
    const int result = std::fflush(stream);
    after_pass.push_back(folder->Read("file"));
    return result;
}
std::size_t __cdecl CountOnly(const void*, std::size_t size, std::size_t count, FILE*) {
    written += size * count;
    return count;
}
std::size_t __cdecl FailToWrite(const void*, std::size_t, std::size_t, FILE*) { return 0; }

class WipeFile : public ::testing::Test, protected TempFolder {
protected:
    WipeFile() { folder = this; }
    ulong32 Wipe() { return QELUtils::WipeFile((*this / "file").c_str()); }
};

// Every other word inverted.
std::string Inverted(std::string bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] ^= i % 4 < 2 ? '\xFF' : '\0';
    return bytes;
}

TEST_F(WipeFile, OverwritesEverythingThreeTimes) {
    const ImportPatch flush(kLibrary, "fflush", &LookAfterFlush);
    for (const std::size_t size : {0, 1, 16383, 16384, 16385, 1000003}) {
        SCOPED_TRACE(size);
        after_pass.clear();
        Write("file", std::string(size, 'x'));
        std::srand(5);
        EXPECT_EQ(0u, Wipe());
        EXPECT_FALSE(Has("file"));
        ASSERT_EQ(3u, after_pass.size());
        for (const auto& content : after_pass) ASSERT_EQ(size, content.size());
        EXPECT_TRUE(Inverted(after_pass[0]) == after_pass[1]);
        if (size == 0) continue;
        EXPECT_NE('x', after_pass[0].back());
        EXPECT_NE(after_pass[1], after_pass[2]);
        std::srand(5);
        EXPECT_EQ(static_cast<char>(std::rand()), after_pass[0][0]);
    }
}

TEST_F(WipeFile, TakesLengthsBeyond32Bits) {
    SetLength(Write("file", ""), 0x100000007);
    const ImportPatch write(kLibrary, "fwrite", &CountOnly);
    EXPECT_EQ(0u, Wipe());
    EXPECT_EQ(3u * 0x100000007u, written);
    EXPECT_FALSE(Has("file"));
}

TEST_F(WipeFile, ReadOnlyGoesAndWhatCannotBeWipedStays) {
    SetFileAttributesA(Write("file", "1").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(0u, Wipe());
    EXPECT_EQ(2u, Wipe());  // it is gone
    EXPECT_EQ(206u, QELUtils::WipeFile(std::string(260, 'a').c_str()));
    HeldFile held(Write("file", "1"));
    EXPECT_EQ(32u, Wipe());
    held.Release();
    const ImportPatch write(kLibrary, "fwrite", &FailToWrite);
    EXPECT_NE(0u, Wipe());
    EXPECT_EQ("1", Read("file"));
}

}  // namespace
