#include <string.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/path_text.h"
#include "platform/multibyte.h"
#include "text/detail/byte_search.h"
#include "text/detail/string_body.h"
#include "text/qel_string.h"

namespace {

using kit::StringBody;
using kit::TextOf;

// Copies bytes and returns the place behind them.
char* Put(char* out, std::string_view bytes) {
    if (!bytes.empty()) std::memcpy(out, bytes.data(), bytes.size());
    return out + bytes.size();
}

// --- Lines of a text ----------------------------------------------------------------------------

// Calls use(line, line_feed) for the lines of a text: the bytes before each line feed, and those
// behind the last one; line_feed is "\n" or "".
template <typename Use>
void ForEachLine(std::string_view text, Use use) {
    for (;;) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) break;
        use(text.substr(0, end), text.substr(end, 1));
        text.remove_prefix(end + 1);
    }
    use(text, std::string_view());
}

// --- Trims --------------------------------------------------------------------------------------

// Whether a character is this single byte.
struct IsCharacter {
    char wanted;
    bool operator()(std::string_view character) const {
        return character.size() == 1 && character[0] == wanted;
    }
};

// Whether a character, of one byte or two, is among those of a C string.
class IsInSet {
public:
    explicit IsInSet(const char* set) : set_(set) {
        for (std::size_t n; *set; set += n) {
            n = kit::CharacterLength(set);
            if (n == 1) single_[static_cast<unsigned char>(*set)] = true;
        }
    }
    bool operator()(std::string_view character) const {
        if (character.size() == 1) return single_[static_cast<unsigned char>(character[0])];
        for (const char* s = set_; *s; s += kit::CharacterLength(s)) {
            if (character == std::string_view(s, kit::CharacterLength(s))) return true;
        }
        return false;
    }

private:
    const char* set_;
    bool single_[256] = {};
};

// The length of the leading run of characters that belong(character) accepts.
template <typename Belong>
std::size_t LeadingRun(std::string_view text, Belong belong) {
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t n = kit::CharacterLength(text.data() + at);
        if (!belong(text.substr(at, n))) break;
        at += n;
    }
    return at;
}

// The length of what stands before the trailing run. A byte does not tell whether it is the second
// of a character, so a text that may hold such is walked from its start.
template <typename Belong>
std::size_t BeforeTrailingRun(std::string_view text, Belong belong) {
    if (!kit::HasDoubleByteCharacters()) {
        while (!text.empty() && belong(text.substr(text.size() - 1))) text.remove_suffix(1);
        return text.size();
    }
    std::size_t end = 0;
    for (std::size_t at = 0, n; at < text.size(); at += n) {
        n = kit::CharacterLength(text.data() + at);
        if (!belong(text.substr(at, n))) end = at + n;
    }
    return end;
}

// Cuts the text down to its bytes [start, start + length). A string that would own nothing but an
// empty text lets go of it.
// Quirk: the text changes under every string that shares it; there is no copy-on-write.
// Pinned by Editing.InPlaceOperationsChangeEveryCopyAndTheOthersNone.
void CutInPlace(StringBody*& slot, std::size_t start, std::size_t length) {
    char* const text = slot->text_;
    std::memmove(text, text + start, length);
    text[length] = '\0';
    slot->length_ = static_cast<int>(length);
    if (length == 0) kit::SetBody(slot, nullptr);
}

template <typename Belong>
void TrimLeading(StringBody*& slot, Belong belong) {
    const std::string_view text = TextOf(slot);
    const std::size_t run = LeadingRun(text, belong);
    if (run > 0) CutInPlace(slot, run, text.size() - run);
}

template <typename Belong>
void TrimTrailing(StringBody*& slot, Belong belong) {
    const std::string_view text = TextOf(slot);
    const std::size_t rest = BeforeTrailingRun(text, belong);
    if (rest < text.size()) CutInPlace(slot, 0, rest);
}

// --- Strip --------------------------------------------------------------------------------------

void SkipLeading(std::string_view& span, std::string_view set) {
    span.remove_prefix((std::min)(span.find_first_not_of(set), span.size()));
}

void DropTrailing(std::string_view& span, std::string_view set) {
    const std::size_t last = span.find_last_not_of(set);
    span = span.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

void DropLast(std::string_view& span) {
    if (!span.empty()) span.remove_suffix(1);
}

void StripUrl(std::string_view& span) {
    constexpr std::string_view kScheme = "http://";
    if (span.size() <= kScheme.size()) return;
    if (::_strnicmp(span.data(), kScheme.data(), kScheme.size()) == 0) {
        span.remove_prefix(kScheme.size());
    }
    if (span.back() == '/') DropLast(span);
}

// What the bits of Strip leave of `text`; the blanks inside, for kStripAllBlanks, still in place.
std::string_view StrippedSpan(std::string_view text, int flags) {
    std::string_view span = text;
    if (flags & CQELString::kStripLeadingBlanks) SkipLeading(span, " ");
    if (flags & CQELString::kStripTrailingBlanks) DropTrailing(span, " ");
    if (flags & CQELString::kStripQuotes) {
        SkipLeading(span, " \"");
        DropTrailing(span, " \"");
    }
    // Quirk: the next two look at the last character of the text as it was, not of the span: "a/  "
    // keeps its slash when its trailing blanks go. Names and stored values have always been
    // compared in this form. Pinned by Strip.LooksAtTheEndOfTheUnstrippedText.
    if ((flags & CQELString::kStripSlash) && kit::IsSlash(text.back())) DropLast(span);
    if ((flags & CQELString::kStripLineFeed) && text.back() == '\n') DropLast(span);
    if (flags & CQELString::kStripLineEnds) DropTrailing(span, "\r\n");
    if (flags & CQELString::kStripUrl) StripUrl(span);
    if (flags & CQELString::kStripAllBlanks) {
        DropTrailing(span, " ");
        SkipLeading(span, " ");
    }
    return span;
}

}  // namespace

CQELString& CQELString::Delete(int pos, int n) {
    const std::string_view text = TextOf(body_);
    const std::size_t start = pos > 0 ? static_cast<std::size_t>(pos) : 0;
    if (n < 1 || start >= text.size()) return *this;
    const std::size_t removed = (std::min)(static_cast<std::size_t>(n), text.size() - start);
    kit::RebuildBody(body_, text.size() - removed, [&](char* out) {
        Put(Put(out, text.substr(0, start)), text.substr(start + removed));
    });
    return *this;
}

CQELString& CQELString::Insert(const CQELString& s, int pos) {
    if (s.IsEmpty()) return *this;
    if (IsEmpty()) return *this = s;
    const std::string_view text = TextOf(body_);
    const std::string_view inserted = TextOf(s.body_);
    const std::size_t at = pos > 0 ? static_cast<std::size_t>(pos) : 0;
    if (at > text.size()) return *this;
    kit::RebuildBody(body_, text.size() + inserted.size(), [&](char* out) {
        Put(Put(Put(out, text.substr(0, at)), inserted), text.substr(at));
    });
    return *this;
}

CQELString& CQELString::InsertRow(const CQELString& s, int column) {
    const std::string_view text = TextOf(body_);
    if (text.find('\n') == std::string_view::npos) return Insert(s, column);
    const std::string_view inserted = TextOf(s.body_);
    const std::size_t at = column > 0 ? static_cast<std::size_t>(column) : 0;
    std::size_t rows = 0;
    ForEachLine(text, [&](std::string_view line, std::string_view) { rows += line.size() >= at; });
    if (rows == 0 || inserted.empty()) return *this;
    kit::RebuildBody(body_, text.size() + rows * inserted.size(), [&](char* out) {
        ForEachLine(text, [&](std::string_view line, std::string_view line_feed) {
            const bool long_enough = line.size() >= at;
            if (long_enough) out = Put(Put(out, line.substr(0, at)), inserted);
            out = Put(Put(out, long_enough ? line.substr(at) : line), line_feed);
        });
    });
    return *this;
}

CQELString& CQELString::Replace(char from, char to) {
    if (!body_) return *this;
    char* const end = body_->text_ + body_->length_;
    std::transform(body_->text_, end, body_->text_, [=](char c) { return c == from ? to : c; });
    return *this;
}

CQELString& CQELString::Replace(const char* old, const char* repl) {
    const std::string_view text = TextOf(body_);
    const std::string_view wanted = TextOf(old);
    const std::string_view replacement = TextOf(repl);
    if (wanted.empty()) return *this;
    std::size_t count = 0;
    for (std::size_t at = 0; (at = kit::FindBytes(text, wanted, at)) != std::string_view::npos;) {
        ++count;
        at += wanted.size();
    }
    if (count == 0) return *this;
    const std::size_t length = text.size() - count * wanted.size() + count * replacement.size();
    kit::RebuildBody(body_, length, [&](char* out) {
        std::size_t done = 0;
        for (std::size_t left = count; left > 0; --left) {
            const std::size_t at = kit::FindBytes(text, wanted, done);
            out = Put(Put(out, text.substr(done, at - done)), replacement);
            done = at + wanted.size();
        }
        Put(out, text.substr(done));
    });
    return *this;
}

CQELString& CQELString::RemoveSubstring(const char* s, bool no_case) {
    const int at = no_case ? FindNocase(s) : Find(s);
    return at < 0 ? *this : Delete(at, static_cast<int>(std::strlen(s)));
}

CQELString& CQELString::Exclude(const char* set) {
    const kit::ByteSet excluded(set);
    const std::string_view text = TextOf(body_);
    const auto is_excluded = [&](char c) { return excluded.Has(c); };
    const auto removed = std::count_if(text.begin(), text.end(), is_excluded);
    if (removed == 0) return *this;
    kit::RebuildBody(body_, text.size() - static_cast<std::size_t>(removed), [&](char* out) {
        std::remove_copy_if(text.begin(), text.end(), out, is_excluded);
    });
    return *this;
}

CQELString& CQELString::TrimLeft(char c) {
    TrimLeading(body_, IsCharacter{c});
    return *this;
}

CQELString& CQELString::TrimRight(char c) {
    TrimTrailing(body_, IsCharacter{c});
    return *this;
}

CQELString& CQELString::TrimLeft(const char* set) {
    if (set) TrimLeading(body_, IsInSet(set));
    return *this;
}

CQELString& CQELString::TrimRight(const char* set) {
    if (set) TrimTrailing(body_, IsInSet(set));
    return *this;
}

CQELString& CQELString::Strip(EStripType flags) {
    if (IsEmpty()) return *this;
    const std::string_view span = StrippedSpan(TextOf(body_), flags);
    const bool drop_inner = (flags & kStripAllBlanks) != 0;
    const auto blanks = drop_inner ? std::count(span.begin(), span.end(), ' ') : 0;
    const std::size_t length = span.size() - static_cast<std::size_t>(blanks);
    if (length == static_cast<std::size_t>(Length())) return *this;
    kit::RebuildBody(body_, length, [&](char* out) {
        if (blanks > 0) {
            std::remove_copy(span.begin(), span.end(), out, ' ');
        } else {
            Put(out, span);
        }
    });
    return *this;
}

CQELString& CQELString::BeginNewLine() {
    if (!IsEmpty() && TextOf(body_).back() != '\n') *this += "\r\n";
    return *this;
}

CQELString& CQELString::StrAddSlash() {
    Strip(kStripSlash);
    return *this += '\\';
}

void CQELString::StrAddSlash(char* path) {
    if (!path) return;
    const std::size_t length = std::strlen(path);
    if (length > 0 && path[length - 1] == '\\') return;
    path[length] = '\\';
    path[length + 1] = '\0';
}

void CQELString::StrCutSlash(char* path) {
    const std::size_t length = path ? std::strlen(path) : 0;
    if (length > 0 && path[length - 1] == '\\') path[length - 1] = '\0';
}
