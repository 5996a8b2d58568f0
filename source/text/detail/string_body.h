#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "text/qel_string.h"

// The bodies of CQELString: reading, making and replacing them. A body is never made for an empty
// text; the slot of an empty string is null.

namespace kit {

using StringBody = CQELString::CQELStringImp;

// The longest text: its length, and its size with the terminator, fit an int.
constexpr std::size_t kLongestText = 0x7FFFFFFE;

// The text of a body; "" for none. data() is never null and is terminated.
inline std::string_view TextOf(const StringBody* body) {
    return body ? std::string_view(body->text_, static_cast<std::size_t>(body->length_))
                : std::string_view("");
}

// A C string, with null as "".
inline std::string_view TextOf(const char* s) {
    return s ? std::string_view(s) : std::string_view("");
}

// A body of `length` bytes, terminated, whose text is still to be written. Null when the length is
// beyond kLongestText or memory runs out; never throws.
StringBody* NewBody(std::size_t length);

// A body with a copy of `text`; null also when that is empty.
StringBody* NewBody(std::string_view text);

// A body with `head` and `tail`, one behind the other; null also when both are empty.
StringBody* NewBody(std::string_view head, std::string_view tail);

// Makes `slot` own `body`, which may be null, and releases what it owned.
inline void SetBody(StringBody*& slot, StringBody* body) {
    StringBody* const old = std::exchange(slot, body);
    if (old) old->Release();
}

// Gives `slot` a new body of `length` bytes, which write(char* text) puts there from anything that
// `slot` still holds. Length 0 empties it. Returns false, and changes nothing, without memory.
template <typename Write>
bool RebuildBody(StringBody*& slot, std::size_t length, Write write) {
    StringBody* body = nullptr;
    if (length > 0) {
        body = NewBody(length);
        if (!body) return false;
        write(body->text_);
    }
    SetBody(slot, body);
    return true;
}

}  // namespace kit
