#include <string.h>

#include <cstring>
#include <string>
#include <string_view>

#include "platform/growing_text.h"
#include "platform/handles.h"
#include "platform/own_module.h"
#include "platform/windows.h"
#include "text/qel_string.h"

namespace {

// A name that begins like this, in any case, is this library, whatever follows ("QELKIT2_64.dll").
constexpr std::string_view kOwnName = "QELKIT2";

// Limits of the path that a name beside the main executable makes, terminators not counted.
constexpr std::size_t kLongestExecutable = 260;
constexpr std::size_t kLongestModulePath = 261;

// The path of `name` beside the main executable; "" when it would be too long.
std::string BesideExecutable(const char* name) {
    char path[kLongestExecutable + 1];
    const DWORD length = ::GetModuleFileNameA(nullptr, path, sizeof path);
    if (length == 0 || length > kLongestExecutable) return {};
    const std::string_view executable(path, length);
    const std::string_view folder = executable.substr(0, executable.rfind('\\') + 1);
    if (folder.size() + std::strlen(name) > kLongestModulePath) return {};
    return std::string(folder) + name;
}

// A module for the time of one lookup. One that is loaded already gets a reference more, so that
// nobody can unload it meanwhile; any other is mapped for its resources only: none of its code runs.
kit::Module OpenModule(const std::string& path) {
    kit::Module module;
    if (path.empty() || ::GetModuleHandleExA(0, path.c_str(), module.Receive())) return module;
    module.Reset(::LoadLibraryExA(path.c_str(), nullptr,
                                  LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    return module;
}

}  // namespace

CQELString& CQELString::LoadStringA(int id, HINSTANCE module) {
    // The system would look up the low 16 bits of any other number, and show some unrelated text.
    if (id < 0 || id > 0xFFFF) return *this = "";
    const auto load = [=](char* buffer, std::size_t size) -> std::size_t {
        const int length =
            ::LoadStringA(module, static_cast<UINT>(id), buffer, static_cast<int>(size));
        return length > 0 ? static_cast<std::size_t>(length) : 0;
    };
    return *this = kit::GrowingText(load, 257, 256).c_str();
}

CQELString& CQELString::LoadStringA(int id, const char* module) {
    if (!module) return LoadStringA(id, ::GetModuleHandleA(nullptr));
    if (::_strnicmp(module, kOwnName.data(), kOwnName.size()) == 0) {
        return LoadStringA(id, kit::OwnModule());
    }
    const kit::Module beside = OpenModule(BesideExecutable(module));
    if (beside) return LoadStringA(id, beside.get());
    Empty();
    return *this;
}

CQELString& CQELString::LoadQelkitString(int status) {
    return LoadStringA(status, kOwnName.data());
}
