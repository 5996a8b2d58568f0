// module_info [FILE...]: prints what the version resources of modules say; without a name, that of
// the library itself.
//
// Ends with 0, or with 1 when a file has no readable version resource.

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <qelkit2.h>

#include <windows.h>

#include "../console/utf8.h"

namespace {

using Info = QELUtils::CLibraryInfo::DLLINFO;

constexpr struct {
    const char* title;
    CQELString Info::*field;
} kFields[] = {
    {"Company", &Info::company_name},
    {"Product", &Info::product_name},
    {"Product version", &Info::product_version},
    {"Description", &Info::description},
    {"File version", &Info::file_version},
    {"Fixed version", &Info::fixed_file_version},
    {"Internal name", &Info::internal_name},
    {"Original name", &Info::original_file_name},
    {"Copyright", &Info::copyright},
    {"Comments", &Info::comments},
    {"Type", &Info::type},
    {"System", &Info::os},
    {"Language", &Info::language},
    {"Character set", &Info::character_set},
    {"Date", &Info::file_date},
};

bool Show(const char* path) {
    std::printf("%s\n", Utf8(path).c_str());
    QELUtils::CLibraryInfo module;
    module.SetDllName(path);
    Info info;
    if (!module.GetDllInfo(info)) {
        CQELString comments;
        ulong32 error = 0;
        module.CommentsOnly(comments, error);
        std::printf("  no readable version resource (error %lu)\n",
                    error != 0 ? error : ERROR_RESOURCE_DATA_NOT_FOUND);
        return false;
    }
    for (const auto& row : kFields) {
        const CQELString& text = info.*row.field;
        if (!text.IsEmpty()) std::printf("  %-16s %s\n", row.title, Utf8(text).c_str());
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    SetConsoleOutputCP(CP_UTF8);
    if (argc == 1) return Show("QELKIT2_64.dll") ? 0 : 1;
    bool all = true;
    for (int i = 1; i < argc; ++i) all = Show(argv[i]) && all;
    return all ? 0 : 1;
}
