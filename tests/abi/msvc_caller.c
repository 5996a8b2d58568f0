/* A caller in C with the Microsoft ABI and without any runtime library: builds report.html in the
   working folder and leaves the number of the first line that went wrong, 0 when none did. */
#include "report/table_builder_c.h"

#define EXPECT(condition) \
    if (!(condition)) return __LINE__

static int SameText(const char* a, const char* b) {
    while (*a && *a == *b) ++a, ++b;
    return *a == *b;
}

static int EscapesText(void) {
    char escaped[12];
    const unsigned long room = QEL_HtmlEscape("a<b>&", 0, 0);
    EXPECT(room == 16);
    escaped[0] = 'x';
    EXPECT(QEL_HtmlEscape("a<b>&", escaped, sizeof escaped) == room && escaped[0] == 'x');
    EXPECT(QEL_HtmlEscape("1<2", escaped, sizeof escaped) == 7 && SameText(escaped, "1&lt;2"));
    return 0;
}

static int BuildsTable(void) {
    QEL_TableBuilder* table;
    EXPECT(QEL_TableBuilder_BeginRow(0) == 28);
    EXPECT(QEL_TableBuilder_Create("report.html", 2, &table) == 28 && table == 0);
    EXPECT(QEL_TableBuilder_Create("report.html", QEL_TABLE_HTML, &table) == 0 && table != 0);
    EXPECT(QEL_TableBuilder_BeginHeader(table) == 0);
    EXPECT(QEL_TableBuilder_AddCell(table, "Name", 0) == 0);
    EXPECT(QEL_TableBuilder_EndHeader(table) == 0);
    EXPECT(QEL_TableBuilder_BeginRow(table) == 0);
    EXPECT(QEL_TableBuilder_AddCell(table, "from another compiler", 1) == 0);
    EXPECT(QEL_TableBuilder_EndRow(table) == 0);
    EXPECT(QEL_TableBuilder_Close(table) == 0);
    return 0;
}

int Start(void) {
    const int line = EscapesText();
    return line ? line : BuildsTable();
}
