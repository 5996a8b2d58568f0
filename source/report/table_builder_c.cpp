#include "report/table_builder_c.h"

#include <memory>
#include <new>

#include "file_com/qel_file.h"
#include "report/html_table_builder.h"
#include "status/status_codes.h"

// The fields are in the order of the binary interface.
struct QEL_TableBuilder {
    std::unique_ptr<CQELDirectFile> file;
    std::unique_ptr<CQELTableBuilder> builder;
};

namespace {

// Runs call() and returns the status of what it throws.
template <typename Call>
int StatusOf(Call call) noexcept {
    try {
        call();
        return kStatusOk;
    } catch (const XQELStatus& failure) {
        return failure.Status();
    } catch (const std::bad_alloc&) {
        return kStatusOutOfMemory;
    } catch (const char*) {  // the work buffers of strings
        return kStatusOutOfMemory;
    } catch (...) {
        return kStatusUnknown;
    }
}

// Runs one call on the builder behind a handle.
template <typename Call>
int WithBuilder(QEL_TableBuilder* table, Call call) noexcept {
    if (!table || !table->builder) return kStatusBadParameter;
    return StatusOf([&] { call(*table->builder); });
}

// Opens the file and begins the page.
void Begin(QEL_TableBuilder& table, const char* file_name, int type) {
    table.file = std::make_unique<CQELDirectFile>(file_name, "wt", true);
    if (type != QEL_TABLE_HTML) throw XQELStatus(kStatusBadParameter, true);
    table.builder = std::make_unique<CQELHTMLTableBuilder>(*table.file);
}

// Ends the page. A smart pointer would not let the failure of the destructor through.
int End(QEL_TableBuilder& table) {
    const int tail = StatusOf([&] { delete table.builder.release(); });
    // Closing says nothing about what was still in the buffer.
    const int flush = StatusOf([&] { table.file->Flush(); });
    return tail != kStatusOk ? tail : flush;
}

}  // namespace

int QEL_TableBuilder_Create(const char* fileName, int type, QEL_TableBuilder** out) {
    if (!fileName || !out) return kStatusBadParameter;
    *out = nullptr;
    std::unique_ptr<QEL_TableBuilder> table(new (std::nothrow) QEL_TableBuilder);
    if (!table) return kStatusOutOfMemory;
    const int status = StatusOf([&] { Begin(*table, fileName, type); });
    if (status == kStatusOk) *out = table.release();
    return status;
}

int QEL_TableBuilder_BeginHeader(QEL_TableBuilder* table) {
    return WithBuilder(table, [](CQELTableBuilder& builder) { builder.BeginHeader(); });
}

int QEL_TableBuilder_EndHeader(QEL_TableBuilder* table) {
    return WithBuilder(table, [](CQELTableBuilder& builder) { builder.EndHeader(); });
}

int QEL_TableBuilder_BeginRow(QEL_TableBuilder* table) {
    return WithBuilder(table, [](CQELTableBuilder& builder) { builder.BeginRow(); });
}

int QEL_TableBuilder_EndRow(QEL_TableBuilder* table) {
    return WithBuilder(table, [](CQELTableBuilder& builder) { builder.EndRow(); });
}

int QEL_TableBuilder_AddCell(QEL_TableBuilder* table, const char* text, int align) {
    return WithBuilder(table, [&](CQELTableBuilder& builder) { builder.AddCell(text, align); });
}

int QEL_TableBuilder_Close(QEL_TableBuilder* table) {
    if (!table || !table->builder) return kStatusBadParameter;
    const int status = End(*table);
    delete table;
    return status;
}
