#include "file_com/record_file.h"

#include <gtest/gtest.h>

#include <io.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "file_com/service_db_variant.h"
#include "pauses.h"
#include "support/formats_page.h"
#include "support/guarded_buffer.h"
#include "support/header_bytes.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

enum Mode : unsigned char { kCreate, kUpdate, kReadOnly };

using Records = std::vector<std::string>;

// A file of the test: records of four characters unless it says otherwise.
class RecFile : public testing::Test {
protected:
    static constexpr long32 kLength = 4;

    void Write(const std::string& bytes) { folder_.Write("a.rec", bytes); }
    std::string Bytes() const { return folder_.Read("a.rec"); }
    const char* path() const { return path_.c_str(); }

    // The file as its owner leaves it behind.
    void Create(const Records& records, long32 max_count = 0) {
        CRecFile file(path(), kLength, kCreate, nullptr);
        file.MaxRecords(max_count);
        for (std::string record : records) ASSERT_TRUE(file.Add(record.data()));
    }
    static std::string Get(CRecFile& file, long32 i, std::size_t length = kLength) {
        GuardedBuffer record(length);
        std::memset(record.data(), '?', length);
        EXPECT_TRUE(file.Get(i, record.data())) << i << ": status " << file.GetRetCode();
        return std::string(record.text(), length);
    }
    static Records GetAll(CRecFile& file) {
        Records records;
        for (long32 i = 0; i < file.Size(); ++i) records.push_back(Get(file, i));
        return records;
    }
    Records ReadBack() const {
        CRecFile file(path(), kLength, kReadOnly, nullptr);
        return GetAll(file);
    }

    TempFolder folder_;
    const std::string path_ = folder_ / "a.rec";
};

// --- The format -----------------------------------------------------------------------------------

TEST_F(RecFile, WritesTheBytesOfTheFormatsPage) {
    CRecFieldInfo fields[] = {{kFileDataInteger, 4}, {kFileDataText, 4}};
    CRecordInfo info(2, fields);
    {
        CRecFile file(path(), 8, kCreate, &info);
        file.MaxRecords(3);
        for (const auto& [number, text] : {std::pair(9, "?oot"), {2, "load"}, {3, "run "}}) {
            std::string record = Numbers({number}) + text;
            EXPECT_TRUE(file.Add(record.data()));
        }
        std::string record = Numbers({4}) + "stop";
        EXPECT_TRUE(file.PutField(0, 0, record.data()) && file.PutField(0, 1, &record[4]));
        record.assign(4, '?');
        EXPECT_TRUE(file.GetField(1, 1, record.data()));
        EXPECT_EQ("load", record);
        std::string again = Get(file, 0, 8);
        EXPECT_TRUE(file.Add(again.data()));
        for (const auto& [i, j] : {std::pair(3, 0), {-1, 0}, {0, 2}, {0, -1}}) {
            CRecFile reader(path(), 8, kReadOnly, nullptr);
            EXPECT_FALSE(reader.GetField(i, j, record.data()));
            EXPECT_EQ(37, reader.GetRetCode()) << i << ", " << j;
        }
    }
    const std::string dump = DumpedBytes("dump=records");
    ASSERT_EQ(68u, dump.size());
    EXPECT_EQ(ToHex(dump.data(), dump.size()), ToHex(Bytes().data(), Bytes().size()));
}

TEST_F(RecFile, ReachesOffsetsBeyond32Bits) {
    constexpr std::int64_t kGiB = 0x40000000;
    Write(Numbers({44, kGiB, 5, 0, 0, 0, 2, 0, 0x3FFFFFFC, 0, 4}));
    FILE* const sparse = std::fopen(path(), "r+b");
    ASSERT_EQ(0, _chsize_s(_fileno(sparse), 44 + 5 * kGiB));
    std::fclose(sparse);
    {
        char field[] = "last";
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_TRUE(file.PutField(4, 1, field));
        EXPECT_EQ(44 + 5 * kGiB, _ftelli64(file.GetFptr()));
        EXPECT_EQ(std::string(4, '\0'), Get(file, 4));
        file.MaxRecords(4);
    }
    WIN32_FILE_ATTRIBUTE_DATA data;
    ASSERT_TRUE(GetFileAttributesExA(path(), GetFileExInfoStandard, &data));
    EXPECT_EQ(1u, data.nFileSizeHigh) << "cut after record 3, at 4 GiB and 44 bytes";
    EXPECT_EQ(44u, data.nFileSizeLow);
}

// --- Records --------------------------------------------------------------------------------------

TEST_F(RecFile, BridgesRecordsOfTwoLengths) {
    Write(Numbers({36, 8, 2, 0, 0, 0, 0, 0, 0}) + "01234567abcdefgh");
    {
        CRecFile longer(path(), 12, kUpdate, nullptr);
        EXPECT_EQ("abcdefgh" + std::string(4, '\0'), Get(longer, 1, 12));
        GuardedBuffer record("0123456789AB", 12);
        EXPECT_TRUE(longer.Put(1, record.data()));
    }
    EXPECT_EQ("0123456701234567", Bytes().substr(36));
    {
        CRecFile shorter(path(), 3, kUpdate, nullptr);
        EXPECT_EQ("012", Get(shorter, 0, 3));
        GuardedBuffer record("xyz", 3);
        EXPECT_TRUE(shorter.Put(0, record.data()));
        EXPECT_TRUE(shorter.Add(record.data()));
    }
    const std::string xyz("xyz\0\0\0\0\0", 8);
    EXPECT_EQ(xyz + "01234567" + xyz, Bytes().substr(36));
}

TEST_F(RecFile, LongRecordsEndInZeros) {
    Write(Numbers({36, 2000, 0, 0, 0, 0, 0, 0, 0}));
    char record[] = "abcd";
    { EXPECT_TRUE(CRecFile(path(), kLength, kUpdate, nullptr).Add(record)); }
    EXPECT_EQ("abcd" + std::string(1996, '\0'), Bytes().substr(36));
}

TEST_F(RecFile, RingSparesTheLastSlot) {
    Create({"A   ", "B   ", "C   ", "d   ", "e   ", "f   "}, 3);
    EXPECT_EQ((Records{"f   ", "e   ", "C   "}), ReadBack());
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_EQ(3, file.MaxRecords());
        EXPECT_EQ(1, file.Current());
        char record[] = "g   ";
        EXPECT_TRUE(file.Add(record));
        EXPECT_EQ(2, file.Current());
    }
    EXPECT_EQ((Records{"f   ", "g   ", "C   "}), ReadBack());
    Create({"A   ", "b   ", "c   "}, 1);
    EXPECT_EQ((Records{"c   "}), ReadBack());
}

TEST_F(RecFile, StaysOutOfWorkAfterAFailure) {
    Create({"aaaa", "bbbb"});
    for (const long32 i : {2L, -1L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        SCOPED_TRACE(i);
        CRecFile file(path(), kLength, kUpdate, nullptr);
        file.MaxRecords(9);
        char record[] = "zzzz";
        EXPECT_FALSE(file.Get(i, record));
        EXPECT_FALSE(file.Get(0, record) || file.Put(0, record) || file.Add(record) ||
                     file.PutHeader() || file.GetEx(record, 1) || file.PutEx(record, 4) ||
                     file.AddEx(record, 4) || file.GetField(0, 0, record) || file.MaxRecords(1));
        EXPECT_EQ(37, file.GetRetCode());
        EXPECT_EQ(0, file.MaxRecords());
        EXPECT_STREQ("zzzz", record);
        EXPECT_TRUE(file.Open(nullptr));
        EXPECT_EQ("bbbb", Get(file, 1));
        EXPECT_FALSE(file.Put(i, record));
        EXPECT_EQ(37, file.GetRetCode());
    }
    EXPECT_EQ(Numbers({36, 4, 2, 0, 0, 0, 0, 0, 0}) + "aaaabbbb", Bytes());
}

TEST_F(RecFile, WritesTheLengthOfLooseDataOnly) {
    char data[] = "loose";
    CRecFile file(path(), 0, kCreate, nullptr);
    EXPECT_TRUE(file.AddEx(data, 5));
    EXPECT_EQ(5u, std::fwrite(data, 1, 5, file.GetFptr()));
    EXPECT_TRUE(file.PutEx(data, 7));
    EXPECT_EQ(1, file.Size());
    EXPECT_EQ(Numbers({36, 0, 0, 0, 0, 0, 0, 0, 0, 5}) + "loose" + Numbers({7}), Bytes());
    std::fseek(file.GetFptr(), 36, SEEK_SET);
    EXPECT_EQ(5, file.GetSizeRec());
    char read[6] = {};
    EXPECT_TRUE(file.GetEx(read, 5));
    EXPECT_STREQ("loose", read);
    EXPECT_TRUE(file.PutEx(data, 9)) << "right behind what was read";
    EXPECT_EQ(Numbers({9}), Bytes().substr(45));
    EXPECT_EQ(0, file.GetSizeRec());
    EXPECT_FALSE(file.AddEx(data, 0));
    EXPECT_EQ(37, file.GetRetCode());
    EXPECT_EQ(1, file.Size());
}

TEST_F(RecFile, LimitGivesUpTheRecordsBeyond) {
    Create({"aaaa", "bbbb", "cccc", "dddd", "eeee"});
    const auto limit = [&](long32 m) {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        const bool done = file.MaxRecords(m);
        EXPECT_EQ(done ? 0 : 28, file.GetRetCode());
    };
    limit(-1);
    limit(6);
    EXPECT_EQ(56u, Bytes().size());
    limit(2);
    EXPECT_EQ(Numbers({36, 4, 2, 0, 2, 0, 0, 0, 0}) + "aaaabbbb", Bytes());
    limit(0);
    EXPECT_EQ(Numbers({36, 4, 0, 0, 0, 0, 0, 0, 0}), Bytes());
}

TEST_F(RecFile, ReadingMeetsTheEndOfTheFile) {
    const struct {
        long32 record_length, i;
        int status;
    } cases[] = {{4, 0, 0}, {4, 1, 5}, {4, 2, 37}, {4, 3, 37}, {0, 0, 0}, {6, 1, 37}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.record_length << ", " << c.i);
        Write(Numbers({36, c.record_length, 3, 0, 0, 0, 0, 0, 0}) + "aaaabb");
        CRecFile file(path(), kLength, kReadOnly, nullptr);
        char record[kLength];
        file.Get(c.i, record);
        EXPECT_EQ(c.status, file.GetRetCode());
    }
}

// --- Opening --------------------------------------------------------------------------------------

TEST_F(RecFile, RepairsWhatWasCutAtAnyLength) {
    const struct {
        std::size_t first, last;  // lengths of the file
        std::size_t records;
    } cases[] = {{0, 39, 0}, {40, 43, 1}, {44, 47, 2}, {48, 48, 3}};
    const std::string whole = Numbers({36, 4, 3, 0, 9, 0, 0, 0, 0}) + "aaaabbbbcccc";
    const Records records = {"aaaa", "bbbb", "cccc"};
    for (const auto& c : cases) {
        for (std::size_t length = c.first; length <= c.last; ++length) {
            SCOPED_TRACE(length);
            Write(whole.substr(0, length));
            {
                CRecFile file(path(), kLength, kUpdate, nullptr);
                EXPECT_EQ(0, file.GetRetCode());
                EXPECT_EQ(Records(records.begin(), records.begin() + c.records), GetAll(file));
                EXPECT_EQ(length > 36 ? 9 : 0, file.MaxRecords()) << "a fresh header has no limit";
            }
            EXPECT_EQ(36 + 4 * c.records, Bytes().size()) << "the torn record is gone";
        }
    }
}

TEST_F(RecFile, RefusesFlippedHeadersAndLeavesThem) {
    const std::string whole = Numbers({36, 4, 2, 0, 0, 0, 0, 0, 0}) + "aaaabbbb";
    int refused = 0;
    for (std::size_t at = 0; at < 36; ++at) {
        for (const int flip : {0x01, 0x10, 0x80, 0xFF}) {
            SCOPED_TRACE(testing::Message() << "byte " << at << " ^ " << flip);
            std::string bytes = whole;
            bytes[at] = static_cast<char>(bytes[at] ^ flip);
            Write(bytes);
            { CRecFile(path(), kLength, kReadOnly, nullptr); }
            ASSERT_EQ(bytes, Bytes());
            CRecFile file(path(), kLength, kUpdate, nullptr);
            GetAll(file);
            if (file.GetRetCode() == 0) continue;
            ++refused;
            EXPECT_EQ(74, file.GetRetCode());
            EXPECT_EQ(0, file.Size());
            EXPECT_EQ(nullptr, file.GetFptr());
            EXPECT_EQ(bytes, Bytes());
        }
    }
    // The highest bits of five numbers, by two flips each, and 13 field counts: a count of one finds
    // the descriptor of zeros.
    EXPECT_EQ(10 + 13, refused);
}

TEST_F(RecFile, StartsAfreshOverAnUnreadableHeader) {
    CRecFieldInfo fields[] = {{kFileDataBytes, 1}, {kFileDataBytes, 3}};
    CRecordInfo one(1, fields);
    CRecordInfo two(2, fields);
    const std::string two_fields = Numbers({44, 4, 1, 0, 0, 0, 2, 0, 1, 0, 3}) + "aaaa";
    const struct {
        std::string bytes;
        CRecordInfo* info;
        std::string fresh;
    } cases[] = {
        {"a text, and longer than a header is", nullptr, Numbers({36, 4, 0, 0, 0, 0, 0, 0, 0})},
        {Numbers({36, 4, 1}), &two, Numbers({44, 4, 0, 0, 0, 0, 2, 0, 1, 0, 3})},
        {two_fields, &one, Numbers({36, 4, 0, 0, 0, 0, 1, 0, 1})},
        {two_fields, &two, two_fields},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        Write(c.bytes);
        { EXPECT_EQ(0, CRecFile(path(), 4, kUpdate, c.info).GetRetCode()); }
        EXPECT_EQ(c.fresh, Bytes());
    }
}

TEST_F(RecFile, RefusesWhatItCannotOpen) {
    Create({"aaaa"});
    const std::string before = Bytes();
    CRecFieldInfo negative(kFileDataBytes, -1);
    CRecordInfo bad_field(1, &negative);
    CRecordInfo no_fields(1, nullptr);
    CRecordInfo huge(0x10000000, &negative);
    const struct {
        const char* what;
        const char* name;
        long32 length;
        int mode;
        CRecordInfo* info;
        int status;
    } cases[] = {
        {"missing", "none.rec", 4, kUpdate, nullptr, 4},
        {"missing, read only", "none.rec", 4, kReadOnly, nullptr, 4},
        {"no name", "", 4, kUpdate, nullptr, 4},
        {"no folder", "no\\folder\\x", 4, kCreate, nullptr, 17},
        {"a folder", ".", 4, kReadOnly, nullptr, 17},
        {"no such mode", "a.rec", 4, 3, nullptr, 17},
        {"negative length", "a.rec", -1, kCreate, nullptr, 28},
        {"negative field", "a.rec", 4, kCreate, &bad_field, 28},
        {"fields of 2 GiB", "a.rec", 4, kCreate, &huge, 28},
        {"fields missing", "a.rec", 4, kUpdate, &no_fields, 28},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string path = *c.name ? folder_ / c.name : "";
        CRecFile file(path.c_str(), c.length, static_cast<unsigned char>(c.mode), c.info);
        EXPECT_EQ(c.status, file.GetRetCode());
        EXPECT_EQ(c.mode, file.ModeOpen());
    }
    EXPECT_EQ(before, Bytes());
    EXPECT_FALSE(folder_.Has("none.rec"));
    EXPECT_EQ(4, CRecFile(nullptr, 4, kUpdate, nullptr).GetRetCode());
}

TEST_F(RecFile, ReadOnlyStaysAsItIs) {
    Create({"aaaa"});
    const std::string before = Bytes() + "behind";
    Write(before);
    char record[] = "zzzz";
    const std::function<bool(CRecFile&)> writes[] = {
        [&](CRecFile& file) { return file.Put(0, record); },
        [&](CRecFile& file) { return file.Add(record); },
        [&](CRecFile& file) { return file.PutHeader(); },
        [&](CRecFile& file) { return file.PutEx(record, 4); },
    };
    for (const auto& write : writes) {
        CRecFile file(path(), kLength, kReadOnly, nullptr);
        EXPECT_EQ("aaaa", Get(file, 0));
        EXPECT_FALSE(write(file));
        EXPECT_EQ(6, file.GetRetCode());
    }
    CRecFile file(path(), kLength, kReadOnly, nullptr);
    file.Destroy();
    EXPECT_EQ(0, file.GetRetCode());
    EXPECT_EQ(before, Bytes());
    const ReadOnlyFile attribute(path_);
    EXPECT_EQ(17, CRecFile(path(), kLength, kUpdate, nullptr).GetRetCode());
}

TEST_F(RecFile, CreatingReplacesAReadOnlyFile) {
    Create({"aaaa"});
    ASSERT_TRUE(SetFileAttributesA(path(), FILE_ATTRIBUTE_READONLY));
    Create({});
    EXPECT_EQ(36u, Bytes().size());
}

// --- Closing, moving, removing --------------------------------------------------------------------

TEST_F(RecFile, OnlyDestroyWritesTheHeaderAndCuts) {
    char record[] = "bbbb";
    Create({"aaaa"});
    Write(Bytes() + "torn");
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_TRUE(file.Add(record));
        EXPECT_TRUE(file.Add(record));
        file.Close();
        EXPECT_EQ(Numbers({36, 4, 1, 0, 0, 0, 0, 0, 0}) + "aaaabbbbbbbb", Bytes());
        EXPECT_EQ(3, file.Size());
        EXPECT_EQ(0, file.GetRetCode());
        EXPECT_FALSE(file.Get(0, record));
        EXPECT_EQ(17, file.GetRetCode());
        EXPECT_TRUE(file.Open(nullptr));
        EXPECT_EQ(1, file.Size());
        file.Destroy();
        EXPECT_EQ(40u, Bytes().size());
        EXPECT_EQ(0, file.Size());
        EXPECT_TRUE(file.Open(nullptr) && file.Add(record));
        file.Destroy();
        EXPECT_EQ(44u, Bytes().size());
        Write(Bytes() + "added by somebody else");
    }
    EXPECT_EQ(66u, Bytes().size()) << "destroyed once";
    Write(Numbers({36, 4, 1, 1, 0, 0, 0, 0, 0}) + "aaaakept");
    { CRecFile(path(), kLength, kUpdate, nullptr); }
    EXPECT_EQ(44u, Bytes().size()) << "bit 0 of the flags";
}

TEST_F(RecFile, CutsBehindAClosedFileToo) {
    Create({"aaaa", "bbbb", "cccc"});
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        file.MaxRecords(1);
        file.Close();
    }
    EXPECT_EQ(Numbers({36, 4, 3, 0, 0, 0, 0, 0, 0}) + "aaaa", Bytes());
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        file.Close();
        Write("cut by others");
    }
    EXPECT_EQ("cut by others", Bytes()) << "nothing to cut";
}

TEST_F(RecFile, MovesAndRemoves) {
    const std::string moved = folder_ / "b.rec";
    Create({"aaaa"});
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_TRUE(file.Move(moved.c_str()));
        EXPECT_EQ(path_, file.Name());
        EXPECT_FALSE(folder_.Has("a.rec"));
        Create({"bbbb", "cccc"});  // somebody else's file of the old name
    }
    EXPECT_EQ((Records{"bbbb", "cccc"}), ReadBack());
    EXPECT_EQ(Numbers({36, 4, 1, 0, 0, 0, 0, 0, 0}) + "aaaa", folder_.Read("b.rec"));
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        const Pauses no_waiting;
        EXPECT_FALSE(file.Move(moved.c_str()));
        EXPECT_EQ(44, file.GetRetCode());
        EXPECT_TRUE(file.Open(moved.c_str()));
        EXPECT_EQ("aaaa", Get(file, 0));
        ASSERT_TRUE(SetFileAttributesA(moved.c_str(), FILE_ATTRIBUTE_READONLY));
        EXPECT_TRUE(file.Remove());
        EXPECT_TRUE(file.Remove()) << "no file";
    }
    EXPECT_FALSE(folder_.Has("b.rec")) << "nor does the end of the object make it";
    const Pauses no_waiting;
    CRecFile(path(), kLength, kUpdate, nullptr).Move((folder_ / ".\\A.REC").c_str());
    EXPECT_EQ((Records{"bbbb", "cccc"}), ReadBack()) << "moved onto itself";
    const HeldFile held(path_);
    CRecFile file(path(), kLength, kUpdate, nullptr);
    EXPECT_EQ(17, file.GetRetCode());
    EXPECT_FALSE(file.Remove());
    EXPECT_EQ(43, file.GetRetCode());
}

TEST_F(RecFile, TakesAnotherDescriptionAtTheNextOpening) {
    CRecFieldInfo field(kFileDataBytes, 4);
    CRecordInfo info(1, &field);
    CRecFile file(path(), kLength, kCreate, nullptr);
    file.ResetFieldInfo(&info);
    char record[] = "aaaa";
    EXPECT_TRUE(file.Add(record));
    EXPECT_FALSE(file.GetField(0, 0, record));
    EXPECT_TRUE(file.Open(nullptr) && file.Add(record));
    EXPECT_TRUE(file.GetField(0, 0, record));
    EXPECT_FALSE(file.Put(1, record)) << "only Add goes behind the end";
}

TEST_F(RecFile, RefusesBuffersThatCannotBe) {
    Create({"aaaa"});
    char byte;
    const std::function<bool(CRecFile&)> calls[] = {
        [](CRecFile& file) { return file.Get(0, nullptr); },
        [](CRecFile& file) { return file.Put(0, nullptr); },
        [](CRecFile& file) { return file.Add(nullptr); },
        [](CRecFile& file) { return file.GetEx(nullptr, 1); },
        [&](CRecFile& file) { return file.GetEx(&byte, -1); },
    };
    for (const auto& call : calls) {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_FALSE(call(file));
        EXPECT_EQ(28, file.GetRetCode());
    }
    EXPECT_EQ((Records{"aaaa"}), ReadBack());
}

// --- Failures of the machine ----------------------------------------------------------------------

std::size_t FailRead(void*, std::size_t, std::size_t, FILE*) { return 0; }
std::size_t FailWrite(const void*, std::size_t, std::size_t, FILE*) { return 0; }
int FailFlush(FILE*) { return EOF; }
int FailSeek(FILE*, const fpos_t*) { return -1; }  // what this runtime makes of _fseeki64
// The file becomes shorter while its header is looked at.
long long ShrinkingLength(int) {
    static int calls = 0;
    return ++calls % 2 == 1 ? 40 : 20;
}
void* NoMemory(std::size_t) { return nullptr; }

TEST_F(RecFile, TellsWhatFailed) {
    Create({"aaaa"});
    const std::string before = Bytes();
    char record[] = "aaaa";
    const auto get = [&](CRecFile& file) { return file.Get(0, record); };
    const auto put = [&](CRecFile& file) { return file.Put(0, record); };
    const auto put_header = [&](CRecFile& file) { return file.PutHeader(); };
    const auto open = [&](CRecFile& file) { return file.Open(nullptr); };
    const auto expect = [&](int status, const std::function<bool(CRecFile&)>& call,
                            const char* function, auto* replacement) {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        const ImportPatch patch(kLibrary, function, replacement);
        EXPECT_FALSE(call(file)) << function;
        EXPECT_EQ(status, file.GetRetCode()) << function;
    };
    expect(5, get, "fread", &FailRead);
    expect(6, put, "fwrite", &FailWrite);
    expect(6, put, "fflush", &FailFlush);
    expect(6, put_header, "fwrite", &FailWrite);
    expect(21, get, "fsetpos", &FailSeek);
    expect(21, put, "fsetpos", &FailSeek);
    expect(21, open, "fsetpos", &FailSeek);
    expect(5, open, "fread", &FailRead);
    expect(5, open, "_filelengthi64", &ShrinkingLength);
    EXPECT_EQ(before, Bytes()) << "a header that could not be read is not written over";
}

TEST_F(RecFile, RunsOutOfMemoryWithoutLoss) {
    CRecFieldInfo fields[2];
    CRecordInfo info(2, fields);
    { CRecFile(path(), 0, kCreate, &info); }
    const std::string before = Bytes();
    for (const auto mode : {kCreate, kUpdate, kReadOnly}) {
        CRecFile file(path(), 0, mode, &info);
        const ImportPatch no_memory("libstdc++-6.dll", "malloc", &NoMemory);
        EXPECT_FALSE(file.Open(nullptr));
        EXPECT_EQ(16, file.GetRetCode()) << "mode " << int{mode};
    }
    EXPECT_EQ(before, Bytes());
}

// --- The binary interface -------------------------------------------------------------------------

// What a pointer to a virtual member holds: the offset in the table, plus one.
template <typename Member>
std::size_t SlotOf(Member member) {
    std::size_t word;
    std::memcpy(&word, &member, sizeof word);
    return word / sizeof(void*);
}

TEST(RecFileLayout, KeepsTheOrderOfItsVirtualFunctions) {
    struct Opened : CRecFile {
        static std::size_t InitSlot() { return SlotOf(&Opened::Init); }
    };
    constexpr std::size_t kDestructors = 2;
    EXPECT_EQ(kDestructors + 0, SlotOf(&CRecFile::Get));
    EXPECT_EQ(kDestructors + 1, SlotOf(&CRecFile::Put));
    EXPECT_EQ(kDestructors + 2, SlotOf(&CRecFile::Add));
    EXPECT_EQ(kDestructors + 3, SlotOf(&CRecFile::PutHeader));
    EXPECT_EQ(kDestructors + 4, Opened::InitSlot());
}

TEST(ServiceDbVariant, IsZeroAtFirstAndAfterClear) {
    CSERVICEDBVariant variant;
    EXPECT_EQ(0, variant.first | variant.second);
    variant.first = variant.second = -1;
    variant.Clear();
    EXPECT_EQ(0, variant.first | variant.second);
}

}  // namespace
