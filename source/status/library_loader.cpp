#include "status/library_loader.h"

#include <string>

#include "base/or_empty.h"
#include "base/path_text.h"
#include "platform/own_module.h"
#include "status/status_codes.h"

namespace {

// Loads `name` from the folder of `anchor`; on failure null, and the system's error code in `error`.
HMODULE LoadBeside(HMODULE anchor, const char* name, DWORD& error) {
    constexpr DWORD kLongestPath = 260;
    char path[kLongestPath + 1];
    const DWORD length = ::GetModuleFileNameA(anchor, path, sizeof path);
    if (length == 0 || length > kLongestPath) {
        error = ::GetLastError();
        return nullptr;
    }
    const std::string library = std::string(kit::FolderPart({path, length})) + name;
    const HMODULE module =
        ::LoadLibraryExA(library.c_str(), nullptr,
                         LOAD_LIBRARY_SEARCH_DEFAULT_DIRS | LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR);
    if (!module) error = ::GetLastError();
    return module;
}

CQELString FailureText(DWORD error, const char* name) {
    CQELString message;
    message.LoadQelkitString(kStatusLibraryLoadFailed);
    CQELString text;
    text.Format("%s (::GetLastError=%d(0x%08X) Library name=%s)", static_cast<const char*>(message),
                error, error, kit::OrEmpty(name));
    return text;
}

}  // namespace

HINSTANCE LoadLibraryFromInstance(const char* name, HINSTANCE anchor, ulong32* error,
                                  CQELString* message, int show_box) {
    DWORD last_error = ERROR_INVALID_PARAMETER;  // of a null name
    if (name) {
        const HMODULE module = LoadBeside(anchor ? anchor : kit::OwnModule(), name, last_error);
        if (module) return module;
    }
    if (error) *error = last_error;
    const CQELString text = FailureText(last_error, name);
    if (message) *message = text;
    if (show_box) ::MessageBoxA(nullptr, text, "LoadLibraryFromInstance", MB_ICONEXCLAMATION);
    return nullptr;
}
