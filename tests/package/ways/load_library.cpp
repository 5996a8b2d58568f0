// The plain C functions without an import library: nothing of the DLL is known but its name. The
// header gives the types.

#include <cstdio>
#include <cstring>

#include <windows.h>

#include <report/table_builder_c.h>

namespace {

template <typename Function>
bool Load(HMODULE module, const char* name, Function** function) {
    *function = reinterpret_cast<Function*>(
        reinterpret_cast<void*>(::GetProcAddress(module, name)));
    if (!*function) std::printf("%s is missing\n", name);
    return *function != nullptr;
}

#define LOAD(name) Load(module, #name, &name##_)

decltype(QEL_TableBuilder_Create)* QEL_TableBuilder_Create_;
decltype(QEL_TableBuilder_BeginHeader)* QEL_TableBuilder_BeginHeader_;
decltype(QEL_TableBuilder_EndHeader)* QEL_TableBuilder_EndHeader_;
decltype(QEL_TableBuilder_BeginRow)* QEL_TableBuilder_BeginRow_;
decltype(QEL_TableBuilder_EndRow)* QEL_TableBuilder_EndRow_;
decltype(QEL_TableBuilder_AddCell)* QEL_TableBuilder_AddCell_;
decltype(QEL_TableBuilder_Close)* QEL_TableBuilder_Close_;
decltype(QEL_HtmlEscape)* QEL_HtmlEscape_;

bool LoadAll(HMODULE module) {
    return LOAD(QEL_TableBuilder_Create) && LOAD(QEL_TableBuilder_BeginHeader) &&
           LOAD(QEL_TableBuilder_EndHeader) && LOAD(QEL_TableBuilder_BeginRow) &&
           LOAD(QEL_TableBuilder_EndRow) && LOAD(QEL_TableBuilder_AddCell) &&
           LOAD(QEL_TableBuilder_Close) && LOAD(QEL_HtmlEscape);
}

// A page with one title and one cell. The first status that is not 0.
int WritePage(const char* path, const char* cell) {
    QEL_TableBuilder* table = nullptr;
    if (const int status = QEL_TableBuilder_Create_(path, QEL_TABLE_HTML, &table)) return status;
    const int statuses[] = {
        QEL_TableBuilder_BeginHeader_(table), QEL_TableBuilder_AddCell_(table, "title", 2),
        QEL_TableBuilder_EndHeader_(table),   QEL_TableBuilder_BeginRow_(table),
        QEL_TableBuilder_AddCell_(table, cell, 0), QEL_TableBuilder_EndRow_(table),
        QEL_TableBuilder_Close_(table)};
    for (const int status : statuses) {
        if (status) return status;
    }
    return 0;
}

}  // namespace

int main() {
    const HMODULE module = ::LoadLibraryA("QELKIT2_64.dll");
    if (!module || !LoadAll(module)) return 1;
    char cell[32];
    if (QEL_HtmlEscape_("a < b", cell, sizeof cell) != 9) return 2;
    if (std::strcmp(cell, "a &lt; b") != 0) return 3;
    if (const int status = WritePage("way.html", cell)) {
        std::printf("status %d\n", status);
        return 4;
    }
    ::FreeLibrary(module);
    std::puts("ok");
    return 0;
}
