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

std::string Joined(const Names& names) {
    std::string text;
    for (const auto& name : names) text += std::string(name) + "|";
    return text;
}

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
};

TEST_F(ConfigFile, TellsMissingFromEmpty) {
    auto file = Holding("[s]\r\nfull=text\r\nempty=\r\nliteral=(Default)\r\nfull=second\r\n");
    const struct {
        const char *section, *key;
        bool result;
        const char* value;
    } cases[] = {
        {"S", "FULL", true, "text"},     {"s", "none", true, ""},
        {"none", "full", true, ""},      {"s", "literal", true, ""},
        {"s", "empty", false, "before"}, {"s", nullptr, false, "before"},
    };
    for (const auto& c : cases) {
        value_ = "before";
        EXPECT_EQ(c.result, file.GetProfileStringA(c.section, c.key, &value_)) << c.key;
        EXPECT_STREQ(c.value, value_);
    }
}

TEST_F(ConfigFile, IsThereFromTheFirstWriteOn) {
    const std::string path = folder_ / "new.ini";
    CQELConfigInfoFile file(path.c_str(), false, 7);
    EXPECT_FALSE(file.IsFileExist());
    EXPECT_FALSE(file.GetProfileStringA("s", "k", &value_));
    EXPECT_TRUE(file.PutProfileString(kSection.data(), kKey.data(), kValue.data()));
    EXPECT_TRUE(file.IsFileExist());
    EXPECT_TRUE(file.GetProfileStringA(kSection.data(), kKey.data(), &value_));
    EXPECT_STREQ(kValue.data(), value_);
    EXPECT_FALSE(CQELConfigInfoFile((folder_ / "no\\a.ini").c_str(), false, 0)
                     .PutProfileString("s", "k", "v"));
}

TEST_F(ConfigFile, FindsABareNameInTheCurrentFolder) {
    char before[MAX_PATH];
    GetCurrentDirectoryA(sizeof before, before);
    ASSERT_TRUE(SetCurrentDirectoryA(folder_.path().c_str()));
    CQELConfigInfoFile file("bare.ini", false, 0);
    EXPECT_TRUE(file.PutProfileString("s", "k", "v"));
    EXPECT_TRUE(file.GetProfileStringA("s", "k", &value_));
    EXPECT_STREQ("v", value_);
    EXPECT_TRUE(SetCurrentDirectoryA(before));
    EXPECT_EQ("[s]\r\nk=v\r\n", folder_.Read("bare.ini"));
}

TEST_F(ConfigFile, RefusesTextsThatWouldForgeEntries) {
    auto file = Holding("[s]\r\nk=v\r\n");
    EXPECT_FALSE(file.PutProfileString("s", "k", "v\nforged=1"));
    EXPECT_FALSE(file.PutProfileString("s", "k\rforged", "1"));
    EXPECT_FALSE(file.PutProfileString("s]\n[forged", "k", "1"));
    EXPECT_FALSE(file.PutProfileString(nullptr, "k", "1"));
    EXPECT_EQ("[s]\r\nk=v\r\n", folder_.Read("a.ini"));
    EXPECT_TRUE(file.PutProfileString("s", "k", nullptr)) << "removes the key";
    EXPECT_EQ("[s]\r\n", folder_.Read("a.ini"));
}

TEST_F(ConfigFile, CutsValuesAndNamesToItsBuffers) {
    const std::string name(300, 'n');
    for (const std::size_t length : {4092, 4093, 4094, 5000}) {
        const std::string text(length, 'v');
        auto file = Holding("[" + name + "]\r\nk=" + text + "\r\n" + name + "=1\r\n");
        EXPECT_TRUE(file.GetProfileStringA(name.c_str(), "k", &value_));
        EXPECT_EQ(length < 4093 ? length : 4093, std::string(value_).size());
        EXPECT_TRUE(file.GetSectionNameList(&names_));
        EXPECT_EQ(name.substr(0, 254) + "|", Joined(names_));
        EXPECT_TRUE(file.GetKeyNameList(name.c_str(), &names_));
        EXPECT_EQ("k|" + name.substr(0, 254) + "|", Joined(names_));
    }
}

TEST_F(ConfigFile, ListsNamesInTheOrderOfTheFile) {
    auto file = Holding("[b]\r\ny=1\r\nx=2\r\ny=3\r\n[a]\r\n");
    EXPECT_TRUE(file.GetSectionNameList(&names_));
    EXPECT_EQ("b|a|", Joined(names_));
    EXPECT_TRUE(file.GetKeyNameList("b", &names_));
    EXPECT_EQ("y|x|y|", Joined(names_));
    EXPECT_TRUE(file.GetKeyNameList("none", &names_));
    EXPECT_EQ("(Default)|", Joined(names_));

    std::string keys;
    for (int i = 1000; i < 3000; ++i) keys += "k" + std::to_string(i) + "=v\r\n";
    auto large = Holding("[s]\r\n" + keys);
    EXPECT_TRUE(large.GetKeyNameList("s", &names_));
    EXPECT_EQ(682u, names_.size()) << "as many as 4092 bytes hold, 6 a name";
    EXPECT_STREQ("k1681", Joined(names_).substr(681 * 6, 5).c_str());
}

TEST_F(ConfigFile, SectionsComeBackAsTheyWereWritten) {
    const Sections written = {{kSection.data(), {{kKey.data(), kValue.data()}, {"b", "2"}}},
                              {"second", {{"c", "3"}}}};
    auto file = Holding("");
    EXPECT_TRUE(file.PutAllSections(written));
    Sections read;
    EXPECT_TRUE(file.GetAllSections(&read));
    EXPECT_EQ(0, file.ReturnStatus());
    ASSERT_EQ(2u, read.size());
    EXPECT_STREQ(kSection.data(), read.front().name);
    EXPECT_STREQ(kValue.data(), read.front().GetKeyValue(kKey.data()));
    EXPECT_STREQ("2", read.front().GetKeyValue("b"));
    EXPECT_STREQ("", read.front().GetKeyValue("B"));
    EXPECT_STREQ("", read.front().GetKeyValue(nullptr));
    EXPECT_STREQ("3", read.back().GetKeyValue("c"));
    EXPECT_FALSE(file.PutAllSections({}) || file.PutSection("s", {}));
}

TEST_F(ConfigFile, ListsSucceedAndRecordWhatFailed) {
    auto file = Holding("[s]\r\nempty=\r\nk=v\r\n");
    EXPECT_TRUE(file.GetSection("s", &items_));
    EXPECT_EQ(2u, items_.size());
    EXPECT_STREQ("v", items_.back().value);
    EXPECT_EQ(5, file.ReturnStatus());
    EXPECT_STREQ((folder_ / "a.ini").c_str(), file.ReturnErrMess());

    HeldFile held(folder_ / "a.ini");
    EXPECT_TRUE(file.PutSection("s", {{"k", "w"}}));
    XQELStatus status;
    file.ReturnStatus(&status);
    EXPECT_EQ(6, status.Status());
    file.ReturnErrMess(&value_);
    EXPECT_STREQ((folder_ / "a.ini").c_str(), value_);
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
    Sections sections;
    Refusing quiet(false), loud(true);
    EXPECT_TRUE(quiet.GetAllSections(&sections)) << "though made with true";
    EXPECT_EQ(5, quiet.ReturnStatus());
    EXPECT_TRUE(quiet.PutAllSections(sections));
    EXPECT_EQ(6, quiet.ReturnStatus());
    EXPECT_THROW(loud.GetAllSections(&sections), XQELStatus);
    EXPECT_EQ(5, loud.ReturnStatus());
    EXPECT_THROW(loud.PutSection("s", {{"k", "v"}}), XQELStatus);
}

int flushes;
bool flush_result;

BOOL WINAPI WriteAndCountFlushes(const char* section, const char*, const char*, const char*) {
    if (section) return TRUE;
    ++flushes;
    return flush_result;
}

BOOL WINAPI LegacyVersion(OSVERSIONINFOA* version) {
    version->dwPlatformId = 1;
    return TRUE;
}

TEST_F(ConfigFile, LegacySystemsAreAskedToWriteTheFile) {
    const ImportPatch version(kLibrary, "GetVersionExA", LegacyVersion);
    const ImportPatch write(kLibrary, "WritePrivateProfileStringA", WriteAndCountFlushes);
    for (const bool result : {true, false}) {
        flush_result = result;
        CQELConfigInfoFile file((folder_ / "none.ini").c_str(), false, 0);
        EXPECT_EQ(result, file.PutProfileString("s", "k", "v"));
        EXPECT_EQ(result, file.IsFileExist());
    }
    EXPECT_TRUE(Holding("").PutProfileString("s", "k", "v")) << "not flushed, but there";
    EXPECT_EQ(3, flushes);
}

// Binary callers go by the places in the table, in which this compiler gives destructors two.
TEST_F(ConfigFile, KeepsTheOrderOfItsVirtualFunctions) {
    auto file = Holding("[s]\r\nk=v\r\n");
    const std::uintptr_t* table;
    std::memcpy(&table, static_cast<const void*>(&file), sizeof table);
    const auto call = [&](int place, auto... arguments) {
        return reinterpret_cast<std::uintptr_t (*)(void*, decltype(arguments)...)>(table[place])(
            &file, arguments...);
    };
    XQELStatus status(3, false);
    call(2, &status);
    EXPECT_EQ(0, status.Status());
    EXPECT_EQ(0, static_cast<int>(call(3)));
    call(4, &value_);
    EXPECT_STREQ("", value_);
    EXPECT_STREQ("", reinterpret_cast<const char*>(call(5)));
    EXPECT_TRUE(static_cast<bool>(call(6)));
    EXPECT_TRUE(static_cast<bool>(call(7, "s", "k", &value_)));
    EXPECT_TRUE(static_cast<bool>(call(8, "s", "k", "w")));
    EXPECT_TRUE(static_cast<bool>(call(9, &names_)));
    EXPECT_TRUE(static_cast<bool>(call(10, "s", &names_)));
    EXPECT_TRUE(static_cast<bool>(call(11, "s", &items_)));
    EXPECT_TRUE(static_cast<bool>(call(12, "s", &items_)));
    Sections sections;
    EXPECT_TRUE(static_cast<bool>(call(13, &sections)));
    EXPECT_TRUE(static_cast<bool>(call(14, &sections)));
    EXPECT_EQ("[s]\r\nk=w\r\n", folder_.Read("a.ini"));
}

}  // namespace
