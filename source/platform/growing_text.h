#pragma once

#include <cstddef>
#include <string>

namespace kit {

// Runs a system call of the kind that fills a caller's buffer and says how many characters it
// wrote, growing the buffer while the text may have been cut.
//   call(char* buffer, std::size_t size) -> characters written without the terminator; 0 is failure
//   first, step   size of the first buffer and its growth, in characters with the terminator
//   limit         the size at which growing stops, so that a call that lies cannot use up memory
// The loaders never report more than size - 1 characters: a full buffer is one that holds exactly
// that many. Throws std::bad_alloc when memory runs out.
template <typename Call>
std::string GrowingText(Call call, std::size_t first, std::size_t step,
                        std::size_t limit = std::size_t{1} << 20) {
    std::string text(first, '\0');
    for (;;) {
        const std::size_t length = call(text.data(), text.size());
        if (length + 1 < text.size() || text.size() >= limit) {
            text.resize(length < text.size() ? length : text.size() - 1);
            return text;
        }
        text.assign(text.size() + step, '\0');
    }
}

}  // namespace kit
