#include "text/detail/format_estimate.h"

#include <algorithm>
#include <cstring>

namespace kit {
namespace {

constexpr std::uint64_t kInt32Max = 0x7FFFFFFF;

constexpr std::uint64_t kCharacterLength = 2;
constexpr std::uint64_t kNullLength = 6;  // "(null)"
constexpr std::uint64_t kIntegerLength = 32;
constexpr std::uint64_t kDoubleLength = 128;
constexpr std::uint32_t kDefaultPrecision = 6;

enum class Kind { kCharacter, kNarrow, kWide, kNumber, kFixed, kCounter, kOther };

struct TypeRow {
    char type;
    Kind plain, with_h, with_l;
    std::uint64_t least;  // of a number
};

// clang-format off
constexpr TypeRow kTypes[] = {
    {'c', Kind::kCharacter, Kind::kCharacter, Kind::kCharacter, 0},
    {'C', Kind::kCharacter, Kind::kCharacter, Kind::kCharacter, 0},
    {'s', Kind::kNarrow,    Kind::kNarrow,    Kind::kWide,      0},
    {'S', Kind::kWide,      Kind::kNarrow,    Kind::kWide,      0},
    {'d', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kIntegerLength},
    {'i', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kIntegerLength},
    {'o', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kIntegerLength},
    {'u', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kIntegerLength},
    {'x', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kIntegerLength},
    {'X', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kIntegerLength},
    {'p', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kIntegerLength},
    {'e', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kDoubleLength},
    {'g', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kDoubleLength},
    {'G', Kind::kNumber,    Kind::kNumber,    Kind::kNumber,    kDoubleLength},
    {'f', Kind::kFixed,     Kind::kFixed,     Kind::kFixed,     0},
    {'n', Kind::kCounter,   Kind::kCounter,   Kind::kCounter,   0},
};
// clang-format on

constexpr TypeRow kOtherType = {0, Kind::kOther, Kind::kOther, Kind::kOther, 0};

const TypeRow& FindType(char type) {
    for (const TypeRow& row : kTypes) {
        if (row.type == type) return row;
    }
    return kOtherType;
}

bool IsI64(const char* at) { return at[0] == 'I' && at[1] == '6' && at[2] == '4'; }
bool IsI32(const char* at) { return at[0] == 'I' && at[1] == '3' && at[2] == '2'; }

// Steps over the sizes that the runtime knows and the estimate does not: further ones behind the
// first ("ll", "hh"), "w", "I32", "j", "t", "z", and "I" before an integer. Returns whether there
// was one.
bool SkipForeignSizes(const char*& at) {
    const char* const start = at;
    for (;;) {
        if (IsI64(at) || IsI32(at)) {
            at += 3;
        } else if (IsOneOf(*at, "hlFLNwjtz") || (*at == 'I' && IsOneOf(at[1], "diouxX"))) {
            ++at;
        } else {
            return at != start;
        }
    }
}

std::uint64_t NarrowLength(const char* text, std::uint64_t most) {
    if (!text) return kNullLength;
    std::uint64_t length = 0;
    while (length < most && text[length] != '\0') ++length;
    return length;
}

// Wide characters of Windows are 16 bits wide, those of other systems need not be.
std::uint64_t WideLength(const char* text, std::uint64_t most) {
    if (!text) return kNullLength;
    std::uint64_t length = 0;
    while (length < most && (text[length * 2] != '\0' || text[length * 2 + 1] != '\0')) ++length;
    return length;
}

class Estimator {
public:
    Estimator(ArgumentCursor arguments, const EstimateFunctions& functions)
        : arguments_(arguments), functions_(functions) {}

    std::optional<std::uint32_t> Walk(const char* at) {
        while (*at != '\0' && total_ < UINT32_MAX) {
            if (*at != '%') {
                const std::size_t length = CharacterLength(at);
                total_ += length;
                at += length;
            } else if (at[1] == '%') {
                ++total_;
                at += 2;
            } else {
                at = WalkConversion(at + 1);
            }
        }
        if (total_ >= UINT32_MAX) return std::nullopt;
        return static_cast<std::uint32_t>(total_);
    }

private:
    // No code page has lead bytes below 0x80.
    std::size_t CharacterLength(const char* at) const {
        return static_cast<unsigned char>(*at) < 0x80 ? 1 : functions_.character_length(at);
    }

    const char* WalkConversion(const char* at) {
        width_ = 0;
        precision_ = 0;
        ReadFlags(at);
        if (width_ == 0) width_ = ReadDigits(at);
        ReadPrecision(at);
        const char size = ReadSize(at);
        // What a foreign size stands before is none of the types of the table.
        const TypeRow& row = SkipForeignSizes(at) ? kOtherType : FindType(*at);
        const Kind kind = size == 'h' ? row.with_h : size == 'l' ? row.with_l : row.plain;
        total_ += Length(kind, row.least, *at);
        return *at == '\0' ? at : at + CharacterLength(at);
    }

    void ReadFlags(const char*& at) {
        for (; IsOneOf(*at, "-+0 #*"); ++at) {
            if (*at == '#') total_ += 2;
            if (*at == '*') width_ = TakeWidth();
        }
    }

    // A negative width is a flag "-" and the width.
    std::uint32_t TakeWidth() {
        const auto width = arguments_.Take<std::int32_t>();
        return width < 0 ? 0u - static_cast<std::uint32_t>(width)
                         : static_cast<std::uint32_t>(width);
    }

    void ReadPrecision(const char*& at) {
        if (*at != '.') return;
        ++at;
        if (*at != '*') {
            precision_ = ReadDigits(at);
            return;
        }
        ++at;
        const auto precision = arguments_.Take<std::int32_t>();  // a negative one counts as absent
        precision_ = precision > 0 ? static_cast<std::uint32_t>(precision) : 0;
    }

    // 'h' or 'l', which choose between narrow and wide; 0 for every other size.
    static char ReadSize(const char*& at) {
        if (IsI64(at)) {
            at += 3;
            return 0;
        }
        if (!IsOneOf(*at, "hlFLN")) return 0;
        const char size = *at++;
        return size == 'h' || size == 'l' ? size : '\0';
    }

    std::uint64_t Length(Kind kind, std::uint64_t least, char type) {
        switch (kind) {
            case Kind::kCharacter:
                arguments_.Skip();
                return Bounded(kCharacterLength);
            case Kind::kNarrow:
                return Bounded(NarrowLength(arguments_.Take<const char*>(), MostRead()));
            case Kind::kWide:
                return Bounded(WideLength(arguments_.Take<const char*>(), MostRead()));
            case Kind::kNumber:
                arguments_.Skip();
                return (std::max)(least, std::uint64_t{width_} + precision_);
            case Kind::kFixed:
                return FixedLength(arguments_.Take<double>());
            case Kind::kCounter:
                arguments_.Skip();
                return 0;
            case Kind::kOther:
                // Quirk: what the table does not name, E foremost, counts nothing, so that a result
                // with it is mostly longer than the estimate and gives way to the format text.
                // Callers know "%E" as unformatted. The argument is taken all the same, or the next
                // "%s" would read a number as its text.
                // Pinned by EstimateLength.CountsNothingForOtherTypesButTakesTheirArguments.
                if (IsOneOf(type, "EaAcCsSdiouxXpegGfn")) arguments_.Skip();
                return 0;
        }
        return 0;
    }

    // A text is read no further than the formatter will.
    std::uint64_t MostRead() const { return precision_ != 0 ? precision_ : UINT64_MAX; }

    std::uint64_t Bounded(std::uint64_t length) const {
        length = (std::max)(length, std::uint64_t{1});
        if (precision_ != 0) length = (std::min)(length, std::uint64_t{precision_});
        return (std::max)(length, std::uint64_t{width_});
    }

    // Measured with six digits more than asked for, the formatter's default for none, so that one
    // rule serves both. What an int cannot ask the formatter for overflows the estimate.
    std::uint64_t FixedLength(double value) const {
        const std::uint64_t precision = std::uint64_t{precision_} + kDefaultPrecision;
        if (width_ > kInt32Max || precision > kInt32Max) return UINT32_MAX;
        return functions_.fixed_length(width_, static_cast<std::uint32_t>(precision), value);
    }

    ArgumentCursor arguments_;
    const EstimateFunctions& functions_;
    std::uint64_t total_ = 0;
    std::uint32_t width_ = 0;
    std::uint32_t precision_ = 0;
};

}  // namespace

std::optional<std::uint32_t> EstimateLength(const char* format, ArgumentCursor arguments,
                                            const EstimateFunctions& functions) {
    return Estimator(arguments, functions).Walk(format);
}

}  // namespace kit
