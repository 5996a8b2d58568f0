#include "utils/module_version.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/import_patch.h"
#include "utils/version_blocks.h"

namespace {

using QELUtils::CLibraryInfo;

// The version resource of every file, as the library sees it, and how often it was read.
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

class ModuleVersion : public testing::Test {
protected:
    ModuleVersion() {
        resource = GoodResource();
        reads = 0;
        info_.SetDllName("some.dll");
    }

    CLibraryInfo info_;
    CQELString text_{"left from before"};

private:
    const ImportPatch size_{kLibrary, "GetFileVersionInfoSizeA", ResourceSize};
    const ImportPatch bytes_{kLibrary, "GetFileVersionInfoA", ResourceBytes};
};

using Getter = bool (CLibraryInfo::*)(CQELString&);
constexpr struct {
    Getter get;
    const char* text;
} kGetters[] = {
    {&CLibraryInfo::GetCompanyName, "Company"},    {&CLibraryInfo::GetCopyRight, "Rights"},
    {&CLibraryInfo::GetDescription, "What it is"}, {&CLibraryInfo::GetFileVersion, "one"},
    {&CLibraryInfo::GetMajorVersion, "1"},         {&CLibraryInfo::GetMinorVer, "2"},
    {&CLibraryInfo::GetInternalName, "a"},         {&CLibraryInfo::GetOrigFileName, "a.dll"},
    {&CLibraryInfo::GetProductName, "Product"},    {&CLibraryInfo::GetProductVersion, "5.6"},
    {&CLibraryInfo::GetCharacterSet, "Cyrillic"},
};

TEST_F(ModuleVersion, TellsEveryText) {
    for (const auto& c : kGetters) {
        EXPECT_TRUE((info_.*c.get)(text_));
        EXPECT_STREQ(c.text, text_);
    }
    char language[256];
    VerLanguageNameA(0x419, language, sizeof language);
    EXPECT_TRUE(info_.GetLanguage(text_));
    EXPECT_STREQ(language, text_);

    CLibraryInfo::DLLINFO all;
    ASSERT_TRUE(info_.GetDllInfo(all));
    EXPECT_STREQ("some.dll", all.module_name);
    EXPECT_STREQ("1.2.3.4", all.fixed_file_version);
    EXPECT_STREQ("Dynamic link library", all.type);
    EXPECT_STREQ("Win32 API on Windows NT", all.os);
    EXPECT_STREQ("01D5ABCD 0000BEEF", all.file_date);
    EXPECT_STREQ("Remarks", all.comments);

    unsigned short language_id = 0, code_page = 0;
    EXPECT_TRUE(info_.GetLanguageId(language_id) && info_.GetCharacterset(code_page));
    EXPECT_EQ(0x419, language_id);
    EXPECT_EQ(1251, code_page);
    EXPECT_EQ(0x00010002u, QELUtils::GetVersionInfo("some.dll"));
}

TEST_F(ModuleVersion, NamesTypeAndSystem) {
    const struct {
        unsigned char type, subtype;
        const char* text;
    } types[] = {{0, 9, "Unknown type"},
                 {1, 0, "Application"},
                 {3, 0, "Unknown driver"},
                 {3, 9, "Sound driver"},
                 {3, 10, ""},
                 {4, 3, "Truetype font"},
                 {4, 4, ""},
                 {5, 1, "Virtual device"},
                 {6, 0, ""},
                 {7, 0, "Static link library"}};
    CLibraryInfo::DLLINFO all;
    for (const auto& c : types) {
        std::string fixed = FixedRecord();
        fixed[36] = static_cast<char>(c.type);
        fixed[40] = static_cast<char>(c.subtype);
        fixed[34] = static_cast<char>(c.type == 6 ? 9 : 1);  // the system: none, or MS-DOS
        resource = GoodResource(fixed);
        info_.SetDllName(("module" + std::to_string(&c - types)).c_str());
        ASSERT_TRUE(info_.GetDllInfo(all));
        EXPECT_STREQ(c.text, all.type) << int{c.type} << "/" << int{c.subtype};
        EXPECT_STREQ(c.type == 6 ? "" : "Win32 API running on MS-DOS", all.os);
        EXPECT_STREQ("1.2.3.4", all.fixed_file_version);
    }
}

TEST_F(ModuleVersion, ReadsOncePerName) {
    EXPECT_TRUE(info_.GetDllInfo(static_cast<unsigned char*>(nullptr)));
    info_.SetDllName("some.dll");
    EXPECT_TRUE(info_.GetProductName(text_));
    EXPECT_EQ(1, reads);
    resource = Block("VS_VERSION_INFO", 52, 0, FixedRecord(),
                     {Folder("VarFileInfo", {Block("Translation", 4, 0, Le16(9) + Le16(77), {})})});
    info_.SetDllName("other.dll");
    EXPECT_TRUE(info_.GetProductName(text_));
    EXPECT_STREQ("", text_) << "nothing of the module before";
    EXPECT_TRUE(info_.GetCharacterSet(text_));
    EXPECT_STREQ("77", text_);
    EXPECT_EQ(2, reads);
}

TEST_F(ModuleVersion, WithoutAnyPartThereIsNothing) {
    std::string no_signature = FixedRecord();
    no_signature[0] = 0;
    const std::string cases[] = {
        "", GoodResource(no_signature), GoodResource(FixedRecord().substr(4)),
        Block("VS_VERSION_INFO", 52, 0, FixedRecord(), {}), GoodResource().substr(0, 100)};
    for (const auto& bytes : cases) {
        SCOPED_TRACE(&bytes - cases);
        resource = bytes;
        VS_FIXEDFILEINFO record;
        EXPECT_FALSE(info_.GetDllInfo(record));
        text_ = "left from before";
        EXPECT_FALSE(info_.GetCompanyName(text_));
        EXPECT_STREQ("", text_);
        EXPECT_FALSE(QELUtils::GetCommentsString("some.dll", text_));
        EXPECT_EQ(0u, QELUtils::GetVersionInfo("some.dll"));
    }
    info_.SetDllName(nullptr);
    EXPECT_STREQ("", info_.GetDllName());
    EXPECT_FALSE(info_.GetCompanyName(text_));
}

TEST_F(ModuleVersion, TellsCommentsAlone) {
    ulong32 error = 1;
    EXPECT_TRUE(QELUtils::GetCommentsStringOnly("some.dll", text_, error));
    EXPECT_STREQ("Remarks", text_);
    EXPECT_EQ(0u, error);
    EXPECT_TRUE(QELUtils::GetCommentsString("some.dll", text_));
    EXPECT_STREQ("Remarks", text_);
    const struct {
        std::string bytes;
        ulong32 error;
    } failures[] = {{"", 1812}, {Folder("VS_VERSION_INFO", {}), 1813}, {"damage", 1812}};
    for (const auto& c : failures) {
        resource = c.bytes;
        EXPECT_FALSE(QELUtils::GetCommentsStringOnly("some.dll", text_, error));
        EXPECT_STREQ("", text_);
        EXPECT_EQ(c.error, error);
    }
}

TEST(ModuleVersionOfFiles, ReadsTheLibraryItself) {
    CLibraryInfo info;
    char path[MAX_PATH];
    GetModuleFileNameA(GetModuleHandleA(kLibrary), path, sizeof path);
    info.SetDllName(path);
    CQELString text;
    EXPECT_TRUE(info.GetOrigFileName(text));
    EXPECT_STREQ(kLibrary, text);
    CLibraryInfo::DLLINFO all;
    EXPECT_TRUE(info.GetDllInfo(all));
    EXPECT_STREQ("Dynamic link library", all.type);
    EXPECT_EQ(all.file_version, all.fixed_file_version);
    info.SetDllName("C:\\no such module.dll");
    EXPECT_FALSE(info.GetOrigFileName(text));
}

}  // namespace
