#include "file_com/detail/wildcard_core.h"

#include <cstring>

namespace kit {
namespace {

enum class Step { kGoOn, kMatch, kNoMatch };

// One comparison. A "*" followed by a literal tries the leftmost place where the pattern up to the
// next "*" (a segment) fits, and moves on from there. When a segment does not fit, only the last
// "*" need take more: had an earlier one taken more, the characters in between hold no separator,
// so that the last one could have taken them as well. For the same reason a failure inside a run of
// wildcards, or of the last "*" itself, is final. The exhaustive test holds this against the
// recursive form.
template <bool kFold>
class Matcher {
public:
    Matcher(const char* pattern, const char* name, int flags, FoldHighByte fold_high)
        : pattern_(pattern),
          name_(name),
          start_(name),
          path_((flags & kWildcardPath) != 0),
          skip_literal_((flags & kWildcardSkipLiteral) != 0),
          leading_dot_((flags & kWildcardLeadingDot) != 0),
          fold_high_(fold_high) {}

    bool Run() {
        for (;;) {
            const Step step = Next();
            if (step != Step::kGoOn) return step == Step::kMatch;
        }
    }

private:
    Step Next() {
        switch (*pattern_) {
            case '\0':
                return *name_ == '\0' ? Step::kMatch : TakeMore();
            case '*':
                return EnterRun();
            case '?':
                return Advance(*name_ != '\0' && !IsSeparator(*name_) && !IsLeadingDot());
            default:
                return Advance(*name_ != '\0' && Equal(*pattern_, *name_));
        }
    }

    Step Advance(bool fits) {
        if (!fits) return TakeMore();
        ++pattern_;
        ++name_;
        return Step::kGoOn;
    }

    // At a "*": takes the run of wildcards that it begins, and finds the first place for what
    // follows.
    Step EnterRun() {
        if (IsLeadingDot()) return Step::kNoMatch;
        leading_dot_ = false;
        while (*++pattern_ == '*' || *pattern_ == '?') {
            if (IsSeparator(*name_)) return Step::kNoMatch;
            if (*pattern_ == '*') continue;
            if (*name_ == '\0') return Step::kNoMatch;
            ++name_;
        }
        if (*pattern_ == '\0') {
            return path_ && std::strchr(name_, '\\') ? Step::kNoMatch : Step::kMatch;
        }
        // Quirk: the flag makes the search look for the second character of the segment, while the
        // segment still has to fit from its first. So only a doubled character is ever found: "*aab"
        // matches "xaab", "*ab" nothing. Callers' masks rely on what has always matched.
        // Pinned by Wildcard.SearchesForTheCharacterBehindASkippedLiteral.
        if (skip_literal_ && !Equal(pattern_[0], pattern_[1])) return Step::kNoMatch;
        const std::size_t literals = std::strcspn(pattern_, "*?");
        if (pattern_[literals] == '\0') return FitEnd(literals);
        segment_ = pattern_;
        segment_start_ = name_;
        return FindSegment();
    }

    // The rest of the pattern, which has no wildcards, can only lie at the end of the name.
    Step FitEnd(std::size_t length) {
        const std::size_t left = std::strlen(name_);
        if (left < length) return Step::kNoMatch;
        const char* const end = name_ + (left - length);
        if (path_ && std::memchr(name_, '\\', left - length)) return Step::kNoMatch;
        for (std::size_t i = 0; i < length; ++i) {
            if (!Equal(pattern_[i], end[i])) return Step::kNoMatch;
        }
        return Step::kMatch;
    }

    // The last "*" takes one character more.
    Step TakeMore() {
        if (!segment_ || *segment_start_ == '\0' || IsSeparator(*segment_start_)) {
            return Step::kNoMatch;
        }
        ++segment_start_;
        return FindSegment();
    }

    // Moves on to the next place that begins as the segment does.
    Step FindSegment() {
        const char first = *segment_;
        const char other = OtherCase(first);
        const char stop = path_ ? '\\' : '\0';
        for (const char* at = segment_start_;; ++at) {
            const char c = *at;
            if (c == first || c == other || (IsHigh(first) && Equal(c, first))) return Begin(at);
            if (c == stop || c == '\0') return Step::kNoMatch;
        }
    }

    Step Begin(const char* at) {
        segment_start_ = at;
        pattern_ = segment_ + 1;
        name_ = at + 1;
        return Step::kGoOn;
    }

    bool IsSeparator(char c) const { return path_ && c == '\\'; }
    bool IsLeadingDot() const {
        return leading_dot_ && *name_ == '.' && (name_ == start_ || (path_ && name_[-1] == '\\'));
    }
    bool Equal(char a, char b) const { return a == b || (kFold && Fold(a) == Fold(b)); }
    static bool IsHigh(char c) { return kFold && static_cast<unsigned char>(c) >= 0x80; }
    // The same letter of ASCII in its other case; anything else as it is.
    static char OtherCase(char c) {
        const char small = static_cast<char>(c | 0x20);
        return kFold && small >= 'a' && small <= 'z' ? static_cast<char>(c ^ 0x20) : c;
    }
    unsigned char Fold(char c) const {
        const auto byte = static_cast<unsigned char>(c);
        if (!kFold) return byte;
        if (byte >= 'A' && byte <= 'Z') return static_cast<unsigned char>(byte + ('a' - 'A'));
        return byte >= 0x80 && fold_high_ ? fold_high_(byte) : byte;
    }

    const char* pattern_;
    const char* name_;
    const char* const start_;
    const bool path_;
    const bool skip_literal_;
    bool leading_dot_;
    const FoldHighByte fold_high_;
    const char* segment_ = nullptr;  // behind the last "*"; null before the first one
    const char* segment_start_ = nullptr;
};

}  // namespace

bool WildcardMatches(const char* pattern, const char* name, int flags, FoldHighByte fold_high) {
    return flags & kWildcardFoldCase ? Matcher<true>(pattern, name, flags, fold_high).Run()
                                     : Matcher<false>(pattern, name, flags, fold_high).Run();
}

}  // namespace kit
