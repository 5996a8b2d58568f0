#pragma once

// A link to a folder, for as long as this lives. Where the system says that it made one and made
// none (Wine), the Unix system below is asked; such a link shows as one, but cannot be removed by
// the system's calls.

#include <gtest/gtest.h>

#include <string>

#include "platform/handles.h"
#include "platform/windows.h"

class FolderLink {
public:
    FolderLink(const std::string& link, const std::string& target) : link_(link) {
        CreateSymbolicLinkA(link.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
        if (!Exists()) RunUnix("ln", "-s " + UnixName(target) + " " + UnixName(link), true);
        EXPECT_TRUE(Exists()) << link;
    }
    ~FolderLink() {
        if (!Exists() || RemoveDirectoryA(link_.c_str())) return;
        RunUnix("rm", "-f " + UnixName(link_), false);
    }
    FolderLink(const FolderLink&) = delete;
    FolderLink& operator=(const FolderLink&) = delete;

    bool Exists() const {
        const DWORD attributes = GetFileAttributesA(link_.c_str());
        return attributes != INVALID_FILE_ATTRIBUTES &&
               (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    }

private:
    // The name of something in an existing folder, as the Unix system knows it.
    static std::string UnixName(const std::string& path) {
        using GetName = char*(__cdecl*)(const wchar_t*);
        const auto get_name = reinterpret_cast<GetName>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
        const std::size_t slash = path.rfind('\\');
        const std::wstring folder(path.begin(), path.begin() + static_cast<int>(slash));
        char* const name = get_name ? get_name(folder.c_str()) : nullptr;
        if (!name) return path;
        const std::string unix_name = std::string(name) + "/" + path.substr(slash + 1);
        HeapFree(GetProcessHeap(), 0, name);
        return unix_name;
    }

    void RunUnix(const std::string& program, const std::string& arguments, bool exists) const {
        std::string line = program + " " + arguments;
        STARTUPINFOA start = {};
        start.cb = sizeof start;
        PROCESS_INFORMATION process;
        if (CreateProcessA(("Z:\\bin\\" + program).c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                           nullptr, nullptr, &start, &process)) {
            kit::KernelHandle(process.hThread).Reset();
            const kit::KernelHandle handle(process.hProcess);
            WaitForSingleObject(handle.get(), 5000);
        }
        for (int i = 0; Exists() != exists && i < 1000; ++i) Sleep(5);  // it has only been started
    }

    const std::string link_;
};
