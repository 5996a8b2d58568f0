#include "utils/module_version.h"

#include <gtest/gtest.h>

#include <string>

#include "support/import_patch.h"
#include "utils/version_blocks.h"

namespace {

using QELUtils::CLibraryInfo;
using Info = CLibraryInfo::DLLINFO;

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
    Info all_;
    CQELString text_{"before"};

private:
    const ImportPatch size_{kLibrary, "GetFileVersionInfoSizeA", ResourceSize};
    const ImportPatch bytes_{kLibrary, "GetFileVersionInfoA", ResourceBytes};
};

constexpr struct {
    bool (CLibraryInfo::*get)(CQELString&);
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
    ASSERT_TRUE(info_.GetDllInfo(all_));
    EXPECT_STREQ("some.dll 1.2.3.4 01D5ABCD 0000BEEF Remarks",
                 all_.module_name + " " + all_.fixed_file_version + " " + all_.file_date + " " +
                     all_.comments);
    unsigned short language_id = 0, code_page = 0;
    EXPECT_TRUE(info_.GetLanguageId(language_id) && info_.GetCharacterset(code_page));
    EXPECT_TRUE(language_id == 0x419 && code_page == 1251);
    EXPECT_EQ(0x00010002u, QELUtils::GetVersionInfo("some.dll"));
}

TEST_F(ModuleVersion, NamesTypeAndSystem) {
    const struct {
        int type, subtype, os;  // the high half of the system's code
        const char *type_text, *os_text;
    } cases[] = {
        {2, 9, 4, "Dynamic link library", "Windows NT"}, {3, 9, 1, "Sound driver", "MS-DOS"},
        {3, 0, 0, "Unknown driver", "Unknown OS"},       {3, 10, 2, "", "16-bit OS/2"},
        {4, 3, 3, "Truetype font", "32-bit OS/2"},       {4, 4, 9, "", ""},
        {7, 0, 1, "Static link library", "MS-DOS"},      {6, 0, 1, "", "MS-DOS"},
    };
    for (const auto& c : cases) {
        std::string fixed = FixedRecord();
        fixed[36] = static_cast<char>(c.type);
        fixed[40] = static_cast<char>(c.subtype);
        fixed.replace(32, 4, {0, 0, static_cast<char>(c.os), 0});
        resource = GoodResource(fixed);
        info_.SetDllName(("module" + std::to_string(&c - cases)).c_str());
        ASSERT_TRUE(info_.GetDllInfo(all_));
        EXPECT_STREQ(c.type_text, all_.type) << c.type << "/" << c.subtype;
        EXPECT_STREQ(c.os_text, all_.os);
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
    EXPECT_TRUE(info_.GetDllInfo(all_));
    EXPECT_EQ(2, reads);
    EXPECT_STREQ("", all_.product_name) << "nothing of the module before";
    EXPECT_STREQ("77", all_.character_set);
}

TEST_F(ModuleVersion, WithoutAnyPartThereIsNothing) {
    const struct {
        std::string bytes;
        ulong32 comments_error;
    } cases[] = {
        {"", 1812},
        {GoodResource().substr(0, 100), 1812},
        {Block("VS_VERSION_INFO", 52, 0, FixedRecord(), {}), 1813},
        {GoodResource("\x1" + FixedRecord().substr(1)), 0},  // another signature
        {GoodResource(FixedRecord().substr(4)), 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        resource = c.bytes;
        VS_FIXEDFILEINFO record;
        EXPECT_FALSE(info_.GetDllInfo(record) || info_.GetDllInfo(all_));
        text_ = "before";
        EXPECT_FALSE(info_.GetCompanyName(text_) || QELUtils::GetCommentsString("a", text_));
        EXPECT_STREQ("", text_);
        EXPECT_EQ(0u, QELUtils::GetVersionInfo("some.dll"));
        ulong32 error = 1;
        EXPECT_EQ(c.comments_error == 0, QELUtils::GetCommentsStringOnly("a", text_, error));
        EXPECT_EQ(c.comments_error, error);
        EXPECT_STREQ(error == 0 ? "Remarks" : "", text_);
    }
}

TEST(ModuleVersionOfFiles, ReadsTheLibraryItself) {
    CLibraryInfo module;
    Info info;
    module.SetDllName(kLibrary);
    EXPECT_TRUE(module.GetDllInfo(info));
    EXPECT_STREQ(kLibrary, info.original_file_name);
    EXPECT_EQ(info.file_version, info.fixed_file_version);
    module.SetDllName(nullptr);
    EXPECT_FALSE(module.GetDllInfo(info));
}

}  // namespace
