// Any bytes are a stream for the decoder. Input: two bytes of capacity, then the stream.

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "base/byte_order.h"
#include "compress/lz_coder.h"
#include "yardsticks/textbook_lz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const unsigned int capacity = kit::LoadLe16(data);
    // Copies of just the size, so that one byte too far is seen.
    std::vector<unsigned char> stream(data + 2, data + size);
    std::vector<unsigned char> text(capacity + 1, 0xEE);
    std::vector<unsigned char> expected(text);
    const auto length = static_cast<unsigned int>(stream.size());
    unsigned int text_size = capacity;
    std::uint32_t expected_size = capacity;
    const int result = LzDecompress(stream.data(), length, text.data(), &text_size);
    const int expected_result =
        textbook::Decompress(stream.data(), length, expected.data(), &expected_size);
    if (result != expected_result || text_size != expected_size || text != expected) std::abort();
    return 0;
}
