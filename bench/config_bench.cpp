// Configuration stores beside the bare platform calls that do the same work: a file of 1,000 keys
// and a registry tree of 1,000 values.

#include "config/config_file.h"
#include "config/registry.h"

#include <cstdio>
#include <string>

#include "support/wine_bench.h"

namespace {

constexpr int kKeys = 1000;
constexpr int kBranches = 10;
constexpr char kValue[] = "a value of some length";

std::string Key(int i) { return "key" + std::to_string(i); }

// A file and a key of its own, which go away with the program.
class Stores {
public:
    Stores() {
        char folder[MAX_PATH];
        GetTempPathA(sizeof folder, folder);
        file = folder + name + ".ini";
        tree = "Software\\" + name;
        FILE* const stream = std::fopen(file.c_str(), "wb");
        std::fputs("[section]\r\n", stream);
        for (int i = 0; i < kKeys; ++i) std::fprintf(stream, "%s=%s\r\n", Key(i).c_str(), kValue);
        std::fclose(stream);
        for (int i = 0; i < kKeys; ++i) {
            const std::string branch = tree + "\\branch" + std::to_string(i % kBranches);
            CQelRegHCU(branch.c_str(), CQelReg::kWrite | CQelReg::kCreate)
                .SetValue(Key(i).c_str(), kValue);
        }
    }
    ~Stores() {
        DeleteFileA(file.c_str());
        RegDeleteTreeA(HKEY_CURRENT_USER, tree.c_str());
    }

    const std::string name = "qelkit-bench-" + std::to_string(GetCurrentProcessId());
    std::string file, tree;
};

void ReadFile(WineBench& bench, const Stores& stores) {
    CQELConfigInfoFile file(stores.file.c_str(), false, 0);
    bench.Run("config file/1000 keys/qelkit", [&] {
        for (int i = 0; i < kKeys; ++i) {
            CQELString value;
            KeepValue(file.GetProfileStringA("section", Key(i).c_str(), &value));
        }
    });
    bench.Run("config file/1000 keys/bare calls", [&] {
        for (int i = 0; i < kKeys; ++i) {
            char value[4094];
            KeepValue(GetPrivateProfileStringA("section", Key(i).c_str(), "(Default)", value,
                                               sizeof value, stores.file.c_str()));
        }
    });
}

void ReadTree(WineBench& bench, const Stores& stores) {
    bench.Run("registry tree/1000 values/qelkit", [&] {
        const CQelRegHCU tree(stores.tree.c_str(), CQelReg::kRead);
        for (int branch = 0; branch < tree.GetSubKeysCount(); ++branch) {
            char name[256], value[64];
            tree.GetSubKeyName(branch, name, sizeof name);
            const CQelReg key(&tree, name, CQelReg::kRead);
            for (int i = 0, count = key.GetValuesCount(); i < count; ++i) {
                ulong32 length = sizeof name;
                key.GetValueName(i, name, &length);
                KeepValue(key.GetValueEx(name, value, sizeof value, REG_SZ));
            }
        }
    });
    bench.Run("registry tree/1000 values/bare calls", [&] {
        HKEY tree;
        DWORD branches = 0;
        RegOpenKeyExA(HKEY_CURRENT_USER, stores.tree.c_str(), 0, KEY_READ, &tree);
        const auto count_branches = [&] {
            RegQueryInfoKeyA(tree, nullptr, nullptr, nullptr, &branches, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr);
            return branches;
        };
        for (DWORD branch = 0; branch < count_branches(); ++branch) {
            char name[256], value[64];
            DWORD length = sizeof name, count = 0;
            HKEY key;
            RegEnumKeyExA(tree, branch, name, &length, nullptr, nullptr, nullptr, nullptr);
            RegOpenKeyExA(tree, name, 0, KEY_READ, &key);
            RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count,
                             nullptr, nullptr, nullptr, nullptr);
            for (DWORD i = 0; i < count; ++i) {
                length = sizeof name;
                RegEnumValueA(key, i, name, &length, nullptr, nullptr, nullptr, nullptr);
                DWORD type, size = sizeof value;
                KeepValue(RegQueryValueExA(key, name, nullptr, &type,
                                           reinterpret_cast<BYTE*>(value), &size));
            }
            RegFlushKey(key);
            RegCloseKey(key);
        }
        RegFlushKey(tree);
        RegCloseKey(tree);
    });
}

}  // namespace

int main() {
    const Stores stores;
    WineBench bench;
    ReadFile(bench, stores);
    ReadTree(bench, stores);
    return bench.Print();
}
