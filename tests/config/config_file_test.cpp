#include "config/config_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "base/cp1251.h"
#include "support/temp_folder.h"
#include "support/working_folder.h"

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
    Sections sections_;
};

TEST_F(ConfigFile, TellsMissingFromEmpty) {
    auto file = Holding("[s]\r\nfull=text\r\nempty=\r\nliteral=(Default)\r\nfull=second\r\n");
    const struct {
        const char* key;
        bool result;
        const char* value;
    } cases[] = {{"FULL", true, "text"},
                 {"none", true, ""},
                 {"literal", true, ""},
                 {"empty", false, "before"},
                 {nullptr, false, "before"}};
    for (const auto& c : cases) {
        value_ = "before";
        EXPECT_EQ(c.result, file.GetProfileStringA("S", c.key, &value_)) << c.key;
        EXPECT_STREQ(c.value, value_);
    }
}

TEST_F(ConfigFile, ABareNameIsInTheCurrentFolderFromTheFirstWriteOn) {
    const WorkingFolder here(folder_.path());
    CQELConfigInfoFile file("bare.ini", false, 7);
    EXPECT_FALSE(file.IsFileExist() || file.GetProfileStringA("s", "k", &value_));
    EXPECT_TRUE(file.PutProfileString("s", "k", "v"));
    EXPECT_TRUE(file.IsFileExist() && file.GetProfileStringA("s", "k", &value_));
    EXPECT_STREQ("v", value_);
    EXPECT_EQ("[s]\r\nk=v\r\n", folder_.Read("bare.ini"));
    EXPECT_FALSE(CQELConfigInfoFile("no\\a.ini", false, 0).PutProfileString("s", "k", "v"));
}

TEST_F(ConfigFile, RefusesTextsThatWouldForgeEntries) {
    auto file = Holding("[s]\r\nk=v\r\n");
    EXPECT_FALSE(file.PutProfileString("s", "k", "v\nforged=1") ||
                 file.PutProfileString("s", "k\rforged", "1") ||
                 file.PutProfileString("s]\n[forged", "k", "1"));
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
    EXPECT_TRUE(file.GetAllSections(&sections_) && file.ReturnStatus() == 0);
    ASSERT_EQ(2u, sections_.size());
    EXPECT_STREQ(kSection.data(), sections_.front().name);
    EXPECT_STREQ(kValue.data(), sections_.front().GetKeyValue(kKey.data()));
    EXPECT_STREQ("", sections_.front().GetKeyValue("B"));
    EXPECT_STREQ("3", sections_.back().GetKeyValue("c"));
    EXPECT_FALSE(file.PutAllSections({}) || file.PutSection("s", {}));
}

TEST_F(ConfigFile, ListsSucceedAndRecordWhatFailed) {
    auto file = Holding("[s]\r\nempty=\r\nk=v\r\n");
    Items items;
    EXPECT_TRUE(file.GetSection("s", &items) && items.size() == 2);
    EXPECT_STREQ("v", items.back().value);
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

// What a pointer to a virtual member holds: the offset in the table, plus one.
template <typename Member>
std::size_t SlotOf(Member CQELConfigInfoFile::*member) {
    std::size_t word;
    std::memcpy(&word, &member, sizeof word);
    return word / sizeof(void*);
}

TEST(ConfigFileLayout, KeepsTheOrderOfItsOverloads) {
    using File = CQELConfigInfoFile;
    constexpr std::size_t kDestructors = 2;
    EXPECT_EQ(kDestructors + 0, SlotOf<void(XQELStatus*) const>(&File::ReturnStatus));
    EXPECT_EQ(kDestructors + 1, SlotOf<int() const>(&File::ReturnStatus));
    EXPECT_EQ(kDestructors + 2, SlotOf<void(CQELString*)>(&File::ReturnErrMess));
    EXPECT_EQ(kDestructors + 3, SlotOf<const char*()>(&File::ReturnErrMess));
}

}  // namespace
