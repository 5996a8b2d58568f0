#include "config/config_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "base/cp1251.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

constexpr auto kSection = kit::Cp1251(u"Настройки");
constexpr auto kKey = kit::Cp1251(u"Имя");
constexpr auto kValue = kit::Cp1251(u"Ёжик № 5");

using Names = std::list<CQELString>;
using Items = std::list<CConfigFileKeyListItem>;
using Sections = std::list<CConfigFileSectionListItem>;

class ConfigFile : public testing::Test {
protected:
    // A file object over these bytes.
    CQELConfigInfoFile Holding(const std::string& bytes) {
        return {folder_.Write("a.ini", bytes).c_str(), true, 0};
    }

    TempFolder folder_;
    CQELString value_{"before"};
    Names names_;
    Items items_;
    Sections sections_;
};

TEST_F(ConfigFile, TellsMissingFromEmpty) {
    auto file = Holding("[s]\r\nfull=text\r\nempty=\r\nliteral=(Default)\r\nfull=second\r\n");
    const struct {
        const char *section, *key;
        bool result;
        const char* value;
    } cases[] = {
        {"S", "FULL", true, "text"},  // the first of two, in any case
        {"s", "none", true, ""},      //
        {"none", "full", true, ""},   //
        {"s", "literal", true, ""},   //
        {"s", "empty", false, "before"}, {"s", nullptr, false, "before"},
    };
    for (const auto& c : cases) {
        value_ = "before";
        EXPECT_EQ(c.result, file.GetProfileStringA(c.section, c.key, &value_)) << c.key;
        EXPECT_STREQ(c.value, value_);
    }
}

TEST_F(ConfigFile, ABareNameIsInTheCurrentFolderFromTheFirstWriteOn) {
    char before[MAX_PATH];
    GetCurrentDirectoryA(sizeof before, before);
    ASSERT_TRUE(SetCurrentDirectoryA(folder_.path().c_str()));
    CQELConfigInfoFile file("bare.ini", false, 7);
    EXPECT_FALSE(file.IsFileExist() || file.GetProfileStringA("s", "k", &value_));
    EXPECT_TRUE(file.PutProfileString("s", "k", "v"));
    EXPECT_TRUE(file.IsFileExist() && file.GetProfileStringA("s", "k", &value_));
    EXPECT_STREQ("v", value_);
    EXPECT_FALSE(CQELConfigInfoFile("no\\a.ini", false, 0).PutProfileString("s", "k", "v"));
    EXPECT_TRUE(SetCurrentDirectoryA(before));
    EXPECT_EQ("[s]\r\nk=v\r\n", folder_.Read("bare.ini"));
}

TEST_F(ConfigFile, RefusesTextsThatWouldForgeEntries) {
    auto file = Holding("[s]\r\nk=v\r\n");
    EXPECT_FALSE(file.PutProfileString("s", "k", "v\nforged=1"));
    EXPECT_FALSE(file.PutProfileString("s", "k\rforged", "1"));
    EXPECT_FALSE(file.PutProfileString("s]\n[forged", "k", "1"));
    EXPECT_EQ("[s]\r\nk=v\r\n", folder_.Read("a.ini"));
}

TEST_F(ConfigFile, CutsValuesAndNamesToItsBuffers) {
    const std::string name(300, 'n');
    for (const std::size_t length : {4092, 4093, 4094, 5000}) {
        const std::string text(length, 'v');
        auto file = Holding("[" + name + "]\r\nk=" + text + "\r\n" + name + "=1\r\n");
        EXPECT_TRUE(file.GetProfileStringA(name.c_str(), "k", &value_));
        EXPECT_EQ(length < 4093 ? length : 4093, std::string(value_).size());
        EXPECT_TRUE(file.GetSectionNameList(&names_));
        EXPECT_EQ(Names{name.substr(0, 254).c_str()}, names_);
        EXPECT_TRUE(file.GetKeyNameList(name.c_str(), &names_));
        EXPECT_EQ((Names{"k", name.substr(0, 254).c_str()}), names_);
    }
}

TEST_F(ConfigFile, ListsNamesInTheOrderOfTheFile) {
    std::string keys;
    for (int i = 1000; i < 3000; ++i) keys += "k" + std::to_string(i) + "=v\r\n";
    auto file = Holding("[b]\r\ny=1\r\nx=2\r\ny=3\r\n[a]\r\n" + keys);
    EXPECT_TRUE(file.GetSectionNameList(&names_));
    EXPECT_EQ((Names{"b", "a"}), names_);
    EXPECT_TRUE(file.GetKeyNameList("b", &names_));
    EXPECT_EQ((Names{"y", "x", "y"}), names_);
    EXPECT_TRUE(file.GetKeyNameList("none", &names_));
    EXPECT_EQ(Names{"(Default)"}, names_);
    EXPECT_TRUE(file.GetKeyNameList("a", &names_));
    EXPECT_EQ(682u, names_.size()) << "as many as 4092 bytes hold, 6 a name";
    EXPECT_STREQ("k1681", names_.back());
}

TEST_F(ConfigFile, SectionsComeBackAsTheyWereWritten) {
    auto file = Holding("");
    EXPECT_TRUE(file.PutAllSections(
        {{kSection.data(), {{kKey.data(), kValue.data()}, {"b", "2"}}}, {"second", {{"c", "3"}}}}));
    EXPECT_TRUE(file.GetAllSections(&sections_));
    EXPECT_EQ(0, file.ReturnStatus());
    ASSERT_EQ(2u, sections_.size());
    EXPECT_STREQ(kSection.data(), sections_.front().name);
    EXPECT_STREQ(kValue.data(), sections_.front().GetKeyValue(kKey.data()));
    EXPECT_STREQ("2", sections_.front().GetKeyValue("b"));
    EXPECT_STREQ("", sections_.front().GetKeyValue("B"));
    EXPECT_STREQ("3", sections_.back().GetKeyValue("c"));
    EXPECT_FALSE(file.PutAllSections({}) || file.PutSection("s", {}));
}

TEST_F(ConfigFile, ListsSucceedAndRecordWhatFailed) {
    auto file = Holding("[s]\r\nempty=\r\nk=v\r\n");
    EXPECT_TRUE(file.GetSection("s", &items_));
    EXPECT_EQ(2u, items_.size());
    EXPECT_STREQ("v", items_.back().value);
    EXPECT_EQ(5, file.ReturnStatus());
    EXPECT_STREQ((folder_ / "a.ini").c_str(), file.ReturnErrMess());
    const HeldFile held(folder_ / "a.ini");
    EXPECT_TRUE(file.PutSection("s", {{"k", "w"}}));
    EXPECT_EQ(6, file.ReturnStatus());
}

// A file that refuses every single value, and may throw.
class Refusing : public CQELConfigInfoFile {
public:
    explicit Refusing(bool throws) : CQELConfigInfoFile("", true, 0) { throwOnError = throws; }
    bool GetProfileStringA(const char*, const char*, CQELString*) override { return false; }
    bool PutProfileString(const char*, const char*, const char*) override { return false; }
    bool GetKeyNameList(const char*, Names* names) override { return names->assign({"k"}), true; }
    bool GetSectionNameList(Names* names) override { return names->assign({"s"}), true; }
};

TEST_F(ConfigFile, ThrowsOnlyWhenASubclassSaysSo) {
    Refusing quiet(false), loud(true);
    EXPECT_TRUE(quiet.GetAllSections(&sections_)) << "though made with true";
    EXPECT_EQ(5, quiet.ReturnStatus());
    EXPECT_TRUE(quiet.PutAllSections(sections_));
    EXPECT_EQ(6, quiet.ReturnStatus());
    EXPECT_THROW(loud.GetAllSections(&sections_), XQELStatus);
    EXPECT_EQ(5, loud.ReturnStatus());
}

bool flush_result;

BOOL WINAPI WriteOrFlush(const char* section, const char*, const char*, const char*) {
    return section ? TRUE : flush_result;
}

BOOL WINAPI LegacyVersion(OSVERSIONINFOA* version) {
    version->dwPlatformId = 1;
    return TRUE;
}

TEST_F(ConfigFile, LegacySystemsAreAskedToWriteTheFile) {
    const ImportPatch version(kLibrary, "GetVersionExA", LegacyVersion);
    const ImportPatch write(kLibrary, "WritePrivateProfileStringA", WriteOrFlush);
    for (const bool result : {true, false}) {
        flush_result = result;
        CQELConfigInfoFile file((folder_ / "none.ini").c_str(), false, 0);
        EXPECT_EQ(result, file.PutProfileString("s", "k", "v"));
        EXPECT_EQ(result, file.IsFileExist());
    }
    EXPECT_TRUE(Holding("").PutProfileString("s", "k", "v")) << "not flushed, but there";
}

// Binary callers go by the places in the table, in which this compiler gives destructors two.
TEST_F(ConfigFile, KeepsTheOrderOfItsVirtualFunctions) {
    auto file = Holding("[s]\r\nempty=\r\nk=v\r\n");
    file.GetSection("s", &items_);  // records 5
    const std::uintptr_t* table;
    std::memcpy(&table, static_cast<const void*>(&file), sizeof table);
    const auto call = [&](int place, auto... arguments) {
        return reinterpret_cast<std::uintptr_t (*)(void*, decltype(arguments)...)>(table[place])(
            &file, arguments...);
    };
    const auto ok = [&](int place, auto... arguments) { return call(place, arguments...) & 0xFF; };
    XQELStatus status;
    call(2, &status);
    EXPECT_EQ(5, status.Status());
    EXPECT_EQ(5, static_cast<int>(call(3)));
    call(4, &value_);
    EXPECT_STREQ((folder_ / "a.ini").c_str(), value_);
    EXPECT_STREQ(value_, reinterpret_cast<const char*>(call(5)));
    EXPECT_TRUE(ok(6) && ok(7, "s", "k", &value_) && ok(8, "s", "k", "w") && ok(9, &names_) &&
                ok(10, "s", &names_) && ok(11, "s", &items_) && ok(12, "s", &items_));
    EXPECT_TRUE(ok(13, &sections_) && ok(14, &sections_));
    EXPECT_EQ("[s]\r\nempty=\r\nk=w\r\n", folder_.Read("a.ini"));
}

}  // namespace
