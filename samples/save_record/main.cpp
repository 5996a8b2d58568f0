// save_record FILE [TARGET]: saves FILE as a compressed record and proves that it can be read back.
//
// The record is built in memory with CQELMemStream, compressed with CompressMemory, saved through a
// CQELFile that throws on failure, opened and read again, recognised with IsMemoryCompressed,
// decompressed and compared byte for byte. TARGET defaults to FILE with ".qel" behind it.
//
// Ends with 0, or with 1 and a message that says what failed; a failure leaves nothing half-written.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <qelkit2.h>

#include <windows.h>

#include "../console/utf8.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Clock = std::chrono::steady_clock;

// A record: this header, then the bytes of the file.
struct RecordHeader {
    char tag[4];  // "REC1"
    std::uint32_t data_size;
    std::int64_t modified;  // local seconds since 1970
};

// The header that CompressMemory puts in front of its output.
constexpr std::uint64_t kContainerHeader = 24;
constexpr std::uint64_t kLargestFile = 0xFFFFFFFF - kContainerHeader - sizeof(RecordHeader);

// Why the program gives up where no status says it.
struct Refusal {
    std::string text;
};

// --- Showing things ------------------------------------------------------------------------------

void ShowFailure(const XQELFile& failure) {
    const CQELString message = failure.ErrorMessage();
    const CQELString text = GetErrorString("", failure);
    std::printf("  ErrorMessage():   %s\n", Utf8(message).c_str());
    std::printf("  GetErrorString(): %s\n", Utf8(text).c_str());
}

void ShowSpeed(const char* what, std::size_t bytes, Clock::time_point start) {
    const std::chrono::duration<double> passed = Clock::now() - start;
    std::printf("  %-12s %8.1f ms  %8.1f MB/s\n", what, passed.count() * 1e3,
                static_cast<double>(bytes) / passed.count() / 1e6);
}

// --- Files ---------------------------------------------------------------------------------------

// Opens a file that throws XQELFile on every failure. A drive that is not there is the one failure
// that opening does not report: the file just stays closed.
CQELFile OpenFile(const std::string& path, const char* mode) {
    CQELFile file(path.c_str(), mode, true);
    if (!file.IsOpen()) throw Refusal{"the drive of " + Utf8(path.c_str()) + " is not available"};
    return file;
}

// A file takes 32-bit counts and long work should be seen to go on, so it is moved in pieces.
constexpr std::size_t kPiece = 4 << 20;

std::size_t PieceAt(std::size_t done, std::size_t size) {
    return size - done < kPiece ? size - done : kPiece;
}

void ReadAll(const CQELFile& file, unsigned char* to, std::size_t size) {
    for (std::size_t done = 0; done < size;) {
        const ulong32 got = file.Read(to + done, static_cast<ulong32>(PieceAt(done, size)));
        if (got == 0) throw Refusal{"the file became shorter while it was read"};
        done += got;
    }
}

void WriteAll(CQELFile& file, const Bytes& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        done += file.Write(bytes.data() + done, static_cast<ulong32>(PieceAt(done, bytes.size())));
    }
    file.Flush();
    file.Close();
}

std::size_t LengthOf(const std::string& path) {
    std::uint64_t length = 0;
    const int status = CQELFile::GetFileLength(path.c_str(), length, false);
    if (status != 0) {
        const XQELFile failure(true);
        failure.SetErrMessEx(path.c_str());
        failure.SetError(status, 0);  // throws
    }
    if (length > kLargestFile) throw Refusal{"the file is too large: a record ends at 4 GiB"};
    return static_cast<std::size_t>(length);
}

// --- The record ------------------------------------------------------------------------------------

Bytes BuildRecord(const std::string& path) {
    const std::size_t size = LengthOf(path);
    CQELFile file = OpenFile(path, "rb");
    Bytes data(size);
    ReadAll(file, data.data(), size);

    RecordHeader header = {{'R', 'E', 'C', '1'}, static_cast<std::uint32_t>(size), 0};
    header.modified = static_cast<std::int64_t>(CQELDateTime(file.LastWriteTime()));

    Bytes record(sizeof header + size);
    CQELMemStream stream(record.data());
    stream.Write(&header, sizeof header);
    for (std::size_t done = 0; done < size;) {  // a stream takes signed 32-bit counts
        const std::size_t piece = PieceAt(done, size);
        stream.Write(data.data() + done, static_cast<int>(piece));
        done += piece;
    }
    return record;
}

// The record in its container, or the record itself when it cannot be made smaller.
Bytes Pack(const Bytes& record) {
    Bytes packed(record.size() + kContainerHeader);
    auto length = static_cast<ulong32>(packed.size());
    const auto start = Clock::now();
    const int compressed = CompressMemory(record.data(), static_cast<ulong32>(record.size()),
                                          packed.data(), &length, 1);
    ShowSpeed("compressing", record.size(), start);
    if (!compressed) return record;
    packed.resize(length);
    return packed;
}

// What Pack made, back again. A compressed container says how large its content is.
Bytes Unpack(Bytes& packed) {
    if (!IsMemoryCompressed(packed.data(), static_cast<ulong32>(packed.size()))) return packed;
    std::uint32_t original_size;
    std::memcpy(&original_size, packed.data() + 8, sizeof original_size);
    Bytes record(std::size_t{original_size} + 1);  // the decoder wants one spare byte
    ulong32 length = 0;
    const auto start = Clock::now();
    if (!DecompressMemory(packed.data(), record.data(), &length)) {
        throw Refusal{"the container does not decompress"};
    }
    ShowSpeed("decompressing", length, start);
    record.resize(length);
    return record;
}

// Writes beside the target and renames at the end: the target is never half-written.
void Save(const std::string& target, const Bytes& bytes) {
    const std::string part = target + ".part";
    try {
        CQELFile file = OpenFile(part, "wb");
        WriteAll(file, bytes);
        if (!MoveFileExA(part.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) {
            const XQELFile failure(true);
            failure.SetErrMessEx(target.c_str());
            failure.SetError(WinErr2QelkitErr(GetLastError()), 0);  // throws
        }
    } catch (...) {
        if (CQELFile::IsExists(part.c_str())) {
            const XQELFile ignored(false);
            CQELFile::Remove(part.c_str(), ignored);
        }
        throw;
    }
}

void SaveRecord(const std::string& path, const std::string& target) {
    std::printf("saving %s\n", Utf8(path.c_str()).c_str());
    const Bytes record = BuildRecord(path);
    const Bytes packed = Pack(record);
    Save(target, packed);

    const CQELFile file = OpenFile(target, "rb");
    Bytes read_back(LengthOf(target));
    ReadAll(file, read_back.data(), read_back.size());
    if (Unpack(read_back) != record) throw Refusal{"the record that was read back differs"};

    std::printf("  record %zu bytes, saved %zu bytes (%.1f %%)%s\n", record.size(), packed.size(),
                100.0 * static_cast<double>(packed.size()) / static_cast<double>(record.size()),
                packed.size() < record.size() ? "" : ": incompressible, stored as it is");
    std::printf("  read back from %s: every byte equal\n", Utf8(target.c_str()).c_str());
}

// What a caller sees of a failure.
void ShowAFailure(const std::string& target) {
    const std::string missing = target + ".missing";
    std::printf("opening a file that is not there throws XQELFile:\n");
    try {
        CQELFile file(missing.c_str(), "rb", true);
    } catch (const XQELFile& failure) {
        ShowFailure(failure);
    }
}

}  // namespace

int main(int argc, char** argv) {
    SetConsoleOutputCP(CP_UTF8);
    if (argc != 2 && argc != 3) {
        std::printf("usage: save_record FILE [TARGET]\n");
        return 1;
    }
    try {
        const std::string path = argv[1];
        const std::string target = argc == 3 ? argv[2] : path + ".qel";
        SaveRecord(path, target);
        ShowAFailure(target);
        return 0;
    } catch (const XQELFile& failure) {
        std::printf("failed:\n");
        ShowFailure(failure);
    } catch (const Refusal& refusal) {
        std::printf("failed: %s\n", refusal.text.c_str());
    } catch (const std::bad_alloc&) {
        std::printf("failed: not enough memory for the whole file\n");
    }
    return 1;
}
