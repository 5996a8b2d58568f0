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

const unsigned char* Bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

std::size_t Count(int n) { return n > 0 ? static_cast<std::size_t>(n) : 0; }

int Index(std::size_t at) { return at == std::string_view::npos ? -1 : static_cast<int>(at); }

// Compares two texts that are there; a string that is empty, or a null, decides before that.
// Quirk: an empty string is below "", not equal to it, in == as well: callers tell a value that is
// missing from one that is empty. Pinned by Comparison.EqualityTellsEmptyFromAnEmptyText.
template <typename Order>
int CompareWith(const CQELString& string, const char* s, Order order) {
    if (string.IsEmpty()) return s ? -1 : 0;
    return s ? order(Bytes(string), Bytes(s)) : 1;
}

std::uint64_t Load64(const char* text) {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

// Most texts are names: for those of 8 to 16 bytes a call would cost more than the comparison.
bool SameBytes(const char* a, const char* b, std::size_t size) {
    if (size < 8 || size > 16) return std::memcmp(a, b, size) == 0;
    return Load64(a) == Load64(b) && Load64(a + size - 8) == Load64(b + size - 8);
}

// -1, 0 or 1, by the characters of the process's multi-byte code page.
int CompareTexts(std::string_view a, std::string_view b) {
    const std::size_t at = kit::PartingIndex(a, b);
    const unsigned char x = *Bytes(a.data() + at);
    const unsigned char y = *Bytes(b.data() + at);
    if (x == y) return 0;
    // The bytes decide unless one of them begins a character of two, which is above all others.
    const bool may_lead = x >= 0x80 || y >= 0x80;
    if (may_lead && kit::HasDoubleByteCharacters()) {
        return ::_mbscmp(Bytes(a.data()), Bytes(b.data()));
    }
    return x < y ? -1 : 1;
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

// --- The body --------------------------------------------------------------------------------

CQELString::CQELStringImp::~CQELStringImp() {
    const bool inside = text_ == reinterpret_cast<char*>(this + 1);
    if (!inside) std::free(text_);
}

void* CQELString::CQELStringImp::operator new(std::size_t size) noexcept {
    return std::malloc(size);
}

void CQELString::CQELStringImp::operator delete(void* body) noexcept { std::free(body); }

// --- Construction and assignment -------------------------------------------------------------

CQELString::CQELString(const char* s) : body_(kit::NewBody(TextOf(s))) {}

CQELString::CQELString(const char* s, std::uint64_t n)
    : body_(s && n > 0 && *s ? kit::NewBody({s, n}) : nullptr) {}

CQELString::CQELString(char c) : body_(kit::NewBody({&c, 1})) {}

CQELString::CQELString(int id, const char* module) : body_(nullptr) { LoadStringA(id, module); }

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
    if (IsEmpty()) return *this = s;
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
    if (IsEmpty()) return s;
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
    if (body_ == s.body_) return true;
    if (IsEmpty() || s.IsEmpty()) return IsEmpty() && s.IsEmpty();
    const std::string_view a = TextOf(body_), b = TextOf(s.body_);
    // Other bytes may stand behind a zero.
    return (a.size() == b.size() && SameBytes(a.data(), b.data(), a.size())) ||
           CompareTexts(a, b) == 0;
}

bool CQELString::operator==(const char* s) const { return Compare(s) == 0; }

// Quirk: an empty string stands in no order with any other, so that sorted containers cannot hold
// one beside others; callers keep them apart. Pinned by Comparison.LetsEmptinessDecideBeforeAnyText.
bool CQELString::operator<(const CQELString& s) const {
    return !IsEmpty() && !s.IsEmpty() && CompareTexts(TextOf(body_), TextOf(s.body_)) < 0;
}

bool CQELString::operator>(const CQELString& s) const { return s < *this; }

int CQELString::Compare(const char* s, bool no_case) const {
    return CompareWith(*this, s, [&](const unsigned char* text, const unsigned char* other) {
        return no_case ? ::_mbsicmp(text, other) : CompareTexts(TextOf(body_), s);
    });
}

int CQELString::Collate(const char* s, bool no_case) const {
    return CompareWith(*this, s, [=](const unsigned char* text, const unsigned char* other) {
        const RussianLocale russian;
        return no_case ? ::_mbsicoll(text, other) : ::_mbscoll(text, other);
    });
}

// --- Search ----------------------------------------------------------------------------------

int CQELString::Find(char c) const { return Index(kit::FindBytes(TextOf(body_), {&c, 1})); }

int CQELString::ReverseFind(char c) const { return Index(TextOf(body_).rfind(c)); }

int CQELString::Find(const char* s) const {
    if (!s || IsEmpty()) return -1;
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
