#include "text/detail/string_body.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace kit {

StringBody* NewBody(std::size_t length) {
    if (length > kLongestText) return nullptr;
    char* const text = static_cast<char*>(std::malloc(length + 1));
    if (!text) return nullptr;
    text[length] = '\0';
    StringBody* const body = new (std::nothrow) StringBody(text, static_cast<int>(length));
    if (!body) std::free(text);
    return body;
}

StringBody* NewBody(std::string_view text) { return NewBody(text, {}); }

StringBody* NewBody(std::string_view head, std::string_view tail) {
    // Each part is below 2^63 bytes, so that the sum does not wrap.
    if (head.size() + tail.size() == 0) return nullptr;
    StringBody* const body = NewBody(head.size() + tail.size());
    if (!body) return nullptr;
    if (!head.empty()) std::memcpy(body->text_, head.data(), head.size());
    if (!tail.empty()) std::memcpy(body->text_ + head.size(), tail.data(), tail.size());
    return body;
}

}  // namespace kit
