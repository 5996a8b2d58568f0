#include "file_com/com_stream.h"

#include <cstring>
#include <new>

#include "base/or_empty.h"

static_assert(sizeof(CQELSimpleFileStream::CCS) == 48, "part of the binary interface");
static_assert(sizeof(CQELSimpleFileStream) == 72, "part of the binary interface");

namespace {

constexpr wchar_t kStreamName[] = L"qel";

// For as long as this lives, the section is ours.
class Locked {
public:
    explicit Locked(CQELSimpleFileStream::CCS& section) : section_(section) { section_.Lock(); }
    ~Locked() { section_.Unlock(); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

private:
    CQELSimpleFileStream::CCS& section_;
};

HRESULT DeniedOr(HRESULT other) {
    return ::GetLastError() == ERROR_ACCESS_DENIED ? STG_E_ACCESSDENIED : other;
}

wchar_t* AllocatedName() {
    void* const name = ::CoTaskMemAlloc(sizeof kStreamName);
    return static_cast<wchar_t*>(name ? std::memcpy(name, kStreamName, sizeof kStreamName) : name);
}

}  // namespace

CQELSimpleFileStream::CCS::~CCS() { ::DeleteCriticalSection(&section_); }

CQELSimpleFileStream::~CQELSimpleFileStream() {
    if (handle_) ::CloseHandle(handle_);
}

IStream* CQELSimpleFileStream::CreateInstance(const char* name, ulong32 access,
                                              ulong32 disposition) {
    auto* const stream = new (std::nothrow) CQELSimpleFileStream;
    if (!stream) return nullptr;
    if (!stream->Open(name, access, disposition)) {
        const DWORD error = ::GetLastError();
        delete stream;
        ::SetLastError(error);
        return nullptr;
    }
    stream->AddRef();
    return stream;
}

bool CQELSimpleFileStream::Open(const char* name, ulong32 access, ulong32 disposition) {
    const Locked locked(lock_);
    const HANDLE file =
        ::CreateFileA(kit::OrEmpty(name), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                      disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) handle_ = file;
    return handle_ != nullptr;
}

HRESULT CQELSimpleFileStream::QueryInterface(REFIID id, void** object) {
    if (!object) return E_POINTER;
    // Quirk: the base interface ISequentialStream is refused: those who ask for it take the answer
    // for "no seeking here" and read such files through other means. Pinned by
    // ComStream.KnowsTwoInterfacesOnly.
    if (id != __uuidof(IUnknown) && id != __uuidof(IStream)) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IStream*>(this);
    AddRef();
    return S_OK;
}

ULONG CQELSimpleFileStream::AddRef() { return ++count_; }

ULONG CQELSimpleFileStream::Release() {
    const ULONG left = --count_;  // the object may be gone below: only this copy counts
    if (left == 0) delete this;
    return left;
}

HRESULT CQELSimpleFileStream::Read(void* buf, ULONG count, ULONG* read) {
    if (!buf || !read) return STG_E_INVALIDPOINTER;
    *read = 0;
    const Locked locked(lock_);
    if (!::ReadFile(handle_, buf, count, read, nullptr)) return DeniedOr(S_FALSE);
    return *read > 0 ? S_OK : S_FALSE;
}

HRESULT CQELSimpleFileStream::Write(const void* buf, ULONG count, ULONG* written) {
    if (!buf || !written) return STG_E_INVALIDPOINTER;
    *written = 0;
    const Locked locked(lock_);
    return ::WriteFile(handle_, buf, count, written, nullptr) ? S_OK : DeniedOr(STG_E_MEDIUMFULL);
}

HRESULT CQELSimpleFileStream::Seek(LARGE_INTEGER distance, DWORD origin, ULARGE_INTEGER* position) {
    if (!position) return STG_E_INVALIDPOINTER;
    const Locked locked(lock_);
    // Quirk: the high half of `distance` is not looked at; the one that the caller left in
    // `*position` counts. Callers preset it, and a repaired Seek would move them elsewhere. Pinned
    // by ComStream.SeekTakesTheHighHalfFromTheResultLocation.
    return Move(distance.LowPart, origin, *position);
}

// Moves by the high half of `position` and this low half; stores the new position. Under the lock.
HRESULT CQELSimpleFileStream::Move(ULONG low, DWORD origin, ULARGE_INTEGER& position) {
    auto high = static_cast<LONG>(position.HighPart);
    ::SetLastError(NO_ERROR);  // 0xFFFFFFFF is a low half as good as any other
    position.LowPart = ::SetFilePointer(handle_, static_cast<LONG>(low), &high, origin);
    position.HighPart = static_cast<DWORD>(high);
    const DWORD error = position.LowPart == INVALID_SET_FILE_POINTER ? ::GetLastError() : NO_ERROR;
    if (error == NO_ERROR) return S_OK;
    position.HighPart = 0xFFFFFFFF;
    return error == ERROR_NEGATIVE_SEEK ? STG_E_INVALIDFUNCTION : E_FAIL;
}

HRESULT CQELSimpleFileStream::SetSize(ULARGE_INTEGER size) {
    const Locked locked(lock_);
    const HRESULT moved = Move(size.LowPart, FILE_BEGIN, size);
    if (FAILED(moved)) return moved;
    return ::SetEndOfFile(handle_) ? S_OK : E_FAIL;
}

HRESULT CQELSimpleFileStream::Stat(STATSTG* stat, DWORD flag) {
    if (!stat) return STG_E_INVALIDPOINTER;
    *stat = STATSTG{};
    BY_HANDLE_FILE_INFORMATION file;
    if (!::GetFileInformationByHandle(handle_, &file)) return E_FAIL;
    if (flag == STATFLAG_DEFAULT && !(stat->pwcsName = AllocatedName())) return E_OUTOFMEMORY;
    stat->type = STGTY_STREAM;
    stat->cbSize.LowPart = file.nFileSizeLow;
    stat->cbSize.HighPart = file.nFileSizeHigh;
    stat->mtime = file.ftLastWriteTime;
    stat->ctime = file.ftCreationTime;
    stat->atime = file.ftLastAccessTime;
    stat->grfLocksSupported = LOCK_EXCLUSIVE;
    return S_OK;
}

HRESULT CQELSimpleFileStream::CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) {
    return E_NOTIMPL;
}
HRESULT CQELSimpleFileStream::Commit(DWORD) { return E_NOTIMPL; }
HRESULT CQELSimpleFileStream::Revert() { return E_NOTIMPL; }
HRESULT CQELSimpleFileStream::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
    return E_NOTIMPL;
}
HRESULT CQELSimpleFileStream::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
    return E_NOTIMPL;
}
HRESULT CQELSimpleFileStream::Clone(IStream** copy) {
    if (copy) *copy = nullptr;
    return E_NOTIMPL;
}
