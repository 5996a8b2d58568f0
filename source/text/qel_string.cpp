#include "text/qel_string.h"

#include <mbstring.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/multibyte.h"
#include "text/c_text.h"
#include "text/detail/byte_search.h"
#include "text/detail/string_body.h"

static_assert(sizeof(CQELString) == 16, "the table of virtual functions and the body");
static_assert(sizeof(CQELString::CQELStringImp) == 32, "the count, the text and its length");

namespace {

using kit::TextOf;

const unsigned char* Bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

std::size_t Count(int n) { return n > 0 ? static_cast<std::size_t>(n) : 0; }

int Index(std::size_t at) { return at == std::string_view::npos ? -1 : static_cast<int>(at); }

// How a string that may be empty compares with a C string that may be null: decided before any
// text is looked at.
bool DecidedByEmptiness(const CQELString& string, const char* s, int& result) {
    if (!string.IsEmpty() && s) return false;
    result = string.IsEmpty() ? (s ? -1 : 0) : 1;
    return true;
}

// -1, 0 or 1, by the characters of the process's multi-byte code page.
int CompareTexts(const char* a, const char* b) {
    if (kit::HasDoubleByteCharacters()) return ::_mbscmp(Bytes(a), Bytes(b));
    const int order = std::strcmp(a, b);
    return (order > 0) - (order < 0);
}

// Russian collation for the whole process, for as long as this lives.
class RussianLocale {
public:
    // setlocale hands out a buffer of its own that the next call overwrites.
    RussianLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
        std::setlocale(LC_ALL, "Russian_Russia.1251");
    }
    ~RussianLocale() { std::setlocale(LC_ALL, before_.c_str()); }
    RussianLocale(const RussianLocale&) = delete;
    RussianLocale& operator=(const RussianLocale&) = delete;

private:
    std::string before_;
};

}  // namespace

CQELString::CQELStringImp::~CQELStringImp() { std::free(text_); }

// --- Construction and assignment -------------------------------------------------------------

CQELString::CQELString(const char* s) : body_(kit::NewBody(TextOf(s))) {}

CQELString::CQELString(const char* s, std::uint64_t n)
    : body_(s && n > 0 && *s ? kit::NewBody({s, n}) : nullptr) {}

CQELString::CQELString(char c) : body_(kit::NewBody({&c, 1})) {}

CQELString::CQELString(int id, const char* module) : body_(nullptr) { LoadStringA(id, module); }

CQELString::CQELString(const CQELString& other) : body_(other.body_) {
    if (body_) body_->AddRef();
}

CQELString::~CQELString() {
    if (body_) body_->Release();
}

CQELString& CQELString::operator=(const CQELString& other) {
    if (other.body_) other.body_->AddRef();  // first: it may be our own
    kit::SetBody(body_, other.body_);
    return *this;
}

CQELString& CQELString::operator=(const char* s) {
    if (body_ && s == body_->text_) return *this;
    kit::SetBody(body_, kit::NewBody(TextOf(s)));  // the copy first: `s` may lie in our own text
    return *this;
}

// --- Access ----------------------------------------------------------------------------------

CQELString::operator const char*() const { return TextOf(body_).data(); }

char CQELString::operator[](int index) const {
    return index < 0 ? '\0' : (*this)[static_cast<std::uint64_t>(index)];
}

char CQELString::operator[](std::uint64_t index) const {
    const std::string_view text = TextOf(body_);
    return index < text.size() ? text[index] : '\0';
}

int CQELString::Length() const { return body_ ? body_->length_ : 0; }

bool CQELString::IsValidString() const { return !body_ || QELIsValidString(body_->text_, -1) != 0; }

void CQELString::Empty() { kit::SetBody(body_, nullptr); }

void CQELString::Load(const unsigned char* data, unsigned int n) {
    const char* const text = reinterpret_cast<const char*>(data);
    kit::SetBody(body_, data ? kit::NewBody({text, ::strnlen(text, n)}) : nullptr);
}

void CQELString::Save(unsigned int& n, unsigned char*& data) const {
    n = static_cast<unsigned int>(Length());
    data = const_cast<unsigned char*>(Bytes(*this));
}

// --- Concatenation ---------------------------------------------------------------------------

CQELString& CQELString::operator+=(const CQELString& s) {
    if (!body_) return *this = s;
    if (kit::StringBody* const joined = kit::NewBody(TextOf(body_), TextOf(s.body_))) {
        kit::SetBody(body_, joined);
    }
    return *this;
}

CQELString& CQELString::operator+=(const char* s) {
    if (kit::StringBody* const joined = kit::NewBody(TextOf(body_), TextOf(s))) {
        kit::SetBody(body_, joined);
    }
    return *this;
}

CQELString& CQELString::operator+=(char c) {
    if (kit::StringBody* const joined = kit::NewBody(TextOf(body_), {&c, 1})) {
        kit::SetBody(body_, joined);
    }
    return *this;
}

CQELString CQELString::operator+(const CQELString& s) const {
    if (!body_) return s;
    CQELString sum;
    sum.body_ = kit::NewBody(TextOf(body_), TextOf(s.body_));
    return sum;
}

CQELString CQELString::operator+(const char* s) const {
    CQELString sum;
    sum.body_ = kit::NewBody(TextOf(body_), TextOf(s));
    return sum;
}

CQELString CQELString::operator+(char c) const {
    CQELString sum;
    sum.body_ = kit::NewBody(TextOf(body_), {&c, 1});
    return sum;
}

// --- Comparison ------------------------------------------------------------------------------

bool CQELString::operator==(const CQELString& s) const {
    if (IsEmpty() || s.IsEmpty()) return IsEmpty() && s.IsEmpty();
    return body_ == s.body_ || CompareTexts(*this, s) == 0;
}

bool CQELString::operator==(const char* s) const { return Compare(s) == 0; }

bool CQELString::operator<(const CQELString& s) const {
    return !IsEmpty() && !s.IsEmpty() && CompareTexts(*this, s) < 0;
}

bool CQELString::operator>(const CQELString& s) const {
    return !IsEmpty() && !s.IsEmpty() && CompareTexts(*this, s) > 0;
}

int CQELString::Compare(const char* s, bool no_case) const {
    int result;
    if (DecidedByEmptiness(*this, s, result)) return result;
    return no_case ? ::_mbsicmp(Bytes(*this), Bytes(s)) : CompareTexts(*this, s);
}

int CQELString::Collate(const char* s, bool no_case) const {
    int result;
    if (DecidedByEmptiness(*this, s, result)) return result;
    const RussianLocale russian;
    return no_case ? ::_mbsicoll(Bytes(*this), Bytes(s)) : ::_mbscoll(Bytes(*this), Bytes(s));
}

// --- Search ----------------------------------------------------------------------------------

int CQELString::Find(char c) const { return Index(TextOf(body_).find(c)); }

int CQELString::ReverseFind(char c) const { return Index(TextOf(body_).rfind(c)); }

int CQELString::Find(const char* s) const {
    if (!s || !body_) return -1;
    return Index(kit::FindBytes(TextOf(body_), s));
}

int CQELString::FindNocase(const char* s) const {
    if (!s) return -1;
    CQELString text(static_cast<const char*>(*this));
    CQELString wanted(s);
    return text.MakeLower().Find(wanted.MakeLower());
}

CQELString CQELString::SpanExcluding(const char* set) const {
    const kit::ByteSet excluded(set);
    const std::string_view text = TextOf(body_);
    std::size_t n = 0;
    while (n < text.size() && !excluded.Has(text[n])) ++n;
    return Left(static_cast<int>(n));
}

// --- Parts -----------------------------------------------------------------------------------

CQELString CQELString::Left(int n) const { return Mid(0, n); }

CQELString CQELString::Right(int n) const {
    const int wanted = n < Length() ? n : Length();
    return Mid(Length() - wanted, wanted);
}

CQELString CQELString::Mid(int pos, int n) const {
    const std::string_view text = TextOf(body_);
    CQELString part;
    if (Count(pos) < text.size()) part.body_ = kit::NewBody(text.substr(Count(pos), Count(n)));
    return part;
}
