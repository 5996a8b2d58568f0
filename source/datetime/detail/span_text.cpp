#include "datetime/detail/span_text.h"

#include <cstdio>
#include <cstring>

namespace kit {
namespace {

class Output {
public:
    explicit Output(char (&out)[kSpanTextRoom]) : out_(out) { out_[0] = '\0'; }

    void Character(const char* bytes, std::size_t size) {
        if (size >= kSpanTextRoom - length_) {
            length_ = kSpanTextRoom - 1;  // nothing goes behind what had no room
            return;
        }
        std::memcpy(out_ + length_, bytes, size);
        length_ += size;
        out_[length_] = '\0';
    }

    void Number(std::int32_t value, int digits) {
        char text[16];
        std::snprintf(text, sizeof text, "%0*ld", digits, static_cast<long>(value));
        for (const char* digit = text; *digit; ++digit) Character(digit, 1);
    }

private:
    char (&out_)[kSpanTextRoom];
    std::size_t length_ = 0;
};

// Writes the field that a letter stands for; false when it stands for none.
bool PutField(char letter, const SpanFields& span, Output& output) {
    const struct {
        char letter;
        std::int32_t value;
        int digits;
    } fields[] = {
        {'D', span.days, 1},     //
        {'H', span.hours, 2},    //
        {'M', span.minutes, 2},  //
        {'S', span.seconds, 2},  //
        {'m', span.milliseconds, 3},
    };
    for (const auto& field : fields) {
        if (field.letter != letter) continue;
        output.Number(field.value, field.digits);
        return true;
    }
    return false;
}

}  // namespace

void FormatSpan(const char* picture, const SpanFields& span,
                std::size_t (*character_length)(const char* text), char (&out)[kSpanTextRoom]) {
    Output output(out);
    while (*picture) {
        if (*picture == '%') {
            ++picture;
            if (!*picture) return;
            if (PutField(*picture, span, output)) {
                ++picture;
                continue;
            }
        }
        const std::size_t length = character_length(picture);
        output.Character(picture, length);
        picture += length;
    }
}

}  // namespace kit
