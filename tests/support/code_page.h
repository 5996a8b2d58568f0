#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include <mbctype.h>  // last: its macros break the standard headers

// Another multi-byte code page for the process, for as long as this lives. 932 is Japanese: most
// of its characters have two bytes, of which the second may be an ASCII letter or a backslash.
class MultiByteCodePage {
public:
    explicit MultiByteCodePage(int code_page) : before_(_getmbcp()) {
        EXPECT_EQ(0, _setmbcp(code_page));
    }
    ~MultiByteCodePage() { _setmbcp(before_); }
    MultiByteCodePage(const MultiByteCodePage&) = delete;
    MultiByteCodePage& operator=(const MultiByteCodePage&) = delete;

private:
    const int before_;
};

// Another locale of the C runtime for the process, for as long as this lives.
class RuntimeLocale {
public:
    RuntimeLocale(int category, const char* name) : before_(std::setlocale(LC_ALL, nullptr)) {
        EXPECT_NE(nullptr, std::setlocale(category, name)) << name;
    }
    ~RuntimeLocale() { std::setlocale(LC_ALL, before_.c_str()); }
    RuntimeLocale(const RuntimeLocale&) = delete;
    RuntimeLocale& operator=(const RuntimeLocale&) = delete;

private:
    const std::string before_;
};
