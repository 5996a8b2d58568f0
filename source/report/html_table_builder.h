#pragma once

#include "base/export.h"
#include "base/types.h"
#include "report/table_builder.h"

// A table as a page of HTML, in the system's ANSI code page. The page begins with the constructor
// and ends with the destructor. Lines end with a line feed (a file in text mode makes two bytes of
// it).
//
// Texts of cells are written as they are, so that they may hold markup. Plain text goes through
// QEL_HtmlEscape (table_builder_c.h) first, or else its "<" and "&" become markup.
class QELKIT_API CQELHTMLTableBuilder : public CQELTableBuilder {
public:
    // Writes the beginning of the page to `file`, which is open for writing.
    explicit CQELHTMLTableBuilder(CQELFile& file);
    ~CQELHTMLTableBuilder() noexcept(false) override;

    // Write the tags of a row; cells are titles from BeginHeader to EndHeader.
    void BeginHeader() override;
    void EndHeader() override;
    void BeginRow() override;
    void EndRow() override;
    // A cell with a blank text holds a non-breaking blank.
    void AddCell(const char* text, int align) override;

    // Whether the text is null or has nothing but blanks and tabs.
    static bool IsBlankString(const char* text);

private:
    ulong32 in_header_ : 1;
};
