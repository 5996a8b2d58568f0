#include "platform/multibyte.h"

#include <mbctype.h>

namespace kit {

std::size_t CharacterLength(const char* text) {
    return ::_ismbblead(static_cast<unsigned char>(text[0])) && text[1] != '\0' ? 2 : 1;
}

}  // namespace kit
