#include "file_com/record_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <tuple>
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
        EXPECT_TRUE(file.GetField(1, 1, record.data()));
        EXPECT_EQ("load", record.substr(0, 4));
        std::string again = Get(file, 0, 8);
        EXPECT_TRUE(file.Add(again.data()));
    }
    EXPECT_EQ(DumpedBytes("dump=records"), Bytes());
}

TEST_F(RecFile, ReachesOffsetsBeyond32Bits) {
    constexpr std::int64_t kGiB = 0x40000000;
    Write(Numbers({44, kGiB, 5, 0, 0, 0, 2, 0, 0x3FFFFFFC, 0, 4}));
    SetLength(path_, 44 + 5 * kGiB);
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
    Write(Numbers({36, 800, 2, 0, 0, 0, 0, 0, 0}) + std::string(800, 'a') + std::string(800, 'b'));
    std::string record(900, 'c');
    {
        CRecFile longer(path(), 900, kUpdate, nullptr);
        EXPECT_EQ(std::string(800, 'b') + std::string(100, '\0'), Get(longer, 1, 900));
        EXPECT_TRUE(longer.Put(1, record.data()));
    }
    EXPECT_EQ(std::string(800, 'a') + std::string(800, 'c'), Bytes().substr(36));
    {
        CRecFile shorter(path(), 3, kUpdate, nullptr);
        EXPECT_EQ("aaa", Get(shorter, 0, 3));
        EXPECT_TRUE(shorter.Put(0, record.data()) && shorter.Add(record.data()));
    }
    const std::string ccc = "ccc" + std::string(797, '\0');
    EXPECT_EQ(ccc + std::string(800, 'c') + ccc, Bytes().substr(36));
}

TEST_F(RecFile, RingSparesTheLastSlot) {
    Create({"A   ", "B   ", "C   ", "d   ", "e   ", "f   "}, 3);
    EXPECT_EQ((Records{"f   ", "e   ", "C   "}), ReadBack());
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_TRUE(file.MaxRecords() == 3 && file.Current() == 1);
        char record[] = "g   ";
        EXPECT_TRUE(file.Add(record));
        EXPECT_EQ(2, file.Current());
    }
    EXPECT_EQ((Records{"f   ", "g   ", "C   "}), ReadBack());
    Create({"A   ", "b   ", "c   "}, 1);
    EXPECT_EQ((Records{"c   "}), ReadBack());
}

TEST_F(RecFile, StaysOutOfWorkAfterAFailure) {
    char record[] = "zzzz";
    const struct {
        int status;
        std::function<bool(CRecFile&)> call;
        Mode mode = kUpdate;
    } cases[] = {
        {37, [&](CRecFile& file) { return file.Get(2, record); }},
        {37, [&](CRecFile& file) { return file.Get(-1, record); }},
        {37, [&](CRecFile& file) { return file.Get(0x7FFFFFFF, record); }},
        {37, [&](CRecFile& file) { return file.Put(-0x7FFFFFFF - 1, record); }},
        {37, [&](CRecFile& file) { return file.Put(2, record); }},
        {37, [&](CRecFile& file) { return file.GetField(2, 0, record); }},
        {37, [&](CRecFile& file) { return file.GetField(-1, 0, record); }},
        {37, [&](CRecFile& file) { return file.PutField(0, 0, record); }},
        {37, [&](CRecFile& file) { return file.AddEx(record, 0); }},
        {28, [&](CRecFile& file) { return file.Get(0, nullptr); }},
        {28, [&](CRecFile& file) { return file.Put(0, nullptr); }},
        {28, [&](CRecFile& file) { return file.Add(nullptr); }},
        {28, [&](CRecFile& file) { return file.GetEx(nullptr, 1); }},
        {28, [&](CRecFile& file) { return file.GetEx(record, -1); }},
        {28, [&](CRecFile& file) { return file.MaxRecords(-1); }},
        {6, [&](CRecFile& file) { return file.Put(0, record); }, kReadOnly},
        {6, [&](CRecFile& file) { return file.Add(record); }, kReadOnly},
        {6, [&](CRecFile& file) { return file.PutHeader(); }, kReadOnly},
        {6, [&](CRecFile& file) { return file.PutEx(record, 4); }, kReadOnly},
    };
    Create({"aaaa", "bbbb"});
    const std::string before = Bytes();
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        CRecFile file(path(), kLength, c.mode, nullptr);
        file.MaxRecords(9);
        EXPECT_FALSE(c.call(file));
        EXPECT_FALSE(file.Get(0, record) || file.Put(0, record) || file.Add(record) ||
                     file.PutHeader() || file.GetEx(record, 1) || file.PutEx(record, 4) ||
                     file.AddEx(record, 4) || file.GetField(0, 0, record) || file.MaxRecords(1));
        EXPECT_EQ(c.status, file.GetRetCode());
        EXPECT_EQ(0, file.MaxRecords());
        EXPECT_STREQ("zzzz", record);
        EXPECT_TRUE(file.Open(nullptr));
        EXPECT_EQ("bbbb", Get(file, 1));
    }
    EXPECT_EQ(before, Bytes());
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
}

TEST_F(RecFile, LimitGivesUpTheRecordsBeyond) {
    Create({"aaaa", "bbbb", "cccc", "dddd", "eeee"});
    const std::tuple<long32, long32, std::string> cases[] = {
        {6, 5, "aaaabbbbccccddddeeee"}, {2, 2, "aaaabbbb"}, {0, 0, ""}};
    for (const auto& [limit, count, records] : cases) {
        { EXPECT_TRUE(CRecFile(path(), kLength, kUpdate, nullptr).MaxRecords(limit)); }
        EXPECT_EQ(Numbers({36, 4, count, 0, limit, 0, 0, 0, 0}) + records, Bytes());
    }
}

TEST_F(RecFile, ReadingMeetsTheEndOfTheFile) {
    const std::tuple<long32, long32, int> cases[] = {{4, 0, 0},  {4, 1, 5}, {4, 2, 37},
                                                     {4, 3, 37}, {0, 0, 0}, {6, 1, 37}};
    for (const auto& [record_length, i, status] : cases) {
        Write(Numbers({36, record_length, 3, 0, 0, 0, 0, 0, 0}) + "aaaabb");
        CRecFile file(path(), kLength, kReadOnly, nullptr);
        char record[kLength];
        file.Get(i, record);
        EXPECT_EQ(status, file.GetRetCode()) << record_length << ", " << i;
    }
}

// --- Opening --------------------------------------------------------------------------------------

TEST_F(RecFile, RepairsWhatWasCutAtAnyLength) {
    const std::string whole = Numbers({36, 4, 3, 0, 9, 0, 0, 0, 0}) + "aaaabbbbcccc";
    const Records records = {"aaaa", "bbbb", "cccc"};
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        const int count = length < 40 ? 0 : length < 44 ? 1 : length < 48 ? 2 : 3;
        Write(whole.substr(0, length));
        {
            CRecFile file(path(), kLength, kUpdate, nullptr);
            EXPECT_EQ(0, file.GetRetCode());
            EXPECT_EQ(Records(records.begin(), records.begin() + count), GetAll(file));
            EXPECT_EQ(length > 36 ? 9 : 0, file.MaxRecords()) << "a fresh header has no limit";
        }
        EXPECT_EQ(36u + 4u * static_cast<unsigned>(count), Bytes().size())
            << "the torn one is gone";
    }
}

TEST_F(RecFile, StartsAfreshOverAnUnreadableHeaderAndLeavesADamagedOne) {
    CRecFieldInfo fields[] = {{kFileDataBytes, 1}, {kFileDataBytes, 3}};
    CRecordInfo one(1, fields), two(2, fields);
    const std::string two_fields = Numbers({44, 4, 1, 0, 0, 0, 2, 0, 1, 0, 3}) + "aaaa";
    const std::string damaged = Numbers({36, 4, -1, 0, 0, 0, 0, 0, 0}) + "aaaa";
    const struct {
        std::string bytes;
        CRecordInfo* info;
        int status;
        std::string fresh;
    } cases[] = {
        {"a text, and longer than a header is", nullptr, 0, Numbers({36, 4, 0, 0, 0, 0, 0, 0, 0})},
        {Numbers({36, 4, 1}), &two, 0, Numbers({44, 4, 0, 0, 0, 0, 2, 0, 1, 0, 3})},
        {two_fields, &one, 0, Numbers({36, 4, 0, 0, 0, 0, 1, 0, 1})},
        {two_fields, &two, 0, two_fields},
        {damaged, nullptr, 74, damaged},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        Write(c.bytes);
        { CRecFile(path(), 4, kReadOnly, c.info); }
        EXPECT_EQ(c.bytes, Bytes());
        {
            CRecFile file(path(), 4, kUpdate, c.info);
            EXPECT_EQ(c.status, file.GetRetCode());
            EXPECT_TRUE(c.status == 0 || (file.Size() == 0 && !file.GetFptr()));
        }
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
        const char* name;
        long32 length;
        int mode;
        CRecordInfo* info;
        int status;
    } cases[] = {
        {"none.rec", 4, kUpdate, nullptr, 4},  {"none.rec", 4, kReadOnly, nullptr, 4},
        {"", 4, kUpdate, nullptr, 4},          {"no\\folder\\x", 4, kCreate, nullptr, 17},
        {".", 4, kReadOnly, nullptr, 17},      {"a.rec", 4, 3, nullptr, 17},  // no such mode
        {"a.rec", -1, kCreate, nullptr, 28},   {"a.rec", 4, kCreate, &bad_field, 28},
        {"a.rec", 4, kCreate, &huge, 28},  // a header of more than 2 GiB
        {"a.rec", 4, kUpdate, &no_fields, 28},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const std::string path = *c.name ? folder_ / c.name : "";
        CRecFile file(path.c_str(), c.length, static_cast<unsigned char>(c.mode), c.info);
        EXPECT_EQ(c.status, file.GetRetCode());
        EXPECT_EQ(c.mode, file.ModeOpen());
    }
    EXPECT_EQ(before, Bytes());
    EXPECT_FALSE(folder_.Has("none.rec"));
    EXPECT_EQ(4, CRecFile(nullptr, 4, kUpdate, nullptr).GetRetCode());
}

TEST_F(RecFile, ReadOnlyStaysAsItIsUntilItIsReplaced) {
    Create({"aaaa"});
    const std::string before = Bytes() + "behind";
    Write(before);
    CRecFile file(path(), kLength, kReadOnly, nullptr);
    file.Destroy();
    EXPECT_EQ(0, file.GetRetCode());
    EXPECT_EQ(before, Bytes());
    const ReadOnlyFile attribute(path_);
    EXPECT_EQ(17, CRecFile(path(), kLength, kUpdate, nullptr).GetRetCode());
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
        EXPECT_TRUE(file.Add(record) && file.Add(record));
        file.Close();
        EXPECT_EQ(Numbers({36, 4, 1, 0, 0, 0, 0, 0, 0}) + "aaaabbbbbbbb", Bytes());
        EXPECT_TRUE(file.Size() == 3 && file.GetRetCode() == 0);
        EXPECT_FALSE(file.Get(0, record));
        EXPECT_EQ(17, file.GetRetCode());
        EXPECT_TRUE(file.Open(nullptr));
        EXPECT_EQ(1, file.Size());
        file.Destroy();
        EXPECT_EQ(40u, Bytes().size());
        EXPECT_EQ(0, file.Size());
        EXPECT_TRUE(file.Open("") && file.Add(record));
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
    const std::string header = Bytes().substr(0, 36);
    for (const bool is_cut_by_others : {false, true}) {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        file.MaxRecords(1);
        file.Close();
        if (is_cut_by_others) Write("short");
        file.Destroy();
        EXPECT_EQ(is_cut_by_others ? "short" : header + "aaaa", Bytes());
    }
}

TEST_F(RecFile, MovesAndRemoves) {
    const std::string moved = folder_ / "b.rec";
    const Records others = {"bbbb", "cccc"};
    const Pauses no_waiting;
    Create({"aaaa"});
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_TRUE(file.Move(moved.c_str()));
        EXPECT_EQ(path_, file.Name());
        EXPECT_FALSE(folder_.Has("a.rec"));
        Create(others);  // somebody else's file of the old name
    }
    EXPECT_EQ(others, ReadBack());
    EXPECT_EQ(Numbers({36, 4, 1, 0, 0, 0, 0, 0, 0}) + "aaaa", folder_.Read("b.rec"));
    {
        CRecFile file(path(), kLength, kUpdate, nullptr);
        EXPECT_FALSE(file.Move(moved.c_str()));
        EXPECT_EQ(44, file.GetRetCode());
        EXPECT_TRUE(file.Open(moved.c_str()));
        ASSERT_TRUE(SetFileAttributesA(moved.c_str(), FILE_ATTRIBUTE_READONLY));
        EXPECT_TRUE(file.Remove() && file.Remove()) << "no file is as good as a removed one";
    }
    EXPECT_FALSE(folder_.Has("b.rec")) << "nor does the end of the object make it";
    CRecFile(path(), kLength, kUpdate, nullptr).Move((folder_ / ".\\A.REC").c_str());
    EXPECT_EQ(others, ReadBack()) << "moved onto itself";
    const HeldFile held(path_);
    CRecFile file(path(), kLength, kUpdate, nullptr);
    EXPECT_EQ(17, file.GetRetCode());
    EXPECT_FALSE(file.Remove());
    EXPECT_EQ(43, file.GetRetCode());
}

TEST_F(RecFile, TakesAnotherDescriptionAtTheNextOpening) {
    CRecFieldInfo field(kFileDataBytes, 4);
    CRecordInfo info(1, &field);
    char record[] = "aaaa";
    CRecFile file(path(), kLength, kCreate, nullptr);
    file.ResetFieldInfo(&info);
    EXPECT_TRUE(file.Add(record) && !file.GetField(0, 0, record) && file.Open(nullptr));
    EXPECT_TRUE(file.Add(record) && file.GetField(0, 0, record));
    EXPECT_FALSE(file.Put(1, record)) << "only Add goes behind the end";
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
    using Call = std::function<bool(CRecFile&)>;
    char record[] = "aaaa";
    const Call get = [&](CRecFile& file) { return file.Get(0, record); };
    const Call put = [&](CRecFile& file) { return file.Put(0, record); };
    const Call put_header = [&](CRecFile& file) { return file.PutHeader(); };
    const Call open = [&](CRecFile& file) { return file.Open(nullptr); };
    Create({"aaaa"});
    const std::string before = Bytes();
    const auto expect = [&](int status, const Call& call, const char* function, auto* replacement) {
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

TEST(ServiceDbVariant, IsZeroAtFirstAndAfterClear) {
    CSERVICEDBVariant variant;
    EXPECT_EQ(0, variant.first | variant.second);
    variant.first = variant.second = -1;
    variant.Clear();
    EXPECT_EQ(0, variant.first | variant.second);
}

}  // namespace
