// A report of 10,000 rows of 10 cells beside a program that knows the page's bytes and writes them
// with fwrite, cell by cell.

#include <cstdio>
#include <string>
#include <vector>

#include "file_com/qel_file.h"
#include "report/html_table_builder.h"
#include "report/table_builder_c.h"
#include "support/wine_bench.h"

namespace {

constexpr int kRows = 10000, kColumns = 10;
constexpr char kFile[] = "report_bench.html";

std::string CellText(int row, int column) {
    return "value " + std::to_string(row) + "-" + std::to_string(column);
}

std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) texts.push_back(CellText(row, column));
    }
    return texts;
}

// The page as the pieces that a careful program would write.
std::vector<std::string> Pieces(const std::vector<std::string>& texts) {
    std::vector<std::string> pieces;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i % kColumns == 0) pieces.emplace_back("<tr>\n");
        pieces.push_back("<td>" + texts[i] + "</td>\n");
        if (i % kColumns == kColumns - 1) pieces.emplace_back("</tr>\n");
    }
    return pieces;
}

void WriteWithBuilder(const std::vector<std::string>& texts) {
    CQELFile file(kFile, "wb", true);
    CQELHTMLTableBuilder builder(file);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i % kColumns == 0) builder.BeginRow();
        builder.AddCell(texts[i].c_str(), 0);
        if (i % kColumns == kColumns - 1) builder.EndRow();
    }
}

void WriteWithFwrite(const std::vector<std::string>& pieces) {
    FILE* const file = std::fopen(kFile, "wb");
    for (const auto& piece : pieces) std::fwrite(piece.data(), 1, piece.size(), file);
    std::fclose(file);
}

}  // namespace

int main() {
    const auto texts = Texts();
    const auto pieces = Pieces(texts);
    double bytes = 0;
    for (const auto& piece : pieces) bytes += static_cast<double>(piece.size());
    WineBench bench;
    bench.Run(
        "report/10000 rows of 10 cells/qelkit", [&] { WriteWithBuilder(texts); }, bytes);
    bench.Run(
        "report/10000 rows of 10 cells/fwrite", [&] { WriteWithFwrite(pieces); }, bytes);
    std::remove(kFile);
    return bench.Print();
}
