#ifndef QELKIT_REPORT_TABLE_BUILDER_C_H
#define QELKIT_REPORT_TABLE_BUILDER_C_H

#include "base/export.h"

/* The table builders for callers that cannot use classes, C among them. Compiles as C99 and C++.

       QEL_TableBuilder* table;
       int status = QEL_TableBuilder_Create("report.html", QEL_TABLE_HTML, &table);
       if (status == 0) {
           status = QEL_TableBuilder_BeginRow(table);
           ...
           closed = QEL_TableBuilder_Close(table);
       }

   All functions return a status: 0, or what failed; GetErrorString has the text. No exception leaves
   them. A null handle gives 28. One handle belongs to one thread at a time. */

#ifdef __cplusplus
extern "C" {
#endif

/* A table that is being written. */
typedef struct QEL_TableBuilder QEL_TableBuilder;

/* The types of tables. */
enum { QEL_TABLE_HTML = 1 /* a page of HTML */ };

/* Creates the file, in text mode, replacing one that is there, and begins the page.
     type  1 HTML; any other gives 28 and leaves an empty file
     out   becomes the handle, which QEL_TableBuilder_Close frees; null on failure
   28 when `fileName` or `out` is null, 16 when memory runs out, the file's status when it cannot be
   created or written (117 when its drive is not there). Failure leaves nothing open. */
QELKIT_API int QEL_TableBuilder_Create(const char* fileName, int type, QEL_TableBuilder** out);

/* The calls of the builder: optionally BeginHeader, cells, EndHeader; then rows of BeginRow, cells,
   EndRow. The order is not checked. A failed write gives its status, and the table can go on. */
QELKIT_API int QEL_TableBuilder_BeginHeader(QEL_TableBuilder* table);
QELKIT_API int QEL_TableBuilder_EndHeader(QEL_TableBuilder* table);
QELKIT_API int QEL_TableBuilder_BeginRow(QEL_TableBuilder* table);
QELKIT_API int QEL_TableBuilder_EndRow(QEL_TableBuilder* table);

/*   text   markup, in the system's ANSI code page; null or blanks make a blank cell. Plain text goes
            through QEL_HtmlEscape first.
     align  only its low four bits count: 1 right, 2 centre, anything else left */
QELKIT_API int QEL_TableBuilder_AddCell(QEL_TableBuilder* table, const char* text, int align);

/* Ends the page, brings it to the disk, closes the file and frees the handle, which is gone whatever
   the result is. The first failure is returned: only 0 says that all of the page is in the file. */
QELKIT_API int QEL_TableBuilder_Close(QEL_TableBuilder* table);

/* Turns plain text into HTML text, with &amp; &lt; &gt; &quot; and &#39; for the characters that mean
   something there. Any code page in which these are bytes of their own will do.
     text     null counts as ""
     out      room for `outSize` bytes, or null to ask for the room; must not overlap `text`
   Returns the room that the result takes, its terminator included. When that is more than `outSize`
   nothing is written. 0 when it is more than 32 bits can say; nothing is written then either. */
QELKIT_API unsigned long QEL_HtmlEscape(const char* text, char* out, unsigned long outSize);

#ifdef __cplusplus
}
#endif

#endif
