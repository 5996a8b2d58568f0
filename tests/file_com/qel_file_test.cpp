#include "file_com/qel_file.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdlib>
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

// Status, errno and additional text.
std::string Failure(const XQELFile& status) {
    return std::to_string(status.Status()) + " " + std::to_string(status.Errno()) + " " +
           static_cast<const char*>(status.GetErrMessEx());
}

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
    EXPECT_TRUE(file.IsOpen() && !file.IsError());
    EXPECT_EQ(Path("new.dat"), file.FileName());
    EXPECT_EQ(3u, file.Write("abc", 3));
    file.Open(file.FileName(), nullptr, kRecord);  // there: kept, for reading and writing
    char bytes[4] = {};
    EXPECT_EQ(3u, file.Read(bytes, 4));
    EXPECT_STREQ("abc", bytes);

    file.Open(Path("none.dat").c_str(), "rb", kRecord);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(Path("new.dat"), file.FileName());
    EXPECT_EQ("4 2 " + Path("none.dat"), Failure(file));
    file.SetErrMessEx(Path("new.dat").c_str());
    file.Open(file.GetErrMessEx(), "rb", kRecord);  // a text of its own
    EXPECT_TRUE(file.IsOpen());
}

TEST_F(File, OpeningTriesAgainWhatExistsAndWaitsOnlyForRights) {
    const HeldFile held(folder_.Write("held.dat", "x"));
    const ReadOnlyFile sealed(folder_.Write("sealed.dat", "x"));
    folder_.MakeFolder("folder");
    const struct {
        const char* name;
        const char* mode;
        int status, error_number, opens, pauses;
    } cases[] = {
        {"none.dat", "rb", 4, ENOENT, 2, 0},       // ERROR_FILE_NOT_FOUND
        {"none\\new.dat", "wb", 8, ENOENT, 2, 0},  // ERROR_PATH_NOT_FOUND
        {"none.dat", "xyz", 17, EINVAL, 2, 0},     // refused before the system was asked
        {"held.dat", "r+b", 501, EACCES, 20, 19},   {"held.dat", "rb", 501, EACCES, 20, 19},
        {"held.dat", nullptr, 17, EACCES, 40, 0},  // no rights asked for; two modes each time
        {"sealed.dat", "r+b", 501, EACCES, 20, 19}, {"sealed.dat", "ab", 501, EACCES, 20, 19},
        {"sealed.dat", nullptr, 17, EACCES, 40, 0}, {"sealed.dat", "rb", 0, 0, 1, 0},
        {"folder", "rb", 17, EACCES, 20, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + (c.mode ? c.mode : "null"));
        const Pauses pauses;
        const ImportPatch counted(kLibrary, "fopen", &CountOpens);
        opens = 0;
        SetLastError(ERROR_NOT_READY);  // of some earlier call: says nothing about this one
        const CQELFile file = Open(c.name, c.mode);
        EXPECT_EQ(c.status == 0, file.IsOpen());
        EXPECT_EQ(c.status, file.Status());
        EXPECT_EQ(c.error_number, file.Errno());
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
    CQELFile file = Open("new.dat", "wb", kThrow);
    for (const char* name : {static_cast<const char*>(nullptr), "Q:\\none.dat"}) {
        file.Open(name, "rb", kRecord);
        EXPECT_TRUE(file.IsOpen() && !file.IsError());
        EXPECT_EQ(Path("new.dat"), file.FileName());
        EXPECT_THROW(file.Read(nullptr, 1), XQELFile);  // the raise flag too is the old one
    }
    const CQELFile fresh("Q:\\none.dat", "rb", kThrow);
    EXPECT_FALSE(fresh.IsOpen() || fresh.IsError());
}

TEST_F(File, ThrowsACopyOfItsStatusWhenItRaises) {
    CQELFile file = Open("new.dat", "wb", kThrow);
    try {
        file.Open(Path("none.dat").c_str(), "rb", kThrow);
        FAIL() << "not thrown";
    } catch (const XQELFile& failure) {
        EXPECT_EQ("4 0 " + Path("none.dat"), Failure(failure));
    }
    file.Open(Path("none.dat").c_str(), "rb", kRecord);  // Open's argument replaces the flag
    EXPECT_EQ(4, file.Status());
}

TEST_F(File, ReadsShortAtTheEndInSilence) {
    folder_.Write("a.dat", "abc");
    const CQELFile file = Open("a.dat", "rb", kThrow);
    GuardedBuffer bytes(5);
    EXPECT_FALSE(file.IsEOF());
    EXPECT_EQ(3u, file.Read(bytes.data(), 5));
    EXPECT_EQ("abc", std::string(bytes.text(), 3));
    EXPECT_TRUE(file.IsEOF() && !file.IsError());
    EXPECT_EQ(0u, file.Read(bytes.data(), 5));
}

TEST_F(File, AShortWriteRecords6WithoutErrno) {
    folder_.Write("a.dat", "abc");
    CQELFile file = Open("a.dat", "rb");
    EXPECT_EQ(0u, file.Write("x", 1));
    EXPECT_EQ("6 0 " + Path("a.dat"), Failure(file));
    EXPECT_EQ(0u, file.Write("x", 0));
    EXPECT_EQ(6, file.Status()) << "writing nothing keeps an earlier error";
    char byte;
    file.Read(&byte, 1);
    EXPECT_EQ(0, file.Status()) << "every other operation starts afresh";
}

TEST_F(File, AFullDiskIsSeenByALargeWriteAndByTheFlushOfASmallOne) {
    CQELFile file("Z:\\dev\\full", "wb", kRecord), buffered("Z:\\dev\\full", "wb", kRecord);
    const std::string large(100000, 'x');
    EXPECT_GT(large.size(), file.Write(large.data(), static_cast<ulong32>(large.size())));
    EXPECT_EQ(6, file.Status());
    EXPECT_EQ(1u, buffered.Write("x", 1));
    EXPECT_FALSE(buffered.IsError());
    buffered.Flush();
    EXPECT_EQ("120 0 Z:\\dev\\full", Failure(buffered));
}

TEST_F(File, ReadsLinesWithoutTheirEnds) {
    folder_.Write("a.txt", "one\r\ntwo\n\r\nx\r\r\nlong line\nlast\r");
    const CQELFile file = Open("a.txt", "rb");
    for (const char* line : {"one", "two", "", "x\r", "long ", "line", "last\r"}) {
        GuardedBuffer buffer(6);
        ASSERT_EQ(buffer.text(), file.fgets(buffer.text(), 6));
        EXPECT_STREQ(line, buffer.text());
    }
    char rest[8] = "as was";
    EXPECT_EQ(nullptr, file.fgets(rest, 8));
    EXPECT_STREQ("as was", rest);
    EXPECT_FALSE(file.IsError());
}

TEST_F(File, SeeksTellsMeasuresAndWritesAnInt) {
    CQELFile file = Open("a.dat", "w+b");
    EXPECT_EQ(4u, file.Write(0x01020304));
    EXPECT_EQ(4u, file.CurPos());
    EXPECT_EQ(0u, file.Length()) << "what is buffered is not in the file";
    file.Flush();
    EXPECT_EQ(4u, file.Length());
    EXPECT_EQ("\x04\x03\x02\x01", folder_.Read("a.dat"));
    EXPECT_EQ(0, file.Seek(-2, SEEK_END));
    EXPECT_EQ(2u, file.CurPos());
    file.Read(nullptr, 1);
    EXPECT_NE(0, file.Seek(-9, SEEK_SET));
    EXPECT_EQ(28, file.Status()) << "Seek neither clears nor records";
}

TEST_F(File, PositionsAndLengthsPastTwoGigabytesHoldAndPastFourFail) {
    const std::string path = folder_.Write("big.dat", "");
    for (const std::int64_t length : {3'000'000'000, 0xFFFFFFFELL, 0xFFFFFFFFLL, 5'000'000'000}) {
        SCOPED_TRACE(length);
        const bool fits = length < 0xFFFFFFFF;
        const auto result = fits ? static_cast<ulong32>(length) : kNone;
        const auto failure = [&](int code) {
            return fits ? "0 0 " : std::to_string(code) + " " + std::to_string(EFBIG) + " " + path;
        };
        SetLength(path, length);
        CQELFile file(path.c_str(), "rb", kRecord);
        EXPECT_EQ(0, file.Seek(0, SEEK_END));
        EXPECT_EQ(result, file.CurPos());
        EXPECT_EQ(failure(118), Failure(file));
        EXPECT_EQ(result, file.Length());
        EXPECT_EQ(failure(45), Failure(file));
        file.Close();

        const XQELFile status(kRecord);
        EXPECT_EQ(result, CQELFile::Length(path.c_str(), status));
        EXPECT_EQ(failure(45), Failure(status));
        std::uint64_t whole = 1;
        EXPECT_EQ(0, CQELFile::GetFileLength(path.c_str(), whole, false));
        EXPECT_EQ(static_cast<std::uint64_t>(length), whole);
    }
}

TEST_F(File, TruncatesAtThePositionWhateverIsBuffered) {
    folder_.Write("a.dat", "0123456789");
    char bytes[8];
    CQELFile file = Open("a.dat", "r+b");
    EXPECT_EQ(4u, file.Read(bytes, 4));  // the rest has been read ahead
    EXPECT_TRUE(file.Truncate());
    EXPECT_EQ(4u, file.Length());
    EXPECT_EQ(0u, file.Read(bytes, 4));
    file.Seek(0, SEEK_CUR);
    file.Write("abcdef", 6);
    EXPECT_TRUE(file.Truncate());
    EXPECT_EQ(10u, file.Length()) << "what was buffered has been written";
    EXPECT_EQ(0, file.Seek(2, SEEK_SET));
    EXPECT_TRUE(file.Truncate());
    file.Write("X", 1);
    file.Close();
    EXPECT_EQ("01X", folder_.Read("a.dat"));
    CQELFile sealed = Open("a.dat", "rb");
    EXPECT_FALSE(sealed.Truncate());
    EXPECT_TRUE(sealed.Status() == 119 && sealed.Errno() != 0);
}

// The descriptor that is opened next.
int NextDescriptor() {
    const int next = _open("NUL", _O_RDONLY);
    _close(next);
    return next;
}

TEST_F(File, RecordsWhatCannotBe) {
    char bytes[4];
    CQELFile file(nullptr, nullptr, kRecord);
    struct Case {
        std::function<void()> call;
        int status, error_number;
    };
    const Case on_a_file[] = {
        {[&] { EXPECT_EQ(0u, file.Read(nullptr, 1)); }, 28, 0},
        {[&] { EXPECT_EQ(0u, file.Write(nullptr, 1)); }, 28, 0},
        {[&] { EXPECT_EQ(nullptr, file.fgets(nullptr, 2)); }, 28, 0},
        {[&] { EXPECT_EQ(nullptr, file.fgets(bytes, 0)); }, 28, 0},
    };
    const Case on_a_broken_one[] = {
        {[&] { EXPECT_EQ(kNone, file.Length()); }, 45, EBADF},
        {[&] { EXPECT_EQ(0, file.LastWriteTime().Day()); }, 123, EBADF},
        {[&] { EXPECT_FALSE(file.LastWriteTime(CQELDateTime(2020, 1, 1, 0, 0, 0, 0))); }, 122, 0},
        {[&] { EXPECT_EQ(kNone, file.CurPos()); }, 118, EBADF},
        {[&] { EXPECT_FALSE(file.Truncate()); }, 119, EBADF},
        {[&] { EXPECT_EQ(0u, file.Read(bytes, 4)); }, 5, EBADF},
        {[&] { EXPECT_EQ(nullptr, file.fgets(bytes, 4)); }, 5, EBADF},
    };
    const auto run = [&](const Case& c) {
        c.call();
        const std::string failure = std::to_string(c.status) + " " + std::to_string(c.error_number);
        EXPECT_EQ(failure + " " + Path("a.dat"), Failure(file));
    };
    const int descriptor = NextDescriptor();
    file.Open(folder_.Write("a.dat", "abcdef").c_str(), "r+b", kRecord);
    for (const Case& c : on_a_file) run(c);
    ASSERT_EQ(0, _close(descriptor));  // every call to the system fails from here on
    for (const Case& c : on_a_broken_one) run(c);
}

TEST_F(File, SaysWhereAnOperationFoundItNotOpen) {
    CQELFile file(nullptr, nullptr, kRecord);
    char bytes[4] = "abc";
    const std::function<void()> calls[] = {
        [&] { file.Close(); },
        [&] { EXPECT_EQ(0u, file.Read(bytes, 4)); },
        [&] { EXPECT_EQ(0u, file.Write(bytes, 4)); },
        [&] { EXPECT_EQ(-1, file.Seek(0, SEEK_SET)); },
        [&] { EXPECT_EQ(kNone, file.CurPos()); },
        [&] { EXPECT_EQ(kNone, file.Length()); },
        [&] { file.Flush(); },
        [&] { EXPECT_FALSE(file.Truncate()); },
        [&] { EXPECT_TRUE(file.IsEOF()); },
        [&] { EXPECT_EQ(nullptr, file.fgets(bytes, 4)); },
        [&] { EXPECT_EQ(0, file.LastWriteTime().Year()); },
        [&] { EXPECT_FALSE(file.LastWriteTime(CQELDateTime(true))); },
    };
    for (const auto& call : calls) {
        SCOPED_TRACE(&call - calls);
        file.Clear();
        file.SetErrMessEx("");
        call();
        const std::string code = &call == std::end(calls) - 1 ? "122" : "117";
        const std::string start = code + " 0 file - file_com, line - ";
        EXPECT_EQ(start, Failure(file).substr(0, start.size()));
        EXPECT_LT(0, std::atoi(Failure(file).substr(start.size()).c_str()));
    }
    EXPECT_STREQ("abc", bytes);
    EXPECT_STREQ("", file.FileName());
    for (const int result : {file.LockRead(true), file.LockWrite(true), file.UnLock(true)}) {
        EXPECT_EQ(115, result);
    }
}

TEST_F(File, CopiesShareTheStreamUntilTheLastOneGoes) {
    auto first = std::make_unique<CQELFile>(Path("a.dat").c_str(), "wb", kThrow);
    first->Write("ab", 2);
    EXPECT_THROW(first->Read(nullptr, 1), XQELFile);
    CQELFile second(*first), third = Open("none.dat", "rb");
    third = *first;
    EXPECT_EQ("0 0 ", Failure(second)) << "a status is not copied";
    EXPECT_EQ("4 2 " + Path("none.dat"), Failure(third)) << "nor assigned";
    EXPECT_EQ(Path("a.dat"), second.FileName());
    EXPECT_THROW(second.Read(nullptr, 1), XQELFile) << "the raise flag is";
    EXPECT_THROW(third.Read(nullptr, 1), XQELFile);
    first.reset();
    second.Write("c", 1);
    EXPECT_EQ(3u, third.CurPos());
    second.Close();
    EXPECT_TRUE(!second.IsOpen() && third.IsOpen());
    CQELFile& same = third;
    third = same;
    EXPECT_EQ("", folder_.Read("a.dat"));
    third = CQELFile(nullptr, nullptr, kRecord);
    EXPECT_EQ("abc", folder_.Read("a.dat")) << "closed, as nobody shares it any more";
    EXPECT_STREQ("", third.FileName());
}

FILE* RefuseAndKeepTheMode(const char*, const char* mode) {
    last_mode = mode;
    return nullptr;
}

TEST_F(File, ADirectFileOpensWithTheLetterThatReachesTheDisk) {
    const std::pair<const char*, const char*> cases[] = {
        {"wb", "wbc"},
        {"r+b", "r+bc"},
        {"a", "ac"},
        {"w b", "wc b"},
        {"wbc", "wbc"},
        {"wbn", "wbn"},
        {"rb", "rb"},
        {nullptr, "w+bc"},
        {"r+ ,x", "r+c ,x"},
        {"w,x y", "wc,x y"},                      // before what comes first
        {"w+b,ccs=UNICODE", "w+bc,ccs=UNICODE"},  // the c of "ccs" is not the letter
        {"w b c", "w b c"},                       // said, though after the blank
    };
    for (const auto& [mode, opened_in] : cases) {
        const ImportPatch refused(kLibrary, "fopen", &RefuseAndKeepTheMode);
        const CQELDirectFile file(Path("a.dat").c_str(), mode, kRecord);
        EXPECT_EQ(opened_in, last_mode);
    }
    CQELDirectFile file(Path("a.dat").c_str(), nullptr, kRecord);
    const ImportPatch watched(kLibrary, "fopen", &CountOpens);
    file.Open(Path("a.dat").c_str(), nullptr, kRecord);
    EXPECT_EQ("r+bc", last_mode);
    file.Open(nullptr, "wb", kThrow);
    EXPECT_TRUE(file.IsOpen());
    EXPECT_THROW(CQELDirectFile(nullptr, "wb", kThrow).Flush(), XQELFile);
}

}  // namespace
