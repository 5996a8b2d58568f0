#include "utils/module_version.h"

#include <gtest/gtest.h>

#include <string>

#include "support/import_patch.h"

namespace {

using QELUtils::CLibraryInfo;

// The version resource of every file as the library sees it, and how often it was read.
std::string resource;
int reads;

DWORD WINAPI ResourceSize(const char*, DWORD*) {
    if (resource.empty()) SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
    return static_cast<DWORD>(resource.size());
}

BOOL WINAPI ResourceBytes(const char*, DWORD, DWORD size, void* to) {
    ++reads;
    return std::memcpy(to, resource.data(), size) != nullptr;
}

// Starts from the library's own resource, which tests then change.
class ModuleVersion : public testing::Test {
protected:
    ModuleVersion() {
        resource.resize(GetFileVersionInfoSizeA(kLibrary, nullptr));
        GetFileVersionInfoA(kLibrary, 0, static_cast<DWORD>(resource.size()), resource.data());
        reads = 0;
        info_.SetDllName("some.dll");
    }

    // Where the fixed record begins.
    static std::size_t Fixed() { return resource.find("\xBD\x04\xEF\xFE"); }
    // What the system reads.
    static const char* Expected(const std::string& key) {
        void* text = nullptr;
        UINT length;
        VerQueryValueA(resource.data(), ("\\StringFileInfo\\041904E3\\" + key).c_str(), &text,
                       &length);
        return static_cast<const char*>(text);
    }

    CLibraryInfo info_;
    CLibraryInfo::DLLINFO all_;
    CQELString text_{"before"};

private:
    const ImportPatch size_{kLibrary, "GetFileVersionInfoSizeA", ResourceSize};
    const ImportPatch bytes_{kLibrary, "GetFileVersionInfoA", ResourceBytes};
};

constexpr struct {
    bool (CLibraryInfo::*get)(CQELString&);
    const char* key;
} kGetters[] = {
    {&CLibraryInfo::GetCompanyName, "CompanyName"},
    {&CLibraryInfo::GetCopyRight, "LegalCopyright"},
    {&CLibraryInfo::GetDescription, "FileDescription"},
    {&CLibraryInfo::GetFileVersion, "FileVersion"},
    {&CLibraryInfo::GetInternalName, "InternalName"},
    {&CLibraryInfo::GetOrigFileName, "OriginalFilename"},
    {&CLibraryInfo::GetProductName, "ProductName"},
    {&CLibraryInfo::GetProductVersion, "ProductVersion"},
};

TEST_F(ModuleVersion, TellsEveryText) {
    for (const auto& c : kGetters) {
        EXPECT_TRUE((info_.*c.get)(text_));
        EXPECT_STREQ(Expected(c.key), text_);
    }
    resource.replace(Fixed() + 8, 8, {2, 0, 1, 0, 4, 0, 3, 0});
    resource.replace(Fixed() + 44, 8, {'\xCD', '\xAB', 1, 0, 1, 0, 0, 0});
    info_.SetDllName("other.dll");
    ASSERT_TRUE(info_.GetDllInfo(all_));
    EXPECT_STREQ("other.dll 1 2 1.2.3.4 Cyrillic 0001ABCD 00000001",
                 all_.module_name + " " + all_.major_version + " " + all_.minor_version + " " +
                     all_.fixed_file_version + " " + all_.character_set + " " + all_.file_date);
    EXPECT_STREQ(Expected("Comments"), all_.comments);
    EXPECT_EQ(0x00010002u, QELUtils::GetVersionInfo("some.dll"));
    char language[256];
    VerLanguageNameA(0x419, language, sizeof language);
    EXPECT_TRUE(info_.GetLanguage(text_));
    EXPECT_STREQ(language, text_);
}

TEST_F(ModuleVersion, NamesTypeAndSystem) {
    const struct {
        char type, subtype, os;  // the high half of the system's code
        const char* text;
    } cases[] = {
        {2, 9, 4, "Dynamic link library, Windows NT"}, {3, 9, 1, "Sound driver, MS-DOS"},
        {3, 0, 0, "Unknown driver, Unknown OS"},       {3, 10, 2, ", 16-bit OS/2"},
        {4, 3, 3, "Truetype font, 32-bit OS/2"},       {4, 4, 9, ", "},
    };
    for (const auto& c : cases) {
        resource.replace(Fixed() + 32, 12, {0, 0, c.os, 0, c.type, 0, 0, 0, c.subtype, 0, 0, 0});
        info_.SetDllName(c.text);  // another one
        ASSERT_TRUE(info_.GetDllInfo(all_));
        EXPECT_STREQ(c.text, all_.type + ", " + all_.os);
    }
}

TEST_F(ModuleVersion, ReadsOncePerName) {
    EXPECT_TRUE(info_.GetDllInfo(static_cast<unsigned char*>(nullptr)));
    info_.SetDllName("some.dll");
    EXPECT_TRUE(info_.GetProductName(text_));
    EXPECT_EQ(1, reads);
    const std::string russian = {0x19, 4, '\xE3', 4};
    resource.replace(resource.rfind(russian), 4, {9, 4, 77, 0});  // has no texts
    info_.SetDllName("other.dll");
    EXPECT_TRUE(info_.GetProductName(text_));
    EXPECT_EQ(2, reads);
    EXPECT_STREQ("", text_) << "nothing of the module before";
    unsigned short language = 0, code_page = 0;
    EXPECT_TRUE(info_.GetLanguageId(language) && info_.GetCharacterset(code_page));
    EXPECT_TRUE(language == 0x409 && code_page == 77);
}

TEST_F(ModuleVersion, WithoutAnyPartThereIsNothing) {
    std::string no_signature = resource, no_translation = resource;
    no_signature[Fixed()] = 1;
    no_translation[resource.find(std::string("T\0r\0a\0n\0s", 9))] = 'X';
    const struct {
        std::string bytes;
        ulong32 comments_error;
    } cases[] = {
        {"", 1812}, {resource.substr(0, 100), 1812}, {no_translation, 1813}, {no_signature, 0}};
    const std::string comments = Expected("Comments");
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        resource = c.bytes;
        ulong32 error = 1;
        text_ = "before";
        EXPECT_FALSE(info_.GetCompanyName(text_) || QELUtils::GetCommentsString("a", text_));
        EXPECT_STREQ("", text_);
        EXPECT_EQ(0u, QELUtils::GetVersionInfo("some.dll"));
        EXPECT_EQ(c.comments_error == 0, QELUtils::GetCommentsStringOnly("a", text_, error));
        EXPECT_EQ(c.comments_error, error);
        EXPECT_STREQ(error == 0 ? comments.c_str() : "", text_);
    }
}

}  // namespace
