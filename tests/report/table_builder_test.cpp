#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "file_com/qel_file.h"
#include "report/html_table_builder.h"
#include "report/table_builder_c.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

const std::string kHead =
    "<html>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1251\">\n"
    "<body bgcolor=ffffff>\n<table border>\n";
const std::string kTail = "</table>\n</body>\n</html>\n";

TEST(HtmlTableBuilder, WritesItsPageByteForByte) {
    const TempFolder folder;
    {
        CQELFile file((folder / "page").c_str(), "wb", true);
        CQELHTMLTableBuilder builder(file);
        builder.BeginHeader();
        builder.AddCell("Name", 0);
        builder.AddCell(nullptr, 1);
        builder.EndHeader();
        builder.BeginRow();
        builder.AddCell("<b>\xDF</b>", 0x12);
        builder.AddCell(" \t", 1);
        for (std::size_t size = 495; size < 515; ++size) {  // around the room of its buffer
            builder.AddCell(std::string(size, 'x').c_str(), 3);
        }
        builder.EndRow();
    }
    std::string expected = kHead +
                           "<tr bgcolor=bbd4e4 valign=middle>\n<th>Name</th>\n"
                           "<th align=right>&nbsp;</th>\n</tr>\n"
                           "<tr>\n<td align=center><b>\xDF</b></td>\n<td align=right>&nbsp;</td>\n";
    for (std::size_t size = 495; size < 515; ++size) {
        expected += "<td>" + std::string(size, 'x') + "</td>\n";
    }
    EXPECT_EQ(expected + "</tr>\n" + kTail, folder.Read("page"));
}

TEST(TableBuilderFunctions, WriteTheSamePageInTextMode) {
    const TempFolder folder;
    QEL_TableBuilder* table = nullptr;
    ASSERT_EQ(0, QEL_TableBuilder_Create((folder / "page").c_str(), QEL_TABLE_HTML, &table));
    for (const auto call :
         {QEL_TableBuilder_BeginHeader, QEL_TableBuilder_EndHeader, QEL_TableBuilder_BeginRow}) {
        EXPECT_EQ(0, call(table));
        EXPECT_EQ(0, QEL_TableBuilder_AddCell(table, "1", 2));
    }
    EXPECT_EQ(0, QEL_TableBuilder_EndRow(table));
    EXPECT_EQ(0, QEL_TableBuilder_Close(table));
    std::string page = folder.Read("page");
    EXPECT_EQ(std::count(page.begin(), page.end(), '\n'),
              std::count(page.begin(), page.end(), '\r'));
    page.erase(std::remove(page.begin(), page.end(), '\r'), page.end());
    const std::string cell = "<td align=center>1</td>\n";
    EXPECT_EQ(kHead + "<tr bgcolor=bbd4e4 valign=middle>\n<th align=center>1</th>\n</tr>\n" + cell +
                  "<tr>\n" + cell + "</tr>\n" + kTail,
              page);
}

TEST(TableBuilderFunctions, RefuseBadArguments) {
    const TempFolder folder;
    auto* const something = reinterpret_cast<QEL_TableBuilder*>(1);
    QEL_TableBuilder* table = something;
    EXPECT_EQ(28, QEL_TableBuilder_Create(nullptr, 1, &table));
    EXPECT_EQ(something, table);
    EXPECT_EQ(28, QEL_TableBuilder_Create((folder / "a").c_str(), 1, nullptr));
    EXPECT_FALSE(folder.Has("a"));
    EXPECT_EQ(28, QEL_TableBuilder_Create((folder / "b").c_str(), 2, &table));
    EXPECT_EQ(nullptr, table);
    EXPECT_EQ("", folder.Read("b"));
    HeldFile(folder / "b");  // nobody has it open
    for (const auto call :
         {QEL_TableBuilder_BeginHeader, QEL_TableBuilder_EndHeader, QEL_TableBuilder_BeginRow,
          QEL_TableBuilder_EndRow, QEL_TableBuilder_Close}) {
        EXPECT_EQ(28, call(nullptr));
    }
    EXPECT_EQ(28, QEL_TableBuilder_AddCell(nullptr, "", 0));
}

TEST(TableBuilderFunctions, ReportFilesThatCannotBeWritten) {
    const TempFolder folder;
    QEL_TableBuilder* table = nullptr;
    EXPECT_EQ(8, QEL_TableBuilder_Create((folder / "no\\page").c_str(), 1, &table));
    EXPECT_EQ(117, QEL_TableBuilder_Create("Q:\\page", 1, &table));
    EXPECT_EQ(nullptr, table);

    ASSERT_EQ(0, QEL_TableBuilder_Create("Z:\\dev\\full", 1, &table));  // a full disk
    EXPECT_EQ(120, QEL_TableBuilder_Close(table));
    ASSERT_EQ(0, QEL_TableBuilder_Create("Z:\\dev\\full", 1, &table));
    EXPECT_EQ(6, QEL_TableBuilder_AddCell(table, std::string(100000, 'x').c_str(), 0));
    EXPECT_NE(0, QEL_TableBuilder_Close(table));
}

bool g_disk_is_full = false;

std::size_t WriteWhileThereIsRoom(const void* data, std::size_t size, std::size_t n, FILE* file) {
    return g_disk_is_full ? 0 : std::fwrite(data, size, n, file);
}

TEST(HtmlTableBuilder, FailsInItsDestructorUnlessSomethingElseDoes) {
    const TempFolder folder;
    const ImportPatch patch(kLibrary, "fwrite", &WriteWhileThereIsRoom);
    CQELFile file((folder / "page").c_str(), "wb", true);
    const auto end_page = [&](bool while_throwing) {
        g_disk_is_full = false;
        const CQELHTMLTableBuilder builder(file);
        g_disk_is_full = true;
        if (while_throwing) throw 5;
    };
    EXPECT_THROW(end_page(false), XQELFile);
    EXPECT_THROW(end_page(true), int);
}

}  // namespace
