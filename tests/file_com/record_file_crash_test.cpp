// Writers that are killed, disks that fill up.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <string>

#include "file_com/record_file.h"
#include "numbered_record.h"
#include "platform/handles.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

constexpr unsigned char kCreate = 0;
constexpr unsigned char kUpdate = 1;
constexpr unsigned char kReadOnly = 2;
constexpr long kHeader = 36;
constexpr long kRecord = sizeof(NumberedRecord);

// Whether the file holds the records first, first + 1, ... up to its size, each of them whole.
void ExpectNumbered(CRecFile& file, long first) {
    for (long i = first; i < file.Size(); ++i) {
        NumberedRecord record;
        ASSERT_TRUE(file.Get(i, &record)) << i << ": status " << file.GetRetCode();
        ASSERT_TRUE(record.IsNumber(i)) << i;
    }
}

// --- A writer that is killed ----------------------------------------------------------------------

// A process that appends to a file until it is killed.
class Writer {
public:
    explicit Writer(const std::string& path) {
        const std::string name = "qelkit-writer-" + std::to_string(GetCurrentProcessId());
        mapping_ = kit::KernelHandle(
            CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 64, name.c_str()));
        view_ = kit::MappedView(MapViewOfFile(mapping_.get(), FILE_MAP_WRITE, 0, 0, 0));
        std::string command = Program();
        command += " \"" + path + "\" " + name;
        STARTUPINFOA start = {};
        start.cb = sizeof start;
        PROCESS_INFORMATION made = {};
        EXPECT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &start, &made));
        process_ = kit::KernelHandle(made.hProcess);
        const kit::KernelHandle thread(made.hThread);
    }

    // Kills it a moment after `count` records are stored, at whatever it does then.
    void KillAfter(long count, std::chrono::microseconds moment) {
        while (stored() < count && WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT) {
            Sleep(0);
        }
        const auto end = std::chrono::steady_clock::now() + moment;
        while (std::chrono::steady_clock::now() < end) continue;
        EXPECT_TRUE(TerminateProcess(process_.get(), 1)) << "it has ended by itself";
        WaitForSingleObject(process_.get(), INFINITE);
    }

    long begun() const { return progress()[0]; }
    long stored() const { return progress()[1]; }

private:
    const std::atomic<long>* progress() const {
        return static_cast<const std::atomic<long>*>(view_.get());
    }
    // Stands beside this program; quoted.
    static std::string Program() {
        char path[MAX_PATH];
        GetModuleFileNameA(nullptr, path, sizeof path);
        const std::string own = path;
        return own.substr(0, own.rfind('\\') + 1).insert(0, 1, '"') + "record_writer.exe\"";
    }

    kit::KernelHandle mapping_;
    kit::MappedView view_;
    kit::KernelHandle process_;
};

TEST(RecFileCrash, AKilledWriterLosesNothingThatItStored) {
    constexpr int kKills = 110;
    const TempFolder folder;
    const std::string path = folder / "log.rec";
    { ASSERT_EQ(0, CRecFile(path.c_str(), kRecord, kCreate, nullptr).GetRetCode()); }

    std::mt19937 random(20070901);
    long size = 0;
    long lost = 0;
    for (int kill = 0; kill < kKills && !testing::Test::HasFailure(); ++kill) {
        SCOPED_TRACE(testing::Message() << "kill " << kill << " at " << size << " records");
        Writer writer(path);
        writer.KillAfter(size + 1 + static_cast<long>(random() % 40),
                         std::chrono::microseconds(random() % 300));
        CRecFile file(path.c_str(), kRecord, kUpdate, nullptr);
        ASSERT_EQ(0, file.GetRetCode());
        ASSERT_LE(writer.stored(), file.Size());
        ASSERT_LE(file.Size(), writer.begun());
        ExpectNumbered(file, size);
        size = file.Size();
        lost += writer.begun() - size;
    }
    EXPECT_GT(lost, 0) << "no kill came between an Add and its PutHeader";
    CRecFile file(path.c_str(), kRecord, kReadOnly, nullptr);
    EXPECT_EQ(size, file.Size());
    ExpectNumbered(file, 0);
}

// --- A disk that fills up -------------------------------------------------------------------------

// The disk under the C runtime, while a test lets it be full: it takes `calls_left` more writes,
// and none that goes beyond `capacity`, of which it takes the part that fits.
struct Disk {
    static inline long calls_left;
    static inline long capacity;

    static BOOL WINAPI Write(HANDLE file, const void* bytes, DWORD count, DWORD* written,
                             OVERLAPPED* overlapped) {
        const long at = static_cast<long>(SetFilePointer(file, 0, nullptr, FILE_CURRENT));
        const long room = --calls_left < 0 ? 0 : capacity - at;
        if (static_cast<long>(count) <= room) {
            return WriteFile(file, bytes, count, written, overlapped);
        }
        *written = 0;
        if (room > 0) WriteFile(file, bytes, static_cast<DWORD>(room), written, overlapped);
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
};

// Fills a new file until the disk refuses, PutHeader after every second record, and gives it up as a
// program does that goes on failing. Returns how many records were stored for good.
long FillUp(const std::string& path, long most) {
    const ImportPatch disk("msvcrt.dll", "WriteFile", &Disk::Write);
    CRecFile file(path.c_str(), kRecord, kCreate, nullptr);
    long stored = 0;
    for (long i = 0; file.GetRetCode() == 0 && i < most; ++i) {
        NumberedRecord record(i);
        const bool is_added = file.Add(&record);
        EXPECT_EQ(i + is_added, file.Size());
        if (file.Size() % 2 == 0 && file.PutHeader()) stored = file.Size();
    }
    EXPECT_EQ(6, file.GetRetCode());
    return stored;
}

void ExpectStored(const std::string& path, long stored) {
    for (const unsigned char mode : {kReadOnly, kUpdate, kUpdate}) {
        CRecFile file(path.c_str(), kRecord, mode, nullptr);
        // Not even the header has got onto the disk: there is nothing to read.
        if (mode == kReadOnly && stored == 0 && file.GetRetCode() == 5) continue;
        ASSERT_EQ(0, file.GetRetCode());
        ASSERT_EQ(stored, file.Size());
        ExpectNumbered(file, 0);
    }
}

constexpr long kVolume = 0x10000;
constexpr long kMostRecords = kVolume / kRecord;

TEST(RecFileCrash, ADiskThatFailsCostsOnlyWhatWasNotStored) {
    const TempFolder folder;
    const std::string path = folder / "log.rec";
    const auto expect = [&](long stored, long capacity, long calls) {
        SCOPED_TRACE(testing::Message() << capacity << " bytes, " << calls << " writes");
        Disk::capacity = capacity;
        Disk::calls_left = calls;
        EXPECT_EQ(stored, FillUp(path, kMostRecords + 1));
        ExpectStored(path, stored);
    };
    for (const long part_of_header : {0L, 1L, kHeader - 1}) expect(0, part_of_header, kMostRecords);
    for (long records = 0; records < kMostRecords && !testing::Test::HasFailure(); ++records) {
        for (const long part : {0L, 1L, kRecord - 1}) {
            expect(records / 2 * 2, kHeader + records * kRecord + part, 1000000);
        }
    }
    // One write for the header, then three for every two records.
    expect(0, kVolume, 0);
    for (long calls = 1; calls < kMostRecords * 3 / 2 && !testing::Test::HasFailure(); ++calls) {
        expect((calls - 1) / 3 * 2, kVolume, calls);
    }
}

}  // namespace
