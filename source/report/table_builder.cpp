#include "report/table_builder.h"

#include <cstring>

#include "file_com/qel_file.h"

static_assert(sizeof(CQELTableBuilder) == 16, "part of the binary interface");

CQELTableBuilder::~CQELTableBuilder() noexcept(false) = default;

void CQELTableBuilder::Put(const char* text) {
    if (text) file_.Write(text, static_cast<ulong32>(std::strlen(text)));
}
