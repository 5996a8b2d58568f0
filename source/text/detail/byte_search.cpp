#include "text/detail/byte_search.h"

namespace kit {

std::size_t FindBytes(std::string_view text, std::string_view pattern, std::size_t from) {
    return text.find(pattern, from);
}

}  // namespace kit
