// The plain C functions without an import library: nothing of the DLL is known but its name. The
// header gives the types.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <windows.h>

#include <report/table_builder_c.h>

namespace {

HMODULE module;

// The function of that name; ends the program when the DLL has none.
template <typename Function>
Function* Load(const char* name) {
    const auto address = reinterpret_cast<void*>(::GetProcAddress(module, name));
    if (!address) {
        std::printf("%s is missing\n", name);
        std::exit(1);
    }
    return reinterpret_cast<Function*>(address);
}

#define LOADED(name) Load<decltype(name)>(#name)

// Writes a page with one title and one cell; returns the first status that is not 0.
int WritePage(const char* path, const char* cell) {
    QEL_TableBuilder* table = nullptr;
    if (const int status = LOADED(QEL_TableBuilder_Create)(path, QEL_TABLE_HTML, &table)) {
        return status;
    }
    const int statuses[] = {
        LOADED(QEL_TableBuilder_BeginHeader)(table),
        LOADED(QEL_TableBuilder_AddCell)(table, "title", 2),
        LOADED(QEL_TableBuilder_EndHeader)(table),
        LOADED(QEL_TableBuilder_BeginRow)(table),
        LOADED(QEL_TableBuilder_AddCell)(table, cell, 0),
        LOADED(QEL_TableBuilder_EndRow)(table),
        LOADED(QEL_TableBuilder_Close)(table),
    };
    for (const int status : statuses) {
        if (status) return status;
    }
    return 0;
}

// Whether the file holds the text, in its first 4 KB.
bool Holds(const char* path, const char* text) {
    char page[4096] = {};
    std::FILE* const file = std::fopen(path, "rb");
    if (!file) return false;
    std::fread(page, 1, sizeof page - 1, file);
    std::fclose(file);
    return std::strstr(page, text) != nullptr;
}

}  // namespace

int main() {
    module = ::LoadLibraryA("QELKIT2_64.dll");
    if (!module) return 1;
    char cell[32];
    if (LOADED(QEL_HtmlEscape)("a < b", cell, sizeof cell) != 9) return 2;
    if (WritePage("way.html", cell) != 0) return 3;
    if (!Holds("way.html", "<td>a &lt; b</td>")) return 4;
    ::FreeLibrary(module);
    std::puts("ok");
    return 0;
}
