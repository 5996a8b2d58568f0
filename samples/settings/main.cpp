// settings [FILE [KEY]]: keeps settings in a configuration file and in the registry.
//
// Counts its own runs in FILE (default: settings.ini in the current folder), writes a few Russian
// settings, shows every section, takes the sections over into the registry key KEY below
// HKEY_CURRENT_USER (default: Software\QELKIT2 sample), copies that key to "KEY copy" and shows the
// copy. The copy is deleted at the end; file and key stay for the next run.
//
// Ends with 0, or with 1 and a message that says what failed.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <string>
#include <vector>

#include <qelkit2.h>

#include <windows.h>

#include "../console/utf8.h"

namespace {

using Sections = std::list<CConfigFileSectionListItem>;

constexpr auto kMode = CQelReg::kWrite | CQelReg::kCreate;
constexpr auto kSection = kit::Cp1251(u"Пользователь");
constexpr auto kName = kit::Cp1251(u"Имя");
constexpr auto kIvan = kit::Cp1251(u"Иван Ёлкин");

// --- The file ------------------------------------------------------------------------------------

// Operations on lists succeed and record what failed; here every failure counts.
void Check(const CQELConfigInfoFile& file) {
    XQELStatus status;
    file.ReturnStatus(&status);
    if (status.IsError()) throw status;
}

void EditFile(CQELConfigInfoFile& file) {
    CQELString runs;
    file.GetProfileStringA("Sample", "Runs", &runs);  // missing: ""
    const std::string next = std::to_string(std::atoi(runs) + 1);
    file.PutAllSections({{"Sample", {{"Runs", next.c_str()}, {"Folder", "%TEMP%\\sample"}}},
                         {kSection.data(), {{kName.data(), kIvan.data()}}}});
    Check(file);
}

Sections ReadFile(CQELConfigInfoFile& file) {
    Sections sections;
    file.GetAllSections(&sections);
    Check(file);
    for (const auto& section : sections) {
        std::printf("  [%s]\n", Utf8(section.name).c_str());
        for (const auto& item : section.keys) {
            std::printf("  %s = %s\n", Utf8(item.key).c_str(), Utf8(item.value).c_str());
        }
    }
    return sections;
}

// --- The registry ----------------------------------------------------------------------------------

void Store(const Sections& sections, const std::string& path) {
    CQelRegHCU key(path.c_str(), kMode);
    std::list<std::string> names;
    for (const auto& section : sections) {
        names.emplace_back(section.name);
        CQelReg branch(&key, section.name, kMode);
        for (const auto& item : section.keys) branch.SetValue(item.key, item.value);
    }
    key.SetStringList("Sections", names);
}

void ShowKey(const CQelReg& key, const std::string& indent) {
    for (int i = 0; i < key.GetValuesCount(); ++i) {
        char name[256];
        ulong32 length = sizeof name, type = 0;
        key.GetValueName(i, name, &length);
        if (!key.GetValueTypeAndLength(name, length, type)) continue;
        CQELString text;
        if (type == REG_SZ) {
            key.GetExpandedValue(name, text, length);
        } else {
            text.Format("(type %d, %d bytes)", type, length);
        }
        std::printf("%s%s = %s\n", indent.c_str(), Utf8(name).c_str(), Utf8(text).c_str());
    }
    for (int i = 0; i < key.GetSubKeysCount(); ++i) {
        char name[256];
        key.GetSubKeyName(i, name, sizeof name);
        std::printf("%s%s\\\n", indent.c_str(), Utf8(name).c_str());
        ShowKey(CQelReg(&key, name, CQelReg::kRead), indent + "  ");
    }
}

void CopyAndShow(const std::string& path) {
    const std::string copy_path = path + " copy";
    {
        const CQelRegHCU key(path.c_str(), CQelReg::kRead);
        CQelRegHCU copy(copy_path.c_str(), kMode);
        copy = key;  // the contents
        ShowKey(copy, "  ");
    }
    const std::size_t last = copy_path.rfind('\\');
    CQelRegHCU parent(copy_path.substr(0, last).c_str(), CQelReg::kWrite);
    parent.DeleteAll(copy_path.c_str() + last + 1);
}

}  // namespace

int main(int argc, char** argv) {
    SetConsoleOutputCP(CP_UTF8);
    const char* const name = argc > 1 ? argv[1] : "settings.ini";
    const std::string path = argc > 2 ? argv[2] : "Software\\QELKIT2 sample";
    if (argc > 3 || path.find('\\') == std::string::npos) {
        std::printf("usage: settings [FILE [KEY]], KEY with a backslash\n");
        return 1;
    }
    try {
        CQELConfigInfoFile file(name, false, 0);
        EditFile(file);
        std::printf("%s:\n", Utf8(name).c_str());
        const Sections sections = ReadFile(file);
        Store(sections, path);
        std::printf("a copy of HKEY_CURRENT_USER\\%s:\n", Utf8(path.c_str()).c_str());
        CopyAndShow(path);
        return 0;
    } catch (const XQELStatus& failure) {
        std::printf("failed: %s\n", Utf8(GetErrorString("", failure)).c_str());
    } catch (const XQELRegError& failure) {
        std::printf("failed: %s\n", Utf8(failure.GetErrorMessage()).c_str());
    }
    return 1;
}
