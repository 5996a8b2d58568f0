#include "config/registry.h"

#include <gtest/gtest.h>

#include <string>

#include "base/cp1251.h"
#include "platform/handles.h"
#include "support/guarded_buffer.h"
#include "support/import_patch.h"

namespace {

using Texts = std::list<std::string>;

constexpr auto kCyrillic = kit::Cp1251(u"Ключ № 1");

// A failure as "code message", the message on one line.
template <typename Call>
std::string Failure(Call call) {
    try {
        call();
        return "none";
    } catch (const XQELRegError& error) {
        std::string text = std::to_string(error.GetErrorCode()) + " " +
                           static_cast<const char*>(error.GetErrorMessage());
        const auto line_end = text.find('\n');
        if (line_end != std::string::npos) text[line_end] = ' ';
        return text;
    }
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// Each test has a key of its own, which goes away with all that is below it.
class Registry : public testing::Test {
protected:
    Registry() : base_("Software\\qelkit-test-" + std::to_string(GetCurrentProcessId())) {}
    ~Registry() override { RegDeleteTreeA(HKEY_CURRENT_USER, base_.c_str()); }

    std::string Path(const std::string& name) const { return base_ + "\\" + name; }
    CQelRegHCU Make(const std::string& name) const {
        return {Path(name).c_str(), CQelReg::kWrite | CQelReg::kCreate};
    }
    bool Has(const std::string& name) const {
        return Failure([&] { CQelRegHCU(Path(name).c_str(), CQelReg::kRead); }) == "none";
    }
    void Store(const char* name, DWORD type, const std::string& data) {
        key_.SetValueEx(name, type, reinterpret_cast<const unsigned char*>(data.data()),
                        static_cast<DWORD>(data.size()));
    }

    const std::string base_;
    CQelRegHCU key_{base_.c_str(), CQelReg::kWrite | CQelReg::kCreate};
};

TEST_F(Registry, OpensAsItsModeSays) {
    const std::string path = Path("new");
    const auto open = [&](CQelReg::AccessMode mode) {
        return Failure([&] { CQelRegHCU(path.c_str(), mode).SetValue("v", "t"); });
    };
    EXPECT_EQ("2 Cannot open registry key " + Quoted(path) + ". Error code = 2.",
              open(CQelReg::kWrite));
    EXPECT_EQ("5 Cannot write registry value \"v\" to key " + Quoted(path) + ". Error code = 5.",
              open(CQelReg::kCreate));
    EXPECT_EQ("none", open(CQelReg::kWrite | CQelReg::k64BitView));
    EXPECT_EQ("none", open(CQelReg::kEveryone));
    const std::string bad = "\\" + path;
    EXPECT_EQ("161 Cannot create registry key " + Quoted(bad) + ". Error code = 161.",
              Failure([&] { CQelRegHCU(bad.c_str(), CQelReg::kCreate); }));
    EXPECT_EQ(0u, Failure([&] { CQelRegHCU(bad.c_str(), CQelReg::kEveryone); }).find("161 "));

    const std::string longest = Path(std::string(254 - base_.size(), 'k'));
    EXPECT_EQ("none", Failure([&] { CQelRegHCU(longest.c_str(), CQelReg::kCreate); }));
    EXPECT_EQ(0u,
              Failure([&] { CQelRegHCU((longest + "k").c_str(), CQelReg::kCreate); }).find("111 "));
    const std::string part(254 - base_.size() + 1, 'k');
    EXPECT_EQ(0u, Failure([&] { CQelReg(&key_, part.c_str(), CQelReg::kCreate); }).find("111 "));
    const CQelRegHCU whole(nullptr, CQelReg::kRead);
    EXPECT_EQ("none", Failure([&] { CQelReg(&whole, base_.c_str(), CQelReg::kRead); }));
}

REGSAM rights;

LSTATUS WINAPI SeeCreation(HKEY, const char*, DWORD, char*, DWORD, REGSAM wanted,
                           SECURITY_ATTRIBUTES* security, HKEY*, DWORD*) {
    rights = wanted;
    BOOL is_present = FALSE, by_default = TRUE;
    ACL* list = reinterpret_cast<ACL*>(1);
    GetSecurityDescriptorDacl(security->lpSecurityDescriptor, &is_present, &list, &by_default);
    EXPECT_TRUE(is_present && !list);
    return ERROR_ACCESS_DENIED;
}

TEST_F(Registry, OpensToEverybodyByANullList) {
    const ImportPatch create(kLibrary, "RegCreateKeyExA", SeeCreation);
    EXPECT_EQ(
        0u, Failure([&] { CQelRegHCU("k", CQelReg::kEveryone | CQelReg::k64BitView); }).find("5 "));
    EXPECT_EQ(0xF013Fu, rights);
}

TEST_F(Registry, KeepsValuesOfEveryType) {
    EXPECT_EQ(1, key_.SetValue(kCyrillic.data(), "text"));
    EXPECT_EQ(1, key_.SetValue("", 0x01020304ul));
    EXPECT_EQ(1, key_.SetValueNoThrow("number", 5));
    char blob[] = {1, 0, 2};
    EXPECT_EQ(1, key_.PutMemory("blob", blob, 3));
    EXPECT_EQ(1, key_.SetValue("empty", ""));
    EXPECT_EQ(1u, key_.GetBufferLength("empty"));
    EXPECT_EQ(5, key_.GetValuesCount());

    char text[5];
    EXPECT_EQ(1, key_.GetValueEx(kCyrillic.data(), text, 5, REG_SZ));
    EXPECT_STREQ("text", text);
    ulong32 number = 0, length = 0, type = 0;
    EXPECT_EQ(1, key_.GetMemoryNoThrow(nullptr, &number, 4));
    EXPECT_EQ(0x01020304u, number);
    EXPECT_EQ(1, key_.GetMemory("blob", text, 5));
    EXPECT_EQ(0, std::memcmp(blob, text, 3));
    EXPECT_EQ(1, key_.GetValueTypeAndLength("blob", length, type));
    EXPECT_EQ(3u, length);
    EXPECT_EQ(DWORD{REG_BINARY}, type);
    EXPECT_EQ(1, key_.DelValue("blob"));
    EXPECT_EQ(0, key_.DelValue("blob") + key_.GetValueTypeAndLength("blob", length, type));
}

TEST_F(Registry, EndsTextsWhereThereIsRoom) {
    Store("text", REG_SZ, "abc");
    Store("list", REG_MULTI_SZ, "ab");
    const struct {
        const char* name;
        int room, result;
        std::string bytes;
    } cases[] = {{"text", 2, 0, ""}, {"text", 3, 1, "abc"}, {"text", 4, 1, std::string("abc", 4)},
                 {"list", 1, 0, ""}, {"list", 2, 1, "ab"},  {"list", 3, 1, std::string("ab", 3)},
                 {"none", 9, 0, ""}, {"list", -1, 0, ""},   {"list", 4, 1, std::string("ab\0", 4)}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name + std::to_string(c.room));
        GuardedBuffer buffer(c.room > 0 ? static_cast<std::size_t>(c.room) : 0);
        ASSERT_EQ(c.result, key_.GetValue(c.name, buffer.text(), c.room));
        EXPECT_EQ(c.bytes, std::string(buffer.text(), c.result ? buffer.size() : 0));
    }
    Texts list;
    EXPECT_TRUE(key_.GetStringList("list", &list));
    EXPECT_EQ(Texts{"ab"}, list);
    CQELString value;
    EXPECT_EQ(1, key_.GetExpandedValue("text", value, 3));
    EXPECT_STREQ("abc", value);
}

TEST_F(Registry, NamesTheValueThatCannotBeRead) {
    key_.SetValue("text", "12345");
    char room[6];
    const auto message = [&](const char* name, const char* code) {
        return std::string(code) + " Cannot query info for registry key " +
               Quoted(base_ + " : " + name) + ". Error code = " + code + ".";
    };
    EXPECT_EQ(message("none", "2"), Failure([&] { key_.GetBufferLength("none"); }));
    EXPECT_EQ(message("text", "234"), Failure([&] { key_.GetValueEx("text", room, 5, REG_SZ); }));
    EXPECT_EQ(message("text", "1629"), Failure([&] { key_.GetMemory("text", room, 6); }));
    EXPECT_EQ(message("text", "87"), Failure([&] { key_.GetMemory("text", room, -1); }));
    CQELString value("before");
    EXPECT_EQ(message("text", "234"), Failure([&] { key_.GetExpandedValue("text", value, 5); }));
    Texts list{"before"};
    EXPECT_EQ(message("text", "1629"), Failure([&] { key_.GetStringList("text", &list); }));
    EXPECT_STREQ("before", value);
    EXPECT_EQ(Texts{"before"}, list);
}

TEST_F(Registry, ExpandsAndListsTextsOfAnyLength) {
    const std::string variable(5000, 'x');
    SetEnvironmentVariableA("QELKIT_TEST", variable.c_str());
    Store("path", REG_EXPAND_SZ, "<%QELKIT_TEST%>%QELKIT_NONE%");
    CQELString value;
    EXPECT_EQ(1, key_.GetExpandedValue("path", value, 100));
    EXPECT_EQ("<" + variable + ">%QELKIT_NONE%", std::string(value));
    SetEnvironmentVariableA("QELKIT_TEST", nullptr);

    const Texts written = {"a", variable, kCyrillic.data()};
    Texts read{"before"};
    EXPECT_TRUE(key_.SetStringList("list", written) && key_.GetStringList("list", &read));
    EXPECT_EQ(written, read);
    EXPECT_TRUE(key_.SetStringList("list", {}) && key_.GetStringList("list", &read));
    EXPECT_EQ(1u, key_.GetBufferLength("list"));
    EXPECT_TRUE(read.empty());
}

TEST_F(Registry, EnumeratesNames) {
    Make(kCyrillic.data());
    key_.SetValue("four", "");
    EXPECT_EQ(1, key_.GetSubKeysCount());
    char name[16];
    key_.GetSubKeyName(0, name, 9);
    EXPECT_STREQ(kCyrillic.data(), name);
    const std::string message = " Cannot enum registry key " + Quoted(base_) + ". Error code = ";
    EXPECT_EQ("234" + message + "234.", Failure([&] { key_.GetSubKeyName(0, name, 8); }));
    EXPECT_EQ("259" + message + "259.", Failure([&] { key_.GetSubKeyName(1, name, 9); }));
    ulong32 size = 5;
    key_.GetValueName(0, name, &size);
    EXPECT_STREQ("four", name);
    EXPECT_EQ(4u, size);
    EXPECT_EQ("234" + message + "234.", Failure([&] { key_.GetValueName(0, name, &size); }));
    EXPECT_EQ("87" + message + "87.", Failure([&] { key_.GetValueName(0, name, nullptr); }));
}

TEST_F(Registry, DeletesTreesAndNothingElse) {
    std::string deep = "tree";
    for (int i = 0; i < 8; ++i) deep += "\\" + std::string(20, 'd');
    Make(deep);
    Make("tree\\second");
    Make("kept").SetValue("v", "t");
    HKEY link;
    RegCreateKeyExA(HKEY_CURRENT_USER, Path("tree\\link").c_str(), 0, nullptr,
                    REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS, nullptr, &link, nullptr);
    const kit::RegistryKey owner(link);
    EXPECT_EQ("none", Failure([&] { key_.DeleteAll("tree"); }));
    EXPECT_FALSE(Has("tree"));
    EXPECT_TRUE(Has("kept"));
    for (const char* name : {"", "\\", "\\kept"}) {
        EXPECT_EQ(0u, Failure([&] { key_.DeleteAll(name); }).find("87 ")) << name;
    }
    EXPECT_EQ("2 Cannot open registry key " + Quoted(Path("none")) + ". Error code = 2.",
              Failure([&] { key_.DeleteAll("none"); }));
    const std::string longest(255 - base_.size(), 'k');  // with the path 256 characters
    EXPECT_EQ(0u, Failure([&] { key_.DeleteAll(longest.c_str()); }).find("2 "));
    EXPECT_EQ("0 Cannot delete registry key " + Quoted(Path(longest + "k")) + ". Error code = 0.",
              Failure([&] { key_.DeleteAll((longest + "k").c_str()); }));
}

TEST_F(Registry, DeletesInTheBufferThatItIsGiven) {
    const std::string path = Path("t");
    const auto remove = [&](std::size_t room) {
        GuardedBuffer buffer(room);
        std::strncpy(buffer.text(), path.c_str(), room);
        return Failure([&] { key_.DeleteAll(buffer.text(), static_cast<int>(room)); });
    };
    Make("t\\ab\\cd");
    EXPECT_EQ(0u, remove(path.size()).find("0 To small buffer"));
    EXPECT_EQ("0 To small buffer for SubKeyName while working with key " + Quoted(path) + ".",
              remove(path.size() + 3));
    EXPECT_EQ("0 To small buffer for SubKeyName while deleting subkey \"cd\" in thr key " +
                  Quoted(path + "\\ab") + ".",
              remove(path.size() + 4));
    EXPECT_TRUE(Has("t\\ab\\cd"));
    EXPECT_EQ("none", remove(path.size() + 7));
    EXPECT_FALSE(Has("t"));
}

// All values and keys below a key, in one text.
std::string Dump(const CQelReg& key) {
    std::string text;
    for (int i = 0; i < key.GetValuesCount(); ++i) {
        char name[512];
        ulong32 size = sizeof name, length = 0, type = 0;
        key.GetValueName(i, name, &size);
        key.GetValueTypeAndLength(name, length, type);
        std::string data(length, '\0');
        key.GetValue(name, data.data(), static_cast<int>(length));
        text += std::string(name) + "=" + std::to_string(type) + ":" + data + ";";
    }
    for (int i = 0; i < key.GetSubKeysCount(); ++i) {
        char name[512];
        key.GetSubKeyName(i, name, sizeof name);
        text += std::string(name) + "{" + Dump(CQelReg(&key, name, CQelReg::kRead)) + "}";
    }
    return text;
}

TEST_F(Registry, CopiesBecomeEqualAndKeepOrLoseTheRest) {
    auto from = Make("from"), to = Make("to");
    from.SetValue(nullptr, "default");
    from.SetValue(std::string(300, 'n').c_str(), std::string(5000, 'v').c_str());
    from.SetValue("type", 1ul);
    from.SetValueEx("open", REG_SZ, reinterpret_cast<const unsigned char*>("abc"), 3);
    from.SetValueEx("nothing", REG_BINARY, nullptr, 0);
    Make(std::string("from\\") + kCyrillic.data() + "\\deep").SetValue("v", "new");
    Make(std::string("to\\") + kCyrillic.data() + "\\deep").SetValue("v", "old");
    to.SetValue("type", "text");
    to.SetValue("surplus", "");
    Make("to\\surplus\\deep");

    EXPECT_EQ(&to, &(to << from));
    EXPECT_EQ(6, to.GetValuesCount());
    EXPECT_TRUE(Has("to\\surplus\\deep"));
    EXPECT_NE(Dump(from), Dump(to));
    to.SetValue("type", "text");
    to = from;
    EXPECT_FALSE(Has("to\\surplus"));
    EXPECT_EQ(5, to.GetValuesCount());
    auto third = Make("third");
    third = from;  // in the same order, from nothing
    EXPECT_EQ(Dump(from), Dump(third));

    const ImportPatch write(kLibrary, "RegSetValueExW", RegSetValueExW);
    third.SetValue("type", 2ul);
    const CQelRegHCU read_only(Path("third").c_str(), CQelReg::kRead);
    EXPECT_EQ("5 Cannot write registry value \"type\" to key " + Quoted(Path("third")) +
                  ". Error code = 5.",
              Failure([&] { const_cast<CQelRegHCU&>(read_only).Copy(from); }));
}

LSTATUS WINAPI Deny(HKEY, const char*, DWORD, REGSAM, HKEY*) { return ERROR_ACCESS_DENIED; }

TEST_F(Registry, KeepsWhatItMayNotLookUpInTheSource) {
    auto from = Make("from"), to = Make("to");
    Make("from\\k");
    Make("to\\k");
    const ImportPatch open(kLibrary, "RegOpenKeyExA", Deny);
    EXPECT_EQ(0u, Failure([&] { to.CleanNotExisted(from); }).find("5 Cannot open"));
    EXPECT_EQ(1, to.GetSubKeysCount());
}

}  // namespace
