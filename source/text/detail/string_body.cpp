#include "text/detail/string_body.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace kit {

// Body and text are one block: a string costs one allocation.
StringBody* NewBody(std::size_t length) {
    if (length > kLongestText) return nullptr;
    void* const block = std::malloc(sizeof(StringBody) + length + 1);
    if (!block) return nullptr;
    char* const text = static_cast<char*>(block) + sizeof(StringBody);
    text[length] = '\0';
    return ::new (block) StringBody(text, static_cast<int>(length));
}

StringBody* NewBody(std::string_view text) { return NewBody(text, {}); }

StringBody* NewBody(std::string_view head, std::string_view tail) {
    // The sum does not wrap: no two texts in memory are that long, and a length that a caller made
    // up comes alone.
    if (head.size() + tail.size() == 0) return nullptr;
    StringBody* const body = NewBody(head.size() + tail.size());
    if (!body) return nullptr;
    if (!head.empty()) std::memcpy(body->text_, head.data(), head.size());
    if (!tail.empty()) std::memcpy(body->text_ + head.size(), tail.data(), tail.size());
    return body;
}

}  // namespace kit
