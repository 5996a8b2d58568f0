#pragma once

// Shared by the samples: texts of the library on a terminal.

#include <cstring>
#include <string>
#include <vector>

#include <windows.h>

// The library speaks the ANSI code page, a terminal of today UTF-8.
inline std::string Utf8(const char* ansi) {
    std::vector<wchar_t> wide(std::strlen(ansi) + 1);
    MultiByteToWideChar(CP_ACP, 0, ansi, -1, wide.data(), static_cast<int>(wide.size()));
    std::vector<char> utf8(wide.size() * 3);
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), -1, utf8.data(), static_cast<int>(utf8.size()),
                        nullptr, nullptr);
    return utf8.data();
}
