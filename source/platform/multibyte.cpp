#include "platform/multibyte.h"

#include <atomic>

#include <mbctype.h>  // last: its macros (_M1, _M2) break the standard headers

namespace kit {
namespace {

bool HasLeadBytes() {
    for (unsigned int byte = 0x80; byte < 0x100; ++byte) {
        if (::_ismbblead(byte)) return true;
    }
    return false;
}

// A code page and whether it has lead bytes, in one number: the answer changes only with the page.
constexpr int Remembered(int code_page, bool lead_bytes) { return code_page * 2 + lead_bytes; }

}  // namespace

std::size_t CharacterLength(const char* text) {
    return ::_ismbblead(static_cast<unsigned char>(text[0])) && text[1] != '\0' ? 2 : 1;
}

bool HasDoubleByteCharacters() {
    static std::atomic<int> remembered{-1};
    const int code_page = ::_getmbcp();
    int known = remembered.load(std::memory_order_relaxed);
    if (known / 2 != code_page || known < 0) {
        known = Remembered(code_page, HasLeadBytes());
        remembered.store(known, std::memory_order_relaxed);
    }
    return known % 2 != 0;
}

}  // namespace kit
