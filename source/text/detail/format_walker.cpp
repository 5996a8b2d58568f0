#include "text/detail/format_walker.h"

#include <algorithm>

namespace kit {
namespace {

std::size_t Capped(std::uint64_t value) {
    return static_cast<std::size_t>((std::min)(value, std::uint64_t{Conversion::kLongest}));
}

Conversion::Value ValueOf(char type) {
    if (IsOneOf(type, "EGefg")) return Conversion::kDouble;
    return IsOneOf(type, "np") ? Conversion::kPointer : Conversion::kInteger;
}

class Walker {
public:
    Walker(ArgumentCursor arguments, PrintConversion print, WorkText& out)
        : arguments_(arguments), print_(print), out_(out) {}

    // Walks a terminated format; changes it for the time of a conversion and back.
    void Walk(char* at, char* const end) {
        for (;;) {
            const std::size_t rest = static_cast<std::size_t>(end - at);
            char* const start = static_cast<char*>(std::memchr(at, '%', rest));
            out_.Append({at, start ? static_cast<std::size_t>(start - at) : rest});
            if (!start) return;
            if (start[1] == '%') {
                out_.Append("%");
                at = start + 2;
            } else {
                at = AppendConversion(start);
            }
        }
    }

private:
    // Returns where the format goes on.
    char* AppendConversion(char* start) {
        char* const type = start + 1 + ReadSpec(start + 1);
        if (*type == '\0') {  // a format that ends before the type: text
            out_.Append(start);
            return type;
        }
        if (*type == 's') {
            AppendText();
        } else if (*type == 'c') {
            AppendCharacter();
        } else {
            AppendPrinted(start, type);
        }
        return type + 1;
    }

    // Reads what stands between "%" and the type; returns its length.
    std::ptrdiff_t ReadSpec(const char* const start) {
        const char* at = start;
        left_ = has_precision_ = false;
        call_ = {};
        // Quirk: one order only, and neither "0" nor "#" is a flag: "%+-5d" ends at its "-" and
        // "%#x" at its "#", and the rest is text. Formats were written to what this prints.
        // Pinned by WalkFormat.KnowsOneOrderOfFlags.
        if (*at == '-') {
            left_ = true;
            ++at;
        }
        if (*at == ' ' || *at == '+') ++at;
        ReadWidth(at);
        ReadPrecision(at);
        if (IsOneOf(*at, "FLNhl")) ++at;
        return at - start;
    }

    void ReadWidth(const char*& at) {
        const char* const digits = at;
        width_ = Capped(ReadDigits(at));
        if (at != digits || *at != '*') return;
        ++at;
        const std::int64_t width = TakeStar();
        if (width < 0) left_ = true;  // as for the C formatter
        width_ = Capped(static_cast<std::uint64_t>(width < 0 ? -width : width));
    }

    void ReadPrecision(const char*& at) {
        if (*at != '.') return;
        const char* const digits = ++at;
        has_precision_ = true;
        precision_ = Capped(ReadDigits(at));
        if (at != digits || *at != '*') return;
        ++at;
        const int precision = TakeStar();
        has_precision_ = precision >= 0;  // as for the C formatter
        if (has_precision_) precision_ = Capped(static_cast<std::uint64_t>(precision));
    }

    int TakeStar() { return call_.stars[call_.star_count++] = arguments_.Take<std::int32_t>(); }

    void AppendText() {
        const char* const text = arguments_.Take<const char*>();
        LayOut(text ? text : "(null)", Conversion::kLongest);
    }

    void AppendCharacter() {
        const char character = arguments_.Take<char>();
        LayOut(&character, 1);
    }

    // `readable` bytes of the text may be read, its terminator included among them or not.
    void LayOut(const char* text, std::size_t readable) {
        if (has_precision_) readable = (std::min)(readable, precision_);
        const void* const end = std::memchr(text, '\0', readable);
        std::size_t length = end ? static_cast<const char*>(end) - text : readable;
        // A precision counts as it is given, even where the text is shorter.
        const std::size_t count = has_precision_ ? precision_ : length;
        if (left_ && width_ > 0) {
            // Quirk: only on the left side does a width cut: "%-3s" of "abcdef" is "abc", "%3s" is
            // "abcdef". Columns of reports rely on both.
            // Pinned by WalkFormat.CutsTextsAtTheWidthOnlyWhenLeftJustified.
            length = (std::min)(length, width_);
            out_.Append({text, length});
            if (count < width_) out_.Append(width_ - length, ' ');
            return;
        }
        if (count < width_) out_.Append(width_ - count, ' ');
        out_.Append({text, length});
    }

    void AppendPrinted(char* start, char* type) {
        call_.spec = start;
        call_.value = ValueOf(*type);
        call_.slot = arguments_.Take<std::uint64_t>();
        char* const printed = out_.Extend(Conversion::kLongest + 1);
        const char behind = type[1];
        type[1] = '\0';
        const std::size_t length = print_(call_, printed);
        type[1] = behind;
        out_.DropLast(Conversion::kLongest + 1 - length);
    }

    ArgumentCursor arguments_;
    const PrintConversion print_;
    WorkText& out_;
    // The conversion at hand.
    bool left_ = false;
    bool has_precision_ = false;
    std::size_t width_ = 0;
    std::size_t precision_ = 0;
    Conversion call_ = {};
};

}  // namespace

void WalkFormat(const char* format, ArgumentCursor arguments, PrintConversion print,
                WorkText& out) {
    WorkText copy{std::string_view(format)};
    char* const start = copy.c_str();
    Walker(arguments, print, out).Walk(start, start + copy.text().size());
}

}  // namespace kit
