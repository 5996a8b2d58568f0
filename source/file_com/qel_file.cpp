#include "file_com/qel_file.h"

#include <io.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "file_com/detail/busy_file.h"
#include "file_com/detail/commit_mode.h"
#include "file_com/detail/stream_tools.h"
#include "platform/last_error.h"
#include "platform/windows.h"
#include "status/status_codes.h"
#include "status/status_convert.h"

static_assert(sizeof(CQELFile::CQELFileImp) == 24, "part of the binary interface");
static_assert(sizeof(CQELDirectFile) == sizeof(CQELFile), "part of the binary interface");
#ifdef _MSC_VER
static_assert(sizeof(CQELFile) == 72, "part of the binary interface");
#else
static_assert(sizeof(CQELFile) == 64, "part of the binary interface");
#endif

namespace {

struct StreamCloser {
    void operator()(FILE* stream) const { std::fclose(stream); }
};
using OwnedStream = std::unique_ptr<FILE, StreamCloser>;

// The rights that the letters of a mode ask for, as Access() names them.
int RightsOf(const char* mode) {
    constexpr struct {
        char letter;
        int rights;
    } kLetters[] = {{'r', 4}, {'a', 2}, {'w', 2}, {'+', 6}};
    int rights = 0;
    for (const auto& row : kLetters) {
        if (mode && std::strchr(mode, row.letter)) rights |= row.rights;
    }
    return rights;
}

FILE* OpenStream(const char* name, const char* mode) {
    if (mode) return ::fopen(name, mode);
    FILE* const existing = ::fopen(name, "r+b");
    return existing ? existing : ::fopen(name, "w+b");
}

// The attempts of one Open, and what their failures were about.
class Opening {
public:
    Opening(const char* name, const char* mode)
        : name_(name), mode_(mode), rights_(RightsOf(mode)) {}

    OwnedStream Run() {
        kit::RetryWhileBusy([this] { return Attempt(); }, [this] { return Judge(); }, kit::SleepMs);
        return std::move(stream_);
    }

    int Status() const {
        if (denied_) return kStatusAccessDenied;
        // The runtime refuses some modes without asking the system: no system error then.
        if (exists_ || error_.win32 == 0) return kStatusOpenFailed;
        return WinErr2QelkitErr(error_.win32);
    }
    int Errno() const { return error_.c_error; }

private:
    bool Attempt() {
        ::SetLastError(0);
        stream_.reset(OpenStream(name_, mode_));
        if (!stream_) error_ = kit::SystemError::Capture();
        return stream_ != nullptr;
    }

    kit::Failure Judge() {
        exists_ = CQELFile::IsExists(name_);
        if (!exists_) return kit::Failure::kGone;
        if (!HeldByAnother() && CQELFile::Access(name_, rights_)) return kit::Failure::kRefused;
        denied_ = true;
        return kit::Failure::kBusy;
    }

    // The runtime's access check looks at attributes only. Without a mode no rights were asked for.
    bool HeldByAnother() const {
        return mode_ &&
               (error_.win32 == ERROR_SHARING_VIOLATION || error_.win32 == ERROR_LOCK_VIOLATION);
    }

    const char* const name_;
    const char* const mode_;
    const int rights_;
    OwnedStream stream_;
    kit::SystemError error_;
    bool exists_ = false;
    bool denied_ = false;
};

}  // namespace

CQELFile::CQELFileImp::~CQELFileImp() { std::fclose(stream_); }

CQELFile::CQELFile(const char* name, const char* mode, bool raise) : XQELFile(raise) {
    Open(name, mode, raise);
}

CQELFile::CQELFile(const CQELFile& other)
    : XQELFile(false), name_(other.name_), handle_(other.handle_) {
    TakeRaiseFlag(other);
    if (handle_) handle_->AddRef();
}

CQELFile& CQELFile::operator=(const CQELFile& other) {
    CQELFileImp* const shared = other.handle_;
    if (shared) shared->AddRef();  // first: it may be the one that we let go
    Release();
    handle_ = shared;
    name_ = other.name_;
    TakeRaiseFlag(other);
    return *this;
}

CQELFile::~CQELFile() { Release(); }

void CQELFile::Open(const char* name, const char* mode, bool raise) {
    Clear();
    if (!name || !CheckVolume(name)) return;
    const CQELString path(name);  // `name` may be a text of ours that goes below
    Release();
    XQELFile::operator=(XQELFile(raise));

    Opening opening(path, mode);
    OwnedStream stream = opening.Run();
    if (!stream) {
        SetErrMessEx(path);
        SetError(opening.Status(), opening.Errno());
        return;
    }
    handle_ = new (std::nothrow) CQELFileImp(stream.get());
    if (!handle_) {
        SetErrMessEx(path);
        SetError(kStatusOutOfMemory, ENOMEM);
        return;
    }
    stream.release();
    name_ = path;
}

void CQELFile::Close() const {
    if (Begin(__LINE__)) Release();
}

ulong32 CQELFile::Read(void* buf, ulong32 n) const {
    FILE* const stream = Begin(__LINE__);
    if (!stream || n == 0) return 0;
    if (!buf) return Fail(kStatusBadParameter, 0), 0;
    const std::size_t read = std::fread(buf, 1, n, stream);
    if (read < n && std::ferror(stream)) Fail(kStatusReadFailed, errno);
    return static_cast<ulong32>(read);
}

ulong32 CQELFile::Write(const void* buf, ulong32 n) {
    if (n == 0) return 0;
    FILE* const stream = Begin(__LINE__);
    if (!stream) return 0;
    if (!buf) return Fail(kStatusBadParameter, 0), 0;
    const std::size_t written = std::fwrite(buf, 1, n, stream);
    // No errno: after a block that was written in part the runtime's is not about the disk.
    if (written < n) Fail(kStatusWriteFailed, 0);
    return static_cast<ulong32>(written);
}

ulong32 CQELFile::Write(int value) { return Write(&value, sizeof value); }

char* CQELFile::fgets(char* buf, int size) const {
    FILE* const stream = Begin(__LINE__);
    if (!stream) return nullptr;
    if (!buf || size < 1) return Fail(kStatusBadParameter, 0), nullptr;
    if (!::fgets(buf, size, stream)) {
        if (std::ferror(stream)) Fail(kStatusReadFailed, errno);
        return nullptr;
    }
    std::size_t length = std::strlen(buf);
    if (length > 0 && buf[length - 1] == '\n') {
        buf[--length] = '\0';
        if (length > 0 && buf[length - 1] == '\r') buf[--length] = '\0';
    }
    return buf;
}

bool CQELFile::IsEOF() const {
    FILE* const stream = Begin(__LINE__);
    return !stream || std::feof(stream) != 0;
}

void CQELFile::Flush() {
    FILE* const stream = Begin(__LINE__);
    if (stream && std::fflush(stream) != 0) Fail(kStatusFlushFailed, 0);
}

int CQELFile::Seek(long32 offset, int whence) const {
    if (handle_) return std::fseek(handle_->stream_, offset, whence);
    FailNotOpen(__LINE__);
    return -1;
}

ulong32 CQELFile::CurPos() const {
    FILE* const stream = Begin(__LINE__);
    if (!stream) return kit::kNoLength;
    return Fitting(::_ftelli64(stream), kStatusPositionFailed);
}

ulong32 CQELFile::Length() const {
    FILE* const stream = Begin(__LINE__);
    if (!stream) return kit::kNoLength;
    return Fitting(::_filelengthi64(::_fileno(stream)), kStatusLengthFailed);
}

bool CQELFile::Truncate() {
    FILE* const stream = Begin(__LINE__);
    if (!stream) return false;
    if (!kit::SettleStream(stream) || ::_chsize_s(::_fileno(stream), ::_ftelli64(stream)) != 0) {
        Fail(kStatusTruncateFailed, errno);
    }
    return !IsError();
}

int CQELFile::LockRead(bool) { return kStatusNotImplemented; }
int CQELFile::LockWrite(bool) { return kStatusNotImplemented; }
int CQELFile::UnLock(bool) { return kStatusNotImplemented; }

// Starts an operation: clears the status and gives the stream. Null, with `not_open` recorded, when
// there is none.
FILE* CQELFile::Begin(int line, int not_open) const {
    Clear();
    if (handle_) return handle_->stream_;
    FailNotOpen(line, not_open);
    return nullptr;
}

void CQELFile::Fail(int status, int error_number) const {
    SetErrMessEx(name_);
    SetError(status, error_number);
}

void CQELFile::FailNotOpen(int line, int status) const {
    SetErrMessEx(("file - file_com, line - " + std::to_string(line)).c_str());
    SetError(status, 0);
}

// A length or position as the interface gives it; one that does not fit is recorded.
ulong32 CQELFile::Fitting(std::int64_t value, int status) const {
    if (kit::FitsLength(value)) return static_cast<ulong32>(value);
    Fail(status, kit::UnfitErrno(value));
    return kit::kNoLength;
}

void CQELFile::Release() const {
    if (CQELFileImp* const handle = std::exchange(handle_, nullptr)) handle->Release();
}

CQELDirectFile::CQELDirectFile(const char* name, const char* mode, bool raise)
    : CQELFile(nullptr, nullptr, raise) {
    if (name) Open(name, mode, raise);
}

CQELDirectFile::~CQELDirectFile() = default;

void CQELDirectFile::Open(const char* name, const char* mode, bool raise) {
    const std::string committed = kit::CommitMode(mode, name && IsExists(name));
    CQELFile::Open(name, committed.c_str(), raise);
}
