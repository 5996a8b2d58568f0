#include "file_com/qel_file.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "pauses.h"
#include "support/guarded_buffer.h"
#include "support/temp_folder.h"

namespace {

constexpr ulong32 kNone = 0xFFFFFFFF;
constexpr bool kRecord = false;
constexpr bool kThrow = true;

class File : public testing::Test {
protected:
    std::string Path(const char* name) const { return folder_ / name; }
    CQELFile Open(const char* name, const char* mode, bool raise = kRecord) const {
        return CQELFile(Path(name).c_str(), mode, raise);
    }
    TempFolder folder_;
};

// A file of this length without its bytes.
void MakeSparse(const std::string& path, std::int64_t length) {
    const kit::FileHandle file(
        CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(static_cast<bool>(file));
    LARGE_INTEGER end;
    end.QuadPart = length;
    ASSERT_TRUE(SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(file.get()));
}

// A file whose descriptor goes away under it, so that every call to the system fails (errno 9).
struct BrokenFile {
    explicit BrokenFile(const std::string& path, const char* mode)
        : descriptor(NextDescriptor()), file(path.c_str(), mode, kRecord) {}
    void Break() const { ASSERT_EQ(0, _close(descriptor)); }

    static int NextDescriptor() {
        const int next = _open("NUL", _O_RDONLY);
        _close(next);
        return next;
    }
    int descriptor;
    CQELFile file;
};

// Stands before fopen in the library: counts the calls and keeps the last mode.
int opens;
std::string last_mode;
FILE* CountOpens(const char* name, const char* mode) {
    ++opens;
    last_mode = mode;
    return std::fopen(name, mode);
}

TEST_F(File, OpensInEachModeAndKeepsTheNameOfTheLastSuccess) {
    CQELFile file = Open("new.dat", nullptr);  // missing: made
    EXPECT_TRUE(file.IsOpen());
    EXPECT_FALSE(file.IsError());
    EXPECT_EQ(Path("new.dat"), file.FileName());
    EXPECT_EQ(3u, file.Write("abc", 3));
    file.Open(Path("new.dat").c_str(), nullptr, kRecord);  // there: kept, for reading and writing
    char bytes[4] = {};
    EXPECT_EQ(3u, file.Read(bytes, 4));
    EXPECT_STREQ("abc", bytes);

    file.Open(Path("none.dat").c_str(), "rb", kRecord);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(Path("new.dat"), file.FileName());
    EXPECT_EQ(Path("none.dat"), static_cast<const char*>(file.GetErrMessEx()));
    EXPECT_STREQ("", CQELFile(nullptr, nullptr, kRecord).FileName());
}

TEST_F(File, OpeningAMissingFileTriesTwiceAtOnceAndConvertsTheSystemsError) {
    const struct {
        const char* name;
        const char* mode;
        int status, error_number;
    } cases[] = {
        {"none.dat", "rb", 4, ENOENT},       // ERROR_FILE_NOT_FOUND
        {"none\\new.dat", "wb", 8, ENOENT},  // ERROR_PATH_NOT_FOUND
        {"none.dat", "xyz", 17, EINVAL},     // refused before the system was asked
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Pauses pauses;
        const ImportPatch counted(kLibrary, "fopen", &CountOpens);
        opens = 0;
        SetLastError(ERROR_NOT_READY);  // of some earlier call: says nothing about this one
        const CQELFile file(Path(c.name).c_str(), c.mode, kRecord);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(c.status, file.Status());
        EXPECT_EQ(c.error_number, file.Errno());
        EXPECT_EQ(2, opens);
        EXPECT_EQ(0, pauses.count());
    }
}

TEST_F(File, OpeningWhatExistsTriesTwentyTimesAndWaitsOnlyForRights) {
    const std::string held_path = folder_.Write("held.dat", "x");
    const std::string sealed_path = folder_.Write("sealed.dat", "x");
    folder_.MakeFolder("folder");
    const HeldFile held(held_path);
    const ReadOnlyFile sealed(sealed_path);
    const struct {
        const char* name;
        const char* mode;
        int opens, pauses, status;
    } cases[] = {
        {"held.dat", "r+b", 20, 19, 501},   {"held.dat", "rb", 20, 19, 501},
        {"held.dat", nullptr, 40, 0, 17},  // no rights asked for; two modes each time
        {"sealed.dat", "r+b", 20, 19, 501}, {"sealed.dat", "ab", 20, 19, 501},
        {"sealed.dat", nullptr, 40, 0, 17}, {"sealed.dat", "rb", 1, 0, 0},
        {"folder", "rb", 20, 0, 17},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + (c.mode ? c.mode : "null"));
        const Pauses pauses;
        const ImportPatch counted(kLibrary, "fopen", &CountOpens);
        opens = 0;
        const CQELFile file(Path(c.name).c_str(), c.mode, kRecord);
        EXPECT_EQ(c.status, file.Status());
        EXPECT_EQ(c.status ? EACCES : 0, file.Errno());
        EXPECT_EQ(c.opens, opens);
        EXPECT_EQ(c.pauses, pauses.count());
        EXPECT_TRUE(pauses.were_regular());
    }
}

TEST_F(File, OpensAFileThatIsReleasedWhileItWaits) {
    std::optional<HeldFile> held(folder_.Write("held.dat", "x"));
    const Pauses pauses([&](int number) {
        if (number == 3) held.reset();
    });
    EXPECT_TRUE(Open("held.dat", "r+b").IsOpen());
    EXPECT_EQ(3, pauses.count());
}

TEST_F(File, AVolumeThatIsNotThereOrNoNameChangesNothing) {
    CQELFile file(Path("new.dat").c_str(), "wb", kThrow);
    for (const char* name : {static_cast<const char*>(nullptr), "Q:\\none.dat"}) {
        SCOPED_TRACE(name ? name : "null");
        file.Open(name, "rb", kRecord);
        EXPECT_FALSE(file.IsError());
        EXPECT_TRUE(file.IsOpen());
        EXPECT_EQ(Path("new.dat"), file.FileName());
        EXPECT_THROW(file.Read(nullptr, 1), XQELFile);  // the raise flag too is the old one
    }
    const CQELFile fresh("Q:\\none.dat", "rb", kThrow);
    EXPECT_FALSE(fresh.IsOpen());
    EXPECT_FALSE(fresh.IsError());
}

TEST_F(File, ThrowsACopyOfItsStatusWhenItRaises) {
    try {
        Open("none.dat", "rb", kThrow);
        FAIL() << "not thrown";
    } catch (const XQELFile& failure) {
        EXPECT_EQ(4, failure.Status());
        EXPECT_EQ(Path("none.dat"), static_cast<const char*>(failure.GetErrMessEx()));
    }
    CQELFile file = Open("new.dat", "wb", kThrow);
    EXPECT_THROW(file.Open(Path("none.dat").c_str(), "rb", kThrow), XQELStatus);
    file.Open(Path("none.dat").c_str(), "rb", kRecord);  // Open's argument replaces the flag
    EXPECT_EQ(4, file.Status());
}

TEST_F(File, AnOwnTextMayBeTheNameToOpen) {
    CQELFile file = Open("a.dat", "wb");
    file.Open(file.FileName(), "rb", kRecord);
    EXPECT_TRUE(file.IsOpen());
    file.SetErrMessEx(Path("a.dat").c_str());
    file.Open(file.GetErrMessEx(), "rb", kRecord);
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(Path("a.dat"), file.FileName());
}

TEST_F(File, ReadsShortAtTheEndInSilence) {
    folder_.Write("a.dat", "abc");
    const CQELFile file = Open("a.dat", "rb", kThrow);
    GuardedBuffer bytes(5);
    EXPECT_FALSE(file.IsEOF());
    EXPECT_EQ(3u, file.Read(bytes.data(), 5));
    EXPECT_EQ(0, std::memcmp("abc", bytes.data(), 3));
    EXPECT_FALSE(file.IsError());
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ(0u, file.Read(bytes.data(), 5));
}

TEST_F(File, AShortWriteRecords6WithoutErrno) {
    folder_.Write("a.dat", "abc");
    CQELFile file = Open("a.dat", "rb");
    EXPECT_EQ(0u, file.Write("x", 1));
    EXPECT_EQ(6, file.Status());
    EXPECT_EQ(0, file.Errno());
    EXPECT_EQ(Path("a.dat"), static_cast<const char*>(file.GetErrMessEx()));

    EXPECT_EQ(0u, file.Write("x", 0));
    EXPECT_EQ(6, file.Status()) << "writing nothing keeps an earlier error";

    char byte;
    file.Read(&byte, 1);
    EXPECT_EQ(0, file.Status()) << "every other operation starts afresh";
}

TEST_F(File, AFullDiskIsSeenByALargeWriteAndByTheFlushOfASmallOne) {
    CQELFile file("Z:\\dev\\full", "wb", kRecord);
    ASSERT_TRUE(file.IsOpen());
    const std::string large(100000, 'x');
    EXPECT_GT(large.size(), file.Write(large.data(), static_cast<ulong32>(large.size())));
    EXPECT_EQ(6, file.Status());

    CQELFile buffered("Z:\\dev\\full", "wb", kRecord);
    EXPECT_EQ(1u, buffered.Write("x", 1));
    EXPECT_FALSE(buffered.IsError());
    buffered.Flush();
    EXPECT_EQ(120, buffered.Status());
    EXPECT_EQ(0, buffered.Errno());
}

TEST_F(File, RefusesNullBuffers) {
    CQELFile file = Open("a.dat", "w+b");
    char line[2];
    const std::function<void()> calls[] = {
        [&] { EXPECT_EQ(0u, file.Read(nullptr, 1)); },
        [&] { EXPECT_EQ(0u, file.Write(nullptr, 1)); },
        [&] { EXPECT_EQ(nullptr, file.fgets(nullptr, 2)); },
        [&] { EXPECT_EQ(nullptr, file.fgets(line, 0)); },
    };
    for (const auto& call : calls) {
        call();
        EXPECT_EQ(28, file.Status());
    }
    EXPECT_EQ(0u, file.Read(nullptr, 0));
    EXPECT_FALSE(file.IsError());
}

TEST_F(File, WritesAnIntLowestByteFirst) {
    CQELFile file = Open("a.dat", "wb");
    EXPECT_EQ(4u, file.Write(0x01020304));
    file.Close();
    EXPECT_EQ("\x04\x03\x02\x01", folder_.Read("a.dat"));
}

TEST_F(File, ReadsLinesWithoutTheirEnds) {
    folder_.Write("a.txt", "one\r\ntwo\n\r\nx\r\r\nlong line\nlast\r");
    const CQELFile file = Open("a.txt", "rb");
    for (const char* line : {"one", "two", "", "x\r", "long ", "line", "last\r"}) {
        GuardedBuffer buffer(6);
        ASSERT_EQ(buffer.text(), file.fgets(buffer.text(), 6));
        EXPECT_STREQ(line, buffer.text());
        EXPECT_FALSE(file.IsError());
    }
    char rest[8] = "as was";
    EXPECT_EQ(nullptr, file.fgets(rest, 8));
    EXPECT_STREQ("as was", rest);
    EXPECT_FALSE(file.IsError());
}

TEST_F(File, SeeksTellsAndMeasures) {
    CQELFile file = Open("a.dat", "w+b");
    EXPECT_EQ(5u, file.Write("hello", 5));
    EXPECT_EQ(5u, file.CurPos());
    EXPECT_EQ(0u, file.Length()) << "what is buffered is not in the file";
    file.Flush();
    EXPECT_EQ(5u, file.Length());
    EXPECT_EQ(0, file.Seek(-2, SEEK_END));
    EXPECT_EQ(3u, file.CurPos());

    file.Read(nullptr, 1);
    EXPECT_NE(0, file.Seek(-9, SEEK_SET));
    EXPECT_EQ(28, file.Status()) << "Seek neither clears nor records";
}

TEST_F(File, PositionsAndLengthsPastTwoGigabytesHoldAndPastFourFail) {
    const struct {
        std::int64_t length;
        ulong32 result;
        int position_status, length_status, error_number;
    } cases[] = {
        {3'000'000'000, 3'000'000'000u, 0, 0, 0},
        {0xFFFFFFFE, 0xFFFFFFFE, 0, 0, 0},
        {0xFFFFFFFF, kNone, 118, 45, EFBIG},
        {5'000'000'000, kNone, 118, 45, EFBIG},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.length);
        const std::string path = Path("big.dat");
        MakeSparse(path, c.length);
        CQELFile file(path.c_str(), "rb", kRecord);
        EXPECT_EQ(0, file.Seek(0, SEEK_END));
        EXPECT_EQ(c.result, file.CurPos());
        EXPECT_EQ(c.position_status, file.Status());
        EXPECT_EQ(c.error_number, file.Errno());
        EXPECT_EQ(c.result, file.Length());
        EXPECT_EQ(c.length_status, file.Status());
        file.Close();

        const XQELFile status(kRecord);
        EXPECT_EQ(c.result, CQELFile::Length(path.c_str(), status));
        EXPECT_EQ(c.length_status, status.Status());
        std::uint64_t length = 1;
        EXPECT_EQ(0, CQELFile::GetFileLength(path.c_str(), length, false));
        EXPECT_EQ(static_cast<std::uint64_t>(c.length), length);
        ASSERT_EQ(0, std::remove(path.c_str()));
    }
}

TEST_F(File, TruncatesAtThePositionWhateverIsBuffered) {
    folder_.Write("a.dat", "0123456789");
    char bytes[8];
    CQELFile reading = Open("a.dat", "r+b");
    EXPECT_EQ(4u, reading.Read(bytes, 4));  // the rest has been read ahead
    EXPECT_TRUE(reading.Truncate());
    EXPECT_EQ(4u, reading.Length());
    EXPECT_EQ(0u, reading.Read(bytes, 4));
    reading.Close();
    EXPECT_EQ("0123", folder_.Read("a.dat"));

    CQELFile writing = Open("b.dat", "w+b");
    writing.Write("abcdef", 6);
    EXPECT_TRUE(writing.Truncate());
    EXPECT_EQ(6u, writing.Length()) << "what was buffered has been written";
    EXPECT_EQ(0, writing.Seek(2, SEEK_SET));
    EXPECT_TRUE(writing.Truncate());
    writing.Write("X", 1);
    writing.Close();
    EXPECT_EQ("abX", folder_.Read("b.dat"));

    CQELFile sealed = Open("a.dat", "rb");
    EXPECT_FALSE(sealed.Truncate());
    EXPECT_EQ(119, sealed.Status());
    EXPECT_NE(0, sealed.Errno());
}

TEST_F(File, RecordsWhatTheSystemRefuses) {
    folder_.Write("a.dat", "abcdef");
    BrokenFile broken(Path("a.dat"), "r+b");
    CQELFile& file = broken.file;
    ASSERT_TRUE(file.IsOpen());
    broken.Break();
    char bytes[4];
    const struct {
        const char* name;
        std::function<void()> call;
        int status, error_number;
    } cases[] = {
        {"Length", [&] { EXPECT_EQ(kNone, file.Length()); }, 45, EBADF},
        {"LastWriteTime", [&] { EXPECT_EQ(0, file.LastWriteTime().Day()); }, 123, EBADF},
        {"set LastWriteTime",
         [&] { EXPECT_FALSE(file.LastWriteTime(CQELDateTime(2020, 1, 1, 0, 0, 0, 0))); }, 122, 0},
        {"CurPos", [&] { EXPECT_EQ(kNone, file.CurPos()); }, 118, EBADF},
        {"Truncate", [&] { EXPECT_FALSE(file.Truncate()); }, 119, EBADF},
        {"Read", [&] { EXPECT_EQ(0u, file.Read(bytes, 4)); }, 5, EBADF},
        {"fgets", [&] { EXPECT_EQ(nullptr, file.fgets(bytes, 4)); }, 5, EBADF},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.call();
        EXPECT_EQ(c.status, file.Status());
        EXPECT_EQ(c.error_number, file.Errno());
        EXPECT_EQ(Path("a.dat"), static_cast<const char*>(file.GetErrMessEx()));
    }
}

TEST_F(File, SaysWhereAnOperationFoundItNotOpen) {
    CQELFile file(nullptr, nullptr, kRecord);
    char bytes[4] = "abc";
    const struct {
        const char* name;
        std::function<void()> call;
        int status = 117;
    } cases[] = {
        {"Close", [&] { file.Close(); }},
        {"Read", [&] { EXPECT_EQ(0u, file.Read(bytes, 4)); }},
        {"Write", [&] { EXPECT_EQ(0u, file.Write(bytes, 4)); }},
        {"Write(int)", [&] { EXPECT_EQ(0u, file.Write(1)); }},
        {"Seek", [&] { EXPECT_EQ(-1, file.Seek(0, SEEK_SET)); }},
        {"CurPos", [&] { EXPECT_EQ(kNone, file.CurPos()); }},
        {"Length", [&] { EXPECT_EQ(kNone, file.Length()); }},
        {"Flush", [&] { file.Flush(); }},
        {"Truncate", [&] { EXPECT_FALSE(file.Truncate()); }},
        {"IsEOF", [&] { EXPECT_TRUE(file.IsEOF()); }},
        {"fgets", [&] { EXPECT_EQ(nullptr, file.fgets(bytes, 4)); }},
        {"LastWriteTime", [&] { EXPECT_EQ(0, file.LastWriteTime().Year()); }},
        {"set LastWriteTime", [&] { EXPECT_FALSE(file.LastWriteTime(CQELDateTime(true))); }, 122},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        file.Clear();
        file.SetErrMessEx("");
        c.call();
        EXPECT_EQ(c.status, file.Status());
        EXPECT_EQ(0, file.Errno());
        const std::string text = static_cast<const char*>(file.GetErrMessEx());
        const std::string start = "file - file_com, line - ";
        EXPECT_EQ(start, text.substr(0, start.size()));
        EXPECT_LT(0, std::atoi(text.substr(start.size()).c_str()));
    }
    EXPECT_STREQ("abc", bytes);
    EXPECT_EQ(115, file.LockRead(true));
    EXPECT_EQ(115, file.LockWrite(true));
    EXPECT_EQ(115, file.UnLock(true));
}

TEST_F(File, CopiesShareTheStreamUntilTheLastOneGoes) {
    auto first = std::make_unique<CQELFile>(Path("a.dat").c_str(), "wb", kThrow);
    first->Write("ab", 2);
    EXPECT_THROW(first->Read(nullptr, 1), XQELFile);
    CQELFile second(*first);
    EXPECT_EQ(28, first->Status());
    EXPECT_EQ(0, second.Status()) << "a status is not copied";
    EXPECT_STREQ("", second.GetErrMessEx());
    EXPECT_EQ(Path("a.dat"), second.FileName());
    EXPECT_THROW(second.Read(nullptr, 1), XQELFile) << "the raise flag is";
    first.reset();
    EXPECT_EQ(2u, second.CurPos());
    second.Write("c", 1);
    second.Close();
    EXPECT_FALSE(second.IsOpen());
    EXPECT_EQ("abc", folder_.Read("a.dat"));
}

TEST_F(File, AssignmentLetsGoOfItsOwnStreamAndKeepsItsStatus) {
    CQELFile file = Open("a.dat", "wb", kThrow);
    file.Write("ab", 2);
    CQELFile other = Open("none.dat", "rb");
    other = file;
    EXPECT_EQ(4, other.Status());
    EXPECT_EQ(2u, other.CurPos());
    EXPECT_THROW(other.Read(nullptr, 1), XQELFile);

    CQELFile& same = file;
    file = same;
    EXPECT_EQ(2u, file.CurPos());
    other = CQELFile(nullptr, nullptr, kRecord);
    EXPECT_FALSE(other.IsOpen());
    file = other;
    EXPECT_EQ("ab", folder_.Read("a.dat")) << "closed, as nobody shares it any more";
    EXPECT_STREQ("", file.FileName());
}

TEST_F(File, ADirectFileOpensWithTheLetterThatReachesTheDisk) {
    const struct {
        const char* mode;
        const char* opened_in;
    } cases[] = {{nullptr, "w+bc"}, {nullptr, "r+bc"}, {"ab", "abc"}, {"rb", "rb"}};
    for (const auto& c : cases) {
        const ImportPatch watched(kLibrary, "fopen", &CountOpens);
        CQELDirectFile file(Path("a.dat").c_str(), c.mode, kRecord);
        EXPECT_TRUE(file.IsOpen());
        EXPECT_EQ(c.opened_in, last_mode);
        file.Open(nullptr, c.mode, kThrow);
        EXPECT_TRUE(file.IsOpen());
    }
    CQELDirectFile none(nullptr, "wb", kThrow);
    EXPECT_FALSE(none.IsOpen());
    EXPECT_THROW(none.Flush(), XQELFile);
}

}  // namespace
