#pragma once

#include "base/export.h"

class CQELFile;  // file_com/qel_file.h

// Writes a table, an optional header row and rows of text cells, to a file. This class fixes the
// protocol; html_table_builder.h has the one format.
//
//     builder.BeginHeader();  builder.AddCell("Name", 0);  builder.EndHeader();
//     builder.BeginRow();     builder.AddCell("disk", 0);  builder.EndRow();     // and so on
//
// The order of the calls is not checked: what comes is written as it comes. The file belongs to the
// caller, outlives the builder and reports failures in its own style: it records them, or throws
// XQELFile through every function here, the destructor included. A destructor that runs while
// another exception is on its way keeps its own failure to itself.
//
// One builder belongs to one thread at a time. The order of the virtual functions and of the fields
// is part of the binary interface: add only at the end.
class QELKIT_API CQELTableBuilder {
public:
    // A table in `file`, which is open for writing.
    explicit CQELTableBuilder(CQELFile& file);
    CQELTableBuilder(const CQELTableBuilder&) = delete;
    CQELTableBuilder& operator=(const CQELTableBuilder&) = delete;
    virtual ~CQELTableBuilder() noexcept(false);

    // Begin and end the row of titles; once, before the rows.
    virtual void BeginHeader() = 0;
    virtual void EndHeader() = 0;
    // Begin and end a row.
    virtual void BeginRow() = 0;
    virtual void EndRow() = 0;
    // Adds a cell to the row or header.
    //   text   in the format's own markup; null is a blank cell
    //   align  only its low four bits count: 1 right, 2 centre, anything else as the format has it
    virtual void AddCell(const char* text, int align) = 0;

protected:
    // Writes the text, without its terminator, to the file. Null writes nothing.
    virtual void Put(const char* text);

private:
    CQELFile& file_;
};

inline CQELTableBuilder::CQELTableBuilder(CQELFile& file) : file_(file) {}

// A table on the screen, in a list control. Programs that have such a control implement it; the
// library does not.
class QELKIT_API CQELListCtrlBuilder {
public:
    // A column: its `title` and alignment, `align`, in the terms of the program's control.
    virtual void AddColumn(const char* title, int align) = 0;
    // The `text` in a `row` and `column`.
    virtual void AddItem(int row, int column, const char* text) = 0;

protected:
    ~CQELListCtrlBuilder() = default;  // not virtual: nobody deletes through this interface
};
