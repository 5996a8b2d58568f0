#pragma once

#include <atomic>

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"

// A file as the platform's stream interface, for platform services that consume an IStream:
//
//     IStream* stream = CQELSimpleFileStream::CreateInstance("f.dat", GENERIC_READ, OPEN_EXISTING);
//     if (stream) { Consume(stream); stream->Release(); }
//
// The object deletes itself on its last Release. One instance may be used from several threads:
// the count is atomic, and opening, reading, writing, seeking and sizing take turns.
//
// The order of the virtual functions (those of IStream; none is added, so the destructor is not
// virtual) and of the fields is part of the binary interface.
class QELKIT_API CQELSimpleFileStream final : public IStream {
public:
    // A critical section of the system.
    class QELKIT_API CCS {
    public:
        // Nobody has it.
        CCS();
        CCS(const CCS&) = delete;
        CCS& operator=(const CCS&) = delete;
        virtual ~CCS();

        // Enters, after waiting for as long as another thread has it; a thread may enter again, and
        // leaves as often.
        void Lock();
        void Unlock();

    private:
        CRITICAL_SECTION section_;
    };

    // Opens `name` with the system's desired access (GENERIC_READ, GENERIC_WRITE) and creation
    // disposition (OPEN_EXISTING, CREATE_ALWAYS, ...), shared for reading and writing. Returns it
    // with one reference, which is the caller's; null when it cannot be opened (GetLastError tells
    // why).
    static IStream* CreateInstance(const char* name, ulong32 access, ulong32 disposition);

    // Knows IUnknown and IStream, and not ISequentialStream: E_NOINTERFACE with null stored. A null
    // `object` gives E_POINTER.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    // Each returns the new count; the last Release closes the file and deletes the object.
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // Reads up to `count` bytes into `buf` and stores how many were read; both pointers are
    // required (STG_E_INVALIDPOINTER). S_OK when at least one byte was read; S_FALSE when none was,
    // at the end of the file or for an error other than STG_E_ACCESSDENIED.
    HRESULT STDMETHODCALLTYPE Read(void* buf, ULONG count, ULONG* read) override;
    // Writes `count` bytes and stores how many were written; both pointers are required
    // (STG_E_INVALIDPOINTER). Failure: STG_E_ACCESSDENIED or STG_E_MEDIUMFULL.
    HRESULT STDMETHODCALLTYPE Write(const void* buf, ULONG count, ULONG* written) override;

    // Moves by the distance whose low half is that of `distance` and whose high half is the one
    // that stands in `*position` on entry, and stores the new position there. So `position` is
    // required (STG_E_INVALIDPOINTER), and the caller presets its high half, with 0 for distances
    // below 4 GiB forward and 0xFFFFFFFF backward.
    // A failure stores 0xFFFFFFFF in both halves: STG_E_INVALIDFUNCTION for a position before the
    // start, else E_FAIL.
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER distance, DWORD origin,
                                   ULARGE_INTEGER* position) override;

    // Makes the file `size` bytes long and leaves the position there. Failures as in Seek.
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override;

    // Fills `stat`: a stream, its size and times, exclusive locks supported, mode 0. With
    // STATFLAG_DEFAULT the name is "qel", to be freed by CoTaskMemFree; with any other flag null.
    // Failure: STG_E_INVALIDPOINTER (null), E_FAIL, E_OUTOFMEMORY; `stat` then has no name.
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flag) override;

    // E_NOTIMPL; Clone stores null.
    HRESULT STDMETHODCALLTYPE CopyTo(IStream* to, ULARGE_INTEGER count, ULARGE_INTEGER* read,
                                     ULARGE_INTEGER* written) override;
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Revert() override;
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count,
                                         DWORD type) override;
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count,
                                           DWORD type) override;
    HRESULT STDMETHODCALLTYPE Clone(IStream** copy) override;

private:
    CQELSimpleFileStream() = default;
    ~CQELSimpleFileStream();

    bool Open(const char* name, ulong32 access, ulong32 disposition);
    HRESULT Move(ULONG low, DWORD origin, ULARGE_INTEGER& position);

    std::atomic<ulong32> count_{0};
    CCS lock_;
    HANDLE handle_ = nullptr;
};

inline CQELSimpleFileStream::CCS::CCS() { ::InitializeCriticalSection(&section_); }
inline void CQELSimpleFileStream::CCS::Lock() { ::EnterCriticalSection(&section_); }
inline void CQELSimpleFileStream::CCS::Unlock() { ::LeaveCriticalSection(&section_); }
