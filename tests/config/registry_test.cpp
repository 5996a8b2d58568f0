#include "config/registry.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "base/cp1251.h"
#include "platform/handles.h"
#include "support/guarded_buffer.h"
#include "support/import_patch.h"

namespace {

using Texts = std::list<std::string>;

constexpr auto kCyrillic = kit::Cp1251(u"Ключ № 1");
constexpr auto kMake = CQelReg::kWrite | CQelReg::kCreate;

// A failure as "code message", the message on one line.
template <typename Call>
std::string Failure(Call call) {
    try {
        call();
        return "none";
    } catch (const XQELRegError& error) {
        std::string text = std::to_string(error.GetErrorCode()) + " ";
        for (const char c : std::string(error.GetErrorMessage())) text += c == '\n' ? ' ' : c;
        return text;
    }
}

// The expected form of it: `what` and the quoted name, most often with the code again.
std::string Error(int code, const std::string& what, const std::string& name) {
    const std::string number = std::to_string(code);
    return number + " Cannot " + what + " \"" + name + "\". Error code = " + number + ".";
}

// Each test has a key of its own, which goes away with all that is below it.
class Registry : public testing::Test {
protected:
    ~Registry() override { RegDeleteTreeA(HKEY_CURRENT_USER, base_.c_str()); }

    std::string Path(const std::string& name) const { return base_ + "\\" + name; }
    CQelRegHCU Make(const std::string& name) const { return {Path(name).c_str(), kMake}; }
    bool Has(const std::string& name) const {
        return Failure([&] { CQelRegHCU(Path(name).c_str(), CQelReg::kRead); }) == "none";
    }
    void Store(const char* name, DWORD type, const std::string& data) {
        key_.SetValueEx(name, type, reinterpret_cast<const unsigned char*>(data.data()),
                        static_cast<DWORD>(data.size()));
    }

    const std::string base_ = "Software\\qelkit-test-" + std::to_string(GetCurrentProcessId());
    CQelRegHCU key_{base_.c_str(), kMake};
};

TEST_F(Registry, OpensAsItsModeSays) {
    const std::string path = Path("new");
    const std::string longest = Path(std::string(254 - base_.size(), 'k'));  // 255 characters
    const struct {
        std::string path;
        int mode;
        std::string failure;  // or its beginning
    } cases[] = {
        {path, CQelReg::kWrite, Error(2, "open registry key", path)},
        {path, CQelReg::kCreate, "5 Cannot write registry value \"v\" to key \"" + path},
        {path, kMake | CQelReg::k64BitView, "none"},
        {path, CQelReg::kEveryone, "none"},
        {"\\bad", CQelReg::kCreate, Error(161, "create registry key", "\\bad")},
        {"\\bad", CQelReg::kEveryone, "161 "},
        {longest, kMake, "none"},
        {longest + "k", kMake, "111 "},
    };
    for (const auto& c : cases) {
        const auto mode = static_cast<CQelReg::AccessMode>(c.mode);
        const auto failure = Failure([&] { CQelRegHCU(c.path.c_str(), mode).SetValue("v", "t"); });
        EXPECT_EQ(c.failure, failure.substr(0, c.failure.size())) << c.path << " " << c.mode;
    }
    const CQelRegHCU whole(nullptr, CQelReg::kRead);
    EXPECT_EQ("none", Failure([&] { CQelReg(&whole, path.c_str(), CQelReg::kRead); }));
}

TEST_F(Registry, KeepsValuesOfEveryTypeAndLength) {
    char blob[] = {1, 0, 2}, data[3];
    ulong32 number = 0, length = 0, type = 0;
    EXPECT_TRUE(key_.SetValue("", 0x01020304ul) && key_.PutMemory(kCyrillic.data(), blob, 3) &&
                key_.SetValueNoThrow("number", 5));
    EXPECT_TRUE(key_.GetMemoryNoThrow(nullptr, &number, 4) && number == 0x01020304);
    EXPECT_TRUE(key_.GetMemory(kCyrillic.data(), data, 3) && std::memcmp(blob, data, 3) == 0);
    EXPECT_TRUE(key_.GetValueTypeAndLength("number", length, type) && length == 4 &&
                type == REG_DWORD && key_.DelValue("number"));
    EXPECT_EQ(0, key_.DelValue("number") + key_.GetValueTypeAndLength("number", length, type));

    const std::string variable(5000, 'x');
    SetEnvironmentVariableA("QELKIT_TEST", variable.c_str());
    Store("path", REG_EXPAND_SZ, "<%QELKIT_TEST%>%QELKIT_NONE%");
    CQELString value;
    EXPECT_EQ(1, key_.GetExpandedValue("path", value, 29));
    EXPECT_EQ("<" + variable + ">%QELKIT_NONE%", std::string(value));
    for (const Texts& written : {Texts{"a", variable, kCyrillic.data()}, Texts{}}) {
        Texts read{"before"};
        EXPECT_TRUE(key_.SetStringList("list", written) && key_.GetStringList("list", &read));
        EXPECT_EQ(written, read);
    }
}

TEST_F(Registry, EndsTextsWhereThereIsRoom) {
    Store("text", REG_SZ, "abc");
    Store("list", REG_MULTI_SZ, "ab");
    const struct {
        const char* name;
        int room, result;
        std::string bytes;
    } cases[] = {{"text", 2, 0, ""},
                 {"text", 3, 1, "abc"},
                 {"text", 4, 1, std::string("abc", 4)},
                 {"list", 1, 0, ""},
                 {"list", 2, 1, "ab"},
                 {"list", 3, 1, std::string("ab", 3)},
                 {"list", 4, 1, std::string("ab\0", 4)},
                 {"list", -1, 0, ""},
                 {"none", 9, 0, ""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name + std::to_string(c.room));
        const std::string filled(c.room > 0 ? static_cast<std::size_t>(c.room) : 0, '~');
        GuardedBuffer buffer(filled.data(), filled.size());
        ASSERT_EQ(c.result, key_.GetValue(c.name, buffer.text(), c.room));
        EXPECT_EQ(c.bytes, std::string(buffer.text(), c.result ? buffer.size() : 0));
    }
    Texts list;
    EXPECT_TRUE(key_.GetStringList("list", &list));
    EXPECT_EQ(Texts{"ab"}, list);
}

TEST_F(Registry, NamesWhatFailed) {
    key_.SetValue("text", "12345");
    char room[6];
    ulong32 size = 4;
    CQELString value("before");
    Texts list{"before"};
    const std::string query = "query info for registry key", enumerate = "enum registry key";
    const struct {
        int code;
        std::string what, name;
        std::function<void()> call;
    } cases[] = {
        {2, query, " : none", [&] { key_.GetBufferLength("none"); }},
        {234, query, " : text", [&] { key_.GetValueEx("text", room, 5, REG_SZ); }},
        {1629, query, " : text", [&] { key_.GetMemory("text", room, 6); }},
        {234, query, " : text", [&] { key_.GetExpandedValue("text", value, 5); }},
        {1629, query, " : text", [&] { key_.GetStringList("text", &list); }},
        {234, enumerate, "", [&] { key_.GetValueName(0, room, &size); }},
        {259, enumerate, "", [&] { key_.GetSubKeyName(0, room, 6); }},
        {87, enumerate, "", [&] { key_.GetSubKeyName(0, room, -1); }},
    };
    for (const auto& c : cases) EXPECT_EQ(Error(c.code, c.what, base_ + c.name), Failure(c.call));
    EXPECT_TRUE(value == "before" && list == Texts{"before"});
}

TEST_F(Registry, DeletesTreesAndNothingElse) {
    std::string deep = "tree";
    for (int i = 0; i < 8; ++i) deep += "\\" + std::string(20, 'd');
    Make(deep);
    Make("tree\\second");
    Make("kept");
    HKEY link;  // that leads nowhere, so that only the link itself can be deleted
    RegCreateKeyExA(HKEY_CURRENT_USER, Path("tree\\link").c_str(), 0, nullptr,
                    REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS, nullptr, &link, nullptr);
    RegCloseKey(link);
    const auto remove = [&](const std::string& name) {
        return Failure([&] { key_.DeleteAll(name.c_str()); });
    };
    EXPECT_EQ("none", remove("tree"));
    EXPECT_FALSE(Has("tree"));
    for (const char* name : {"", "\\", "\\kept"}) EXPECT_EQ(0u, remove(name).find("87 ")) << name;
    EXPECT_TRUE(Has("kept"));
    const std::string name(255 - base_.size(), 'k');  // with the path 256 characters
    EXPECT_EQ(Error(2, "open registry key", Path(name)), remove(name));
    EXPECT_EQ(Error(0, "delete registry key", Path(name + "k")), remove(name + "k"));
}

TEST_F(Registry, DeletesInTheBufferThatItIsGiven) {
    const std::string path = Path("t"), small = "0 To small buffer for SubKeyName while ";
    const std::pair<std::size_t, std::string> cases[] = {
        {path.size(), small},
        {path.size() + 3, small + "working with key \"" + path + "\"."},
        {path.size() + 4, small + "deleting subkey \"cd\" in thr key \"" + path + "\\ab\"."},
        {path.size() + 7, "none"}};
    Make("t\\ab\\cd");
    for (const auto& [room, failure] : cases) {
        EXPECT_TRUE(Has("t\\ab\\cd"));
        GuardedBuffer buffer(room);
        std::strncpy(buffer.text(), path.c_str(), room);
        const std::string got =
            Failure([&] { key_.DeleteAll(buffer.text(), static_cast<int>(buffer.size())); });
        EXPECT_EQ(failure, got.substr(0, failure.size()));
    }
    EXPECT_FALSE(Has("t"));
}

// All values and keys below a key, in one text.
std::string Dump(const CQelReg& key) {
    std::string text;
    char name[512];
    for (int i = 0; i < key.GetValuesCount(); ++i) {
        ulong32 size = sizeof name, length = 0, type = 0;
        key.GetValueName(i, name, &size);
        key.GetValueTypeAndLength(name, length, type);
        std::string data(length, '\0');
        key.GetValueEx(name, data.data(), static_cast<int>(length), type);
        text += std::string(name) + "=" + std::to_string(type) + ":" + data + ";";
    }
    for (int i = 0; i < key.GetSubKeysCount(); ++i) {
        key.GetSubKeyName(i, name, sizeof name);
        text += std::string(name) + "{" + Dump(CQelReg(&key, name, CQelReg::kRead)) + "}";
    }
    return text;
}

TEST_F(Registry, CopiesBecomeEqualAndKeepOrLoseTheRest) {
    auto from = Make("from"), to = Make("to"), third = Make("third");
    from.SetValue(nullptr, "default");
    from.SetValue(std::string(300, 'n').c_str(), std::string(5000, 'v').c_str());
    from.SetValue("type", 1ul);
    from.SetValueEx("open", REG_SZ, reinterpret_cast<const unsigned char*>("abc"), 3);
    from.SetValueEx("nothing", REG_BINARY, nullptr, 0);
    const std::string deep = std::string("\\") + kCyrillic.data() + "\\deep";
    Make("from" + deep).SetValue("v", "new");
    Make("to" + deep).SetValue("v", "old");
    to.SetValue("type", "text");
    to.SetValue("surplus", "");
    Make("to\\surplus\\deep");

    to << from;
    EXPECT_TRUE(to.GetValuesCount() == 6 && Has("to\\surplus\\deep"));
    to = from;
    EXPECT_TRUE(to.GetValuesCount() == 5 && !Has("to\\surplus"));
    third.SetValue("type", "text");
    third.CleanNotExisted(from);
    EXPECT_EQ(0, third.GetValuesCount()) << "it was of another type";
    third = from;  // in the same order, from nothing
    EXPECT_EQ(Dump(from), Dump(third));

    third.SetValue("type", 2ul);
    CQelRegHCU read_only(Path("third").c_str(), CQelReg::kRead);
    EXPECT_EQ(Error(5, "write registry value", "type\" to key \"" + Path("third")),
              Failure([&] { read_only.Copy(from); }));
}

bool denies_next;
LSTATUS WINAPI DenyOnce(HKEY key, const char* name, DWORD options, REGSAM rights, HKEY* opened) {
    if (std::exchange(denies_next, false)) return ERROR_ACCESS_DENIED;
    return RegOpenKeyExA(key, name, options, rights, opened);
}

TEST_F(Registry, KeepsWhatItMayNotLookUpInTheSource) {
    auto from = Make("from"), to = Make("to");
    Make("from\\k");
    Make("to\\k");
    const ImportPatch open(kLibrary, "RegOpenKeyExA", DenyOnce);
    denies_next = true;
    EXPECT_EQ(0u, Failure([&] { to.CleanNotExisted(from); }).find("5 Cannot open"));
    EXPECT_EQ(1, to.GetSubKeysCount());
}

}  // namespace
