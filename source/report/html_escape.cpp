#include <cstdint>
#include <cstring>

#include "report/table_builder_c.h"

namespace {

// What stands for a character; null when it stands for itself.
const char* Entity(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            return nullptr;
    }
}

std::uint64_t RoomFor(const char* text) {
    std::uint64_t room = 1;
    for (; *text; ++text) {
        const char* const entity = Entity(*text);
        room += entity ? std::strlen(entity) : 1;
    }
    return room;
}

void Escape(const char* text, char* out) {
    for (; *text; ++text) {
        const char* const entity = Entity(*text);
        if (!entity) {
            *out++ = *text;
            continue;
        }
        const std::size_t length = std::strlen(entity);
        std::memcpy(out, entity, length);
        out += length;
    }
    *out = '\0';
}

}  // namespace

unsigned long QEL_HtmlEscape(const char* text, char* out, unsigned long outSize) {
    constexpr std::uint64_t kLargestRoom = 0xFFFFFFFF;
    if (!text) text = "";
    const std::uint64_t room = RoomFor(text);
    if (room > kLargestRoom) return 0;
    if (out && room <= outSize) Escape(text, out);
    return static_cast<unsigned long>(room);
}
