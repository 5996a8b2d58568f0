#include "report/html_table_builder.h"

#include <cstddef>
#include <exception>
#include <string>

#include "platform/windows.h"

static_assert(sizeof(CQELHTMLTableBuilder) == 24, "part of the binary interface");

namespace {

constexpr char kHeadStart[] = "<html>\n<meta http-equiv=\"Content-Type\" content=\"text/html";
constexpr char kHeadEnd[] = "\">\n<body bgcolor=ffffff>\n<table border>\n";
constexpr char kTail[] = "</table>\n</body>\n</html>\n";
constexpr char kBlank[] = "&nbsp;";

// "; charset=windows-1251" for the ANSI code page of the system's locale; empty when the locale
// does not tell it.
std::string CharacterSet() {
    char code_page[16];
    const int got = ::GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE, code_page,
                                     sizeof code_page);
    return got > 0 ? std::string("; charset=windows-") + code_page : std::string();
}

const char* AlignAttribute(int align) {
    constexpr int kRight = 1, kCentre = 2;
    switch (align & 15) {
        case kRight:
            return " align=right";
        case kCentre:
            return " align=center";
        default:
            return "";
    }
}

// Joins the parts in `to`, terminated. Returns false when they have no room there. Cells are short:
// a plain loop is done before a call for the length of a part, and another for its copy, would be.
template <std::size_t N, std::size_t kRoom>
bool Join(const char* const (&parts)[N], char (&to)[kRoom]) {
    char* at = to;
    char* const last = to + kRoom - 1;
    for (const char* part : parts) {
        for (; *part; ++part) {
            if (at == last) return false;
            *at++ = *part;
        }
    }
    *at = '\0';
    return true;
}

}  // namespace

CQELHTMLTableBuilder::CQELHTMLTableBuilder(CQELFile& file) : CQELTableBuilder(file), in_header_(0) {
    Put((kHeadStart + CharacterSet() + kHeadEnd).c_str());
}

CQELHTMLTableBuilder::~CQELHTMLTableBuilder() noexcept(false) {
    try {
        Put(kTail);
    } catch (...) {
        // A second exception on its way would end the process.
        if (std::uncaught_exceptions() == 0) throw;
    }
}

void CQELHTMLTableBuilder::BeginHeader() {
    Put("<tr bgcolor=bbd4e4 valign=middle>\n");
    in_header_ = 1;
}

void CQELHTMLTableBuilder::EndHeader() {
    Put("</tr>\n");
    in_header_ = 0;
}

void CQELHTMLTableBuilder::BeginRow() { Put("<tr>\n"); }
void CQELHTMLTableBuilder::EndRow() { Put("</tr>\n"); }

void CQELHTMLTableBuilder::AddCell(const char* text, int align) {
    const char* const parts[] = {in_header_ ? "<th" : "<td", AlignAttribute(align), ">",
                                 IsBlankString(text) ? kBlank : text,
                                 in_header_ ? "</th>\n" : "</td>\n"};
    // One call of the file takes longer than all of the joining.
    char cell[512];
    if (Join(parts, cell)) return Put(cell);
    for (const char* const part : parts) Put(part);
}

bool CQELHTMLTableBuilder::IsBlankString(const char* text) {
    if (!text) return true;
    while (*text == ' ' || *text == '\t') ++text;
    return *text == '\0';
}
