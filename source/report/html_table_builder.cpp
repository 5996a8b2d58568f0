#include "report/html_table_builder.h"

#include <cstddef>
#include <cstring>
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

// A piece of markup, copied as a whole: that is done before its length would be known.
struct Tag {
    char text[24];
    std::size_t length;

    char* CopyTo(char* to) const {
        std::memcpy(to, text, sizeof text);
        return to + length;
    }
};

template <std::size_t N>
constexpr Tag MakeTag(const char (&text)[N]) {
    Tag tag{};
    static_assert(N <= sizeof tag.text);
    for (std::size_t i = 0; i < N; ++i) tag.text[i] = text[i];
    tag.length = N - 1;
    return tag;
}

// For cells of rows and of the header: left, right, centre.
constexpr Tag kBeginCell[2][3] = {
    {MakeTag("<td>"), MakeTag("<td align=right>"), MakeTag("<td align=center>")},
    {MakeTag("<th>"), MakeTag("<th align=right>"), MakeTag("<th align=center>")},
};
constexpr Tag kEndCell[2] = {MakeTag("</td>\n"), MakeTag("</th>\n")};

std::size_t AlignmentOf(int align) {
    const auto wanted = static_cast<std::size_t>(align & 15);
    return wanted < 3 ? wanted : 0;
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
    const Tag& begin = kBeginCell[in_header_][AlignmentOf(align)];
    const Tag& end = kEndCell[in_header_];
    if (IsBlankString(text)) text = kBlank;
    // In one piece where it fits: one call of the file takes longer than all of the joining.
    char cell[512];
    char* at = begin.CopyTo(cell);
    const char* const last = cell + sizeof cell - sizeof end.text;
    const char* from = text;
    while (*from && at != last) *at++ = *from++;
    if (*from == '\0') {
        end.CopyTo(at);
        return Put(cell);
    }
    Put(begin.text);
    Put(text);
    Put(end.text);
}

bool CQELHTMLTableBuilder::IsBlankString(const char* text) {
    if (!text) return true;
    while (*text == ' ' || *text == '\t') ++text;
    return *text == '\0';
}
