/* report TABLE.csv REPORT.html: turns a table of comma-separated values into a page of HTML.

   The first line holds the titles. Fields are separated by commas, or by semicolons if the first
   line has one; a field in double quotes may hold separators, line ends and doubled quotes. Numbers
   go to the right. The text is UTF-8 or in the system's ANSI code page.

   Ends with 0, or with 1 and a message. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <report/table_builder_c.h>

#include <windows.h>

enum { ALIGN_LEFT = 0, ALIGN_RIGHT = 1 };

/* --- Reading -------------------------------------------------------------------------------- */

/* The bytes of a file and a terminator; null when it cannot be read. */
static char* read_file(const char* path) {
    FILE* file = fopen(path, "rb");
    char* text = NULL;
    long size;
    if (!file) return NULL;
    if (fseek(file, 0, SEEK_END) == 0 && (size = ftell(file)) >= 0) {
        rewind(file);
        text = malloc((size_t)size + 1);
        if (text && fread(text, 1, (size_t)size, file) == (size_t)size) {
            text[size] = '\0';
        } else {
            free(text);
            text = NULL;
        }
    }
    fclose(file);
    return text;
}

/* Text from one code page to another; null when it is not text in the first. */
static char* convert(const char* text, UINT from, UINT to) {
    const int wide_size = MultiByteToWideChar(from, MB_ERR_INVALID_CHARS, text, -1, NULL, 0);
    wchar_t* wide = wide_size > 0 ? malloc(sizeof(wchar_t) * (size_t)wide_size) : NULL;
    char* result = NULL;
    if (wide) {
        MultiByteToWideChar(from, MB_ERR_INVALID_CHARS, text, -1, wide, wide_size);
        const int size = WideCharToMultiByte(to, 0, wide, -1, NULL, 0, NULL, NULL);
        result = size > 0 ? malloc((size_t)size) : NULL;
        if (result) WideCharToMultiByte(to, 0, wide, -1, result, size, NULL, NULL);
    }
    free(wide);
    return result;
}

/* Text as the library wants it, in the ANSI code page. Takes `text` over. */
static char* to_ansi(char* text) {
    static const char byte_order_mark[] = "\xEF\xBB\xBF";
    const size_t skip = strncmp(text, byte_order_mark, 3) == 0 ? 3 : 0;
    char* const ansi = convert(text + skip, CP_UTF8, CP_ACP);
    if (!ansi) return text; /* no UTF-8: it is in the ANSI code page */
    free(text);
    return ansi;
}

static char separator_of(const char* text) {
    const size_t first_line = strcspn(text, "\r\n");
    return memchr(text, ';', first_line) ? ';' : ',';
}

/* Takes the next field: unquotes it in place and terminates it. *end is what ended it: the separator,
   a line feed, or 0 at the end of the text. Returns where the next one begins. */
static char* next_field(char* text, char separator, char* end) {
    char* to = text;
    int quoted = 0;
    for (; *text && (quoted || (*text != separator && *text != '\n')); ++text) {
        if (*text == '"') {
            if (quoted && text[1] == '"') {
                *to++ = *++text;
            } else {
                quoted = !quoted;
            }
        } else if (quoted || *text != '\r') {
            *to++ = *text;
        }
    }
    *end = *text;
    if (*text) ++text;
    *to = '\0';
    return text;
}

/* --- Writing -------------------------------------------------------------------------------- */

static int is_number(const char* text) {
    char* end;
    strtod(text, &end);
    return end != text && end[strspn(end, " %")] == '\0';
}

static int add_cell(QEL_TableBuilder* table, const char* text) {
    const unsigned long room = QEL_HtmlEscape(text, NULL, 0);
    char* const html = room > 0 ? malloc(room) : NULL;
    int status;
    if (!html) return 16; /* out of memory */
    QEL_HtmlEscape(text, html, room);
    status = QEL_TableBuilder_AddCell(table, html, is_number(text) ? ALIGN_RIGHT : ALIGN_LEFT);
    free(html);
    return status;
}

/* One line of the text as a row or as the header; counts its cells. */
static int add_line(QEL_TableBuilder* table, char** text, char separator, int is_header,
                    unsigned long* cells) {
    char end = separator;
    int status = is_header ? QEL_TableBuilder_BeginHeader(table) : QEL_TableBuilder_BeginRow(table);
    while (status == 0 && end == separator) {
        char* const field = *text;
        *text = next_field(field, separator, &end);
        status = add_cell(table, field);
        ++*cells;
    }
    if (status != 0) return status;
    return is_header ? QEL_TableBuilder_EndHeader(table) : QEL_TableBuilder_EndRow(table);
}

static int write_report(const char* path, char* text) {
    const char separator = separator_of(text);
    unsigned long rows = 0, cells = 0;
    QEL_TableBuilder* table;
    int closed, status = QEL_TableBuilder_Create(path, QEL_TABLE_HTML, &table);
    if (status != 0) return status;
    for (; status == 0 && *text; ++rows) {
        status = add_line(table, &text, separator, rows == 0, &cells);
    }
    closed = QEL_TableBuilder_Close(table);
    if (status == 0) status = closed;
    if (status == 0) printf("%s: %lu lines, %lu cells\n", path, rows, cells);
    return status;
}

int main(int argc, char** argv) {
    char* text;
    int status;
    if (argc != 3) {
        printf("usage: report TABLE.csv REPORT.html\n");
        return 1;
    }
    text = read_file(argv[1]);
    if (!text) {
        printf("failed: %s cannot be read\n", argv[1]);
        return 1;
    }
    text = to_ansi(text);
    status = write_report(argv[2], text);
    free(text);
    if (status != 0) printf("failed: %s cannot be written (status %d)\n", argv[2], status);
    return status == 0 ? 0 : 1;
}
