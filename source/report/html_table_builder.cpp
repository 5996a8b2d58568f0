#include "report/html_table_builder.h"

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

// Joins short texts in a buffer of its own, so that the file is called once for all of them.
class ShortText {
public:
    // Returns false, and adds nothing, when there is no room.
    bool Add(const char* text) {
        const std::size_t length = std::strlen(text);
        if (length >= sizeof text_ - length_) return false;
        std::memcpy(text_ + length_, text, length + 1);
        length_ += length;
        return true;
    }
    const char* get() const { return text_; }

private:
    char text_[512] = "";
    std::size_t length_ = 0;
};

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
    PutCell(in_header_ ? "th" : "td", AlignAttribute(align), IsBlankString(text) ? kBlank : text);
}

void CQELHTMLTableBuilder::PutCell(const char* kind, const char* align, const char* text) {
    ShortText cell;
    for (const char* part : {"<", kind, align, ">"}) cell.Add(part);
    if (!cell.Add(text)) {
        Put(cell.get());
        Put(text);
        cell = ShortText();
    }
    ShortText end;
    for (const char* part : {"</", kind, ">\n"}) end.Add(part);
    if (!cell.Add(end.get())) {
        Put(cell.get());
        cell = end;
    }
    Put(cell.get());
}

bool CQELHTMLTableBuilder::IsBlankString(const char* text) {
    return !text || text[std::strspn(text, " \t")] == '\0';
}
