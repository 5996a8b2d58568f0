#include "file_com/record_file.h"

#include <io.h>

#include <cstddef>
#include <cstring>
#include <limits>

#include "base/byte_order.h"
#include "file_com/detail/record_header.h"
#include "file_com/detail/stream_tools.h"
#include "file_com/qel_file.h"
#include "platform/handles.h"
#include "platform/windows.h"
#include "status/qel_status.h"
#include "status/status_codes.h"

#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Winvalid-offsetof"  // the classes have one virtual table, no more
#endif

struct CRecFileLayout {
    static_assert(offsetof(CRecFile, ready_) == 8 && offsetof(CRecFile, status_) == 12 &&
                      offsetof(CRecFile, header_) == 16 && offsetof(CRecFile, builtin_) == 24 &&
                      offsetof(CRecFile, mode_) == 60 && offsetof(CRecFile, name_) == 64 &&
                      offsetof(CRecFile, record_length_) == 80 &&
                      offsetof(CRecFile, block_) == 88 && offsetof(CRecFile, destroyed_) == 96 &&
                      offsetof(CRecFile, stream_) == 104 && offsetof(CRecFile, appending_) == 112 &&
                      offsetof(CRecFile, count_at_open_) == 116 &&
                      offsetof(CRecFile, info_) == 120 && sizeof(CRecFile) == 128,
                  "part of the binary interface");
};

namespace {

enum Mode : unsigned char { kCreate, kUpdate, kReadOnly };

constexpr std::int32_t kMostRecords = std::numeric_limits<std::int32_t>::max();

// The beginning of an open file.
class StreamSource : public kit::HeaderSource {
public:
    explicit StreamSource(FILE* stream) : stream_(stream) {}

    std::int64_t Length() override { return ::_filelengthi64(::_fileno(stream_)); }
    int Read(unsigned char* to, std::size_t size) override {
        if (::_fseeki64(stream_, 0, SEEK_SET) != 0) return kStatusSeekFailed;
        return ::fread(to, 1, size, stream_) == size ? kStatusOk : kStatusReadFailed;
    }

private:
    FILE* const stream_;
};

bool RemoveFile(const char* path) {
    const XQELFile outcome(false);
    return !CQELFile::IsExists(path) || CQELFile::RemoveEx(path, outcome) == kStatusOk;
}

bool Identify(const char* path, BY_HANDLE_FILE_INFORMATION& identity) {
    const kit::FileHandle file(
        ::CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file && ::GetFileInformationByHandle(file.get(), &identity);
}

// Whether two names, in whatever spelling, lead to one file.
bool IsSameFile(const char* one, const char* other) {
    BY_HANDLE_FILE_INFORMATION a;
    BY_HANDLE_FILE_INFORMATION b;
    return Identify(one, a) && Identify(other, b) &&
           a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
           a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow;
}

int WriteZeros(FILE* stream, std::size_t count) {
    static constexpr unsigned char kZeros[512] = {};
    while (count > 0) {
        const std::size_t piece = count < sizeof kZeros ? count : sizeof kZeros;
        if (::fwrite(kZeros, 1, piece, stream) != piece) return kStatusWriteFailed;
        count -= piece;
    }
    return kStatusOk;
}

}  // namespace

// --- Life -----------------------------------------------------------------------------------------

CRecFile::CRecFile(const char* name, long32 record_length, unsigned char mode, CRecordInfo* info)
    : header_(builtin_), mode_(mode), name_(name), record_length_(record_length), info_(info) {
    CRecFile::Init();
}

CRecFile::~CRecFile() { Destroy(); }

bool CRecFile::Open(const char* name) {
    Close();
    if (name && *name) name_ = name;
    ready_ = false;
    return Init();
}

bool CRecFile::Init() {
    Close();
    ForgetHeader();
    destroyed_ = false;
    Settle(OpenFile());
    count_at_open_ = Size();
    if (!ready_) {
        Close();
        ForgetHeader();
    }
    return ready_;
}

int CRecFile::OpenFile() {
    if (mode_ > kReadOnly) return kStatusOpenFailed;
    if (record_length_ < 0 || !kit::IsUsable(info_)) return kStatusBadParameter;
    return mode_ == kCreate ? CreateNew() : OpenExisting();
}

int CRecFile::CreateNew() {
    int status = TakeFreshHeader();
    if (status != kStatusOk) return status;
    RemoveFile(name_);  // what cannot be removed may still be overwritten
    status = OpenStream("w+b");
    return status == kStatusOk ? StoreHeader() : status;
}

int CRecFile::OpenExisting() {
    if (!CQELFile::IsExists(name_)) return kStatusFileNotFound;
    const int status = OpenStream(IsReadOnly() ? "rb" : "r+b");
    if (status != kStatusOk) return status;
    StreamSource source(stream_);
    const auto verdict = kit::ReadHeader(source, info_, builtin_, block_);
    header_ = block_ ? block_.get() : builtin_;
    if (IsReadOnly()) return verdict.status;
    if (verdict.status == kStatusOk) return UpdateCount(source.Length());
    return verdict.is_unreadable ? StartAfresh() : verdict.status;
}

// Makes the header true to a file of this length.
int CRecFile::UpdateCount(std::int64_t file_length) {
    const kit::RecordHeader header(header_);
    if (file_length < header.Length()) return kStatusReadFailed;  // shorter than a moment ago
    switch (kit::FitCount(header, file_length)) {
        case kit::CountFit::kFits:
            return kStatusOk;
        case kit::CountFit::kLowered:
            return StoreHeader();
        case kit::CountFit::kNothingBehind:
            break;
    }
    return StartAfresh();
}

int CRecFile::StartAfresh() {
    const int status = TakeFreshHeader();
    return status == kStatusOk ? StoreHeader() : status;
}

int CRecFile::TakeFreshHeader() {
    const int status = kit::MakeHeader(record_length_, info_, builtin_, block_);
    header_ = block_ ? block_.get() : builtin_;
    return status;
}

// Writes the header of a file that is being opened.
int CRecFile::StoreHeader() {
    ready_ = true;
    PutHeader();
    return status_;
}

int CRecFile::OpenStream(const char* mode) {
    stream_ = ::fopen(name_, mode);
    return stream_ ? kStatusOk : kStatusOpenFailed;
}

void CRecFile::ForgetHeader() {
    block_.reset();
    std::memset(builtin_, 0, sizeof builtin_);
    header_ = builtin_;
}

void CRecFile::Close() {
    FILE* const stream = stream_;
    stream_ = nullptr;
    if (stream && ::fclose(stream) != 0) Settle(kStatusWriteFailed);
}

void CRecFile::Destroy() {
    if (destroyed_) return;
    destroyed_ = true;
    if (!IsReadOnly()) PutHeader();
    Close();
    const kit::RecordHeader header(header_);
    const bool keeps_length = (header.Flags() & kit::kKeepsLength) != 0;
    if (ready_ && !keeps_length && !IsReadOnly()) TrimFile();
    ForgetHeader();
}

// Cuts off what lies behind the last record. Never makes a file that is not there.
void CRecFile::TrimFile() const {
    const std::int64_t end = kit::RecordHeader(header_).End();
    std::uint64_t length = 0;
    if (CQELFile::GetFileLength(name_, length, false) != kStatusOk) return;
    if (length <= static_cast<std::uint64_t>(end)) return;
    if (FILE* const stream = ::fopen(name_, "r+b")) {
        ::_chsize_s(::_fileno(stream), end);
        ::fclose(stream);
    }
}

bool CRecFile::Move(const char* new_name) {
    Close();
    const XQELFile outcome(false);
    if (!CQELFile::MoveFileA(name_, new_name, outcome)) return Settle(kStatusRenameFailed);
    if (!IsSameFile(name_, new_name)) RemoveFile(name_);
    destroyed_ = true;  // whoever makes a file of the old name now: it is not ours to cut
    return true;
}

bool CRecFile::Remove() {
    Close();
    if (!RemoveFile(name_)) return Settle(kStatusRemoveFailed);
    destroyed_ = true;
    return true;
}

// --- Records --------------------------------------------------------------------------------------

bool CRecFile::Get(long32 i, void* buf) {
    if (!Start(buf, record_length_)) return false;
    const kit::RecordHeader header(header_);
    if (!IsRecord(i)) return Settle(kStatusIndexOutOfBounds);
    const std::size_t common = CommonLength();
    const int status = ReadAt(header.OffsetOf(i), buf, common);
    if (status == kStatusOk && common < RoomOfRecord()) {
        std::memset(static_cast<unsigned char*>(buf) + common, 0, RoomOfRecord() - common);
    }
    return Settle(status);
}

bool CRecFile::Put(long32 i, void* buf) {
    if (!Start(buf, record_length_)) return false;
    const kit::RecordHeader header(header_);
    if (i < 0 || !(appending_ || IsRecord(i))) return Settle(kStatusIndexOutOfBounds);
    const std::size_t common = CommonLength();
    const std::size_t zeros = static_cast<std::size_t>(header.RecordLength()) - common;
    return Settle(WriteAt(header.OffsetOf(i), buf, common, zeros));
}

bool CRecFile::Add(void* buf) {
    if (!Start(buf, record_length_)) return false;
    const kit::RecordHeader header(header_);
    if (header.MaxCount() != 0 && header.Count() >= header.MaxCount()) return AddToRing(buf);
    if (header.Count() == kMostRecords) return Settle(kStatusIndexOutOfBounds);
    appending_ = true;
    if (Put(header.Count(), buf)) CountOneMore();
    appending_ = false;
    return ready_;
}

bool CRecFile::AddToRing(void* buf) {
    kit::RecordHeader header(header_);
    // Quirk: the position wraps one slot early: slot M - 1 keeps its record, and the ring turns over
    // slots 0 .. M - 2. Existing files hold their records in this order, and readers count on it.
    // Pinned by RecFile.RingSparesTheLastSlot.
    if (header.RingPosition() >= header.MaxCount() - 1) header.SetRingPosition(0);
    if (Put(header.RingPosition(), buf)) header.SetRingPosition(header.RingPosition() + 1);
    return ready_;
}

bool CRecFile::PutHeader() {
    if (!ready_ || !stream_) return ready_;
    const auto length = static_cast<std::size_t>(kit::RecordHeader(header_).Length());
    return Settle(WriteAt(0, header_, length, 0));
}

bool CRecFile::GetField(long32 i, long32 j, void* buf) {
    kit::FieldPlace place;
    if (!StartField(i, j, buf, place)) return false;
    return Settle(ReadAt(place.offset, buf, static_cast<std::size_t>(place.size)));
}

bool CRecFile::PutField(long32 i, long32 j, void* buf) {
    kit::FieldPlace place;
    if (!StartField(i, j, buf, place)) return false;
    return Settle(WriteAt(place.offset, buf, static_cast<std::size_t>(place.size), 0));
}

bool CRecFile::GetEx(void* buf, long32 n) {
    if (!Start(buf, n)) return false;
    const auto size = static_cast<std::size_t>(n);
    return Settle(::fread(buf, 1, size, stream_) == size ? kStatusOk : kStatusReadFailed);
}

bool CRecFile::PutEx(void*, long32 n) {
    if (!Start(nullptr, 0)) return false;
    if (n == 0) return Settle(kStatusIndexOutOfBounds);
    if (!kit::SettleStream(stream_)) return Settle(kStatusSeekFailed);  // it may have been read
    // Quirk: only the length is written; programs write the data themselves, and files would get it
    // twice. Pinned by RecFile.WritesTheLengthOfLooseDataOnly.
    unsigned char length[4];
    kit::StoreLe32(length, static_cast<std::uint32_t>(n));
    return Settle(Write(length, sizeof length, 0));
}

bool CRecFile::AddEx(void* data, long32 n) {
    if (!Start(nullptr, 0)) return false;
    if (Size() == kMostRecords) return Settle(kStatusIndexOutOfBounds);
    if (PutEx(data, n)) CountOneMore();
    return ready_;
}

long32 CRecFile::GetSizeRec() const {
    unsigned char length[4];
    if (!ready_ || !stream_ || ::fread(length, 1, sizeof length, stream_) != sizeof length)
        return 0;
    return static_cast<long32>(kit::LoadLe32(length));
}

// --- The header -----------------------------------------------------------------------------------

long32 CRecFile::Size() const { return kit::RecordHeader(header_).Count(); }

long32 CRecFile::Current() const { return kit::RecordHeader(header_).RingPosition(); }

bool CRecFile::MaxRecords(long32 m) {
    if (!ready_) return false;
    if (m < 0) return Settle(kStatusBadParameter);
    kit::RecordHeader header(header_);
    header.SetMaxCount(m);
    // Quirk: 0 lifts the limit and drops every record with it. Programs empty their files by it.
    // Pinned by RecFile.LimitGivesUpTheRecordsBeyond.
    if (header.Count() > m) header.SetCount(m);
    return true;
}

long32 CRecFile::MaxRecords() const { return ready_ ? kit::RecordHeader(header_).MaxCount() : 0; }

void CRecFile::ResetFieldInfo(CRecordInfo* info) { info_ = info; }

void CRecFile::CountOneMore() {
    kit::RecordHeader header(header_);
    header.SetCount(header.Count() + 1);
}

// --- Parts of the above ---------------------------------------------------------------------------

// Whether an operation with a buffer of n bytes may begin.
bool CRecFile::Start(const void* buf, long32 n) {
    if (!ready_) return false;
    if (!stream_) return Settle(kStatusOpenFailed);
    return n == 0 || (n > 0 && buf) || Settle(kStatusBadParameter);
}

// The same for field j of record i; finds its place in the file.
bool CRecFile::StartField(long32 i, long32 j, const void* buf, kit::FieldPlace& place) {
    if (!Start(nullptr, 0)) return false;
    const kit::RecordHeader header(header_);
    if (!IsRecord(i) || !kit::FindField(header, j, place)) return Settle(kStatusIndexOutOfBounds);
    place.offset += header.OffsetOf(i);
    return Start(buf, place.size);
}

// Ends an operation.
bool CRecFile::Settle(int status) {
    status_ = status;
    ready_ = status == kStatusOk;
    return ready_;
}

bool CRecFile::IsReadOnly() const { return mode_ == kReadOnly; }

bool CRecFile::IsRecord(long32 i) const { return i >= 0 && i < Size(); }

std::size_t CRecFile::RoomOfRecord() const { return static_cast<std::size_t>(record_length_); }

// What a record of the file and one of the caller have in common.
std::size_t CRecFile::CommonLength() const {
    const auto stored = static_cast<std::size_t>(kit::RecordHeader(header_).RecordLength());
    return stored < RoomOfRecord() ? stored : RoomOfRecord();
}

int CRecFile::ReadAt(std::int64_t offset, void* to, std::size_t size) const {
    if (::_fseeki64(stream_, offset, SEEK_SET) != 0) return kStatusSeekFailed;
    const std::size_t read = ::fread(to, 1, size, stream_);
    // Asking for the length before each read would cost as much as the read does.
    const bool is_behind_the_end =
        read == 0 && !::ferror(stream_) && offset >= ::_filelengthi64(::_fileno(stream_));
    if (is_behind_the_end) return kStatusIndexOutOfBounds;
    return read == size ? kStatusOk : kStatusReadFailed;
}

int CRecFile::WriteAt(std::int64_t offset, const void* from, std::size_t size, std::size_t zeros) {
    if (::_fseeki64(stream_, offset, SEEK_SET) != 0) return kStatusSeekFailed;
    return Write(from, size, zeros);
}

// Writes bytes and zeros behind them, through to the system.
int CRecFile::Write(const void* from, std::size_t size, std::size_t zeros) {
    if (::fwrite(from, 1, size, stream_) != size) return kStatusWriteFailed;
    const int status = WriteZeros(stream_, zeros);
    if (status != kStatusOk) return status;
    return ::fflush(stream_) == 0 ? kStatusOk : kStatusWriteFailed;
}
