#include "runtime/lock.h"

static_assert(sizeof(QEL::CLock) == 40, "part of the binary interface");

namespace {

// Stays loaded: the system's base library is never unloaded.
QEL::CLock::TryEnter FindTryEnter() {
    constexpr DWORD kSystemFolderOnly = 0x800;  // LOAD_LIBRARY_SEARCH_SYSTEM32
    const HMODULE library = ::LoadLibraryExA("kernel32.dll", nullptr, kSystemFolderOnly);
    if (!library) return nullptr;
    const auto function = ::GetProcAddress(library, "TryEnterCriticalSection");
    return reinterpret_cast<QEL::CLock::TryEnter>(reinterpret_cast<void*>(function));
}

}  // namespace

QEL::CLock::TryEnter QEL::CLock::s_TryEnterCryticalSection = nullptr;

QEL::CLock::CLock() { ::InitializeCriticalSection(&section_); }
QEL::CLock::~CLock() { ::DeleteCriticalSection(&section_); }
void QEL::CLock::Lock() { ::EnterCriticalSection(&section_); }
void QEL::CLock::Unlock() { ::LeaveCriticalSection(&section_); }

bool QEL::CLock::TryLock() {
    // Looked up once, by whichever thread comes first; the others wait for it here.
    static const bool looked_up = (s_TryEnterCryticalSection = FindTryEnter(), true);
    if (looked_up && s_TryEnterCryticalSection) return s_TryEnterCryticalSection(&section_) != 0;
    Lock();
    return true;
}
