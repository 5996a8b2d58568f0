// The encoder gives the bytes of its textbook form, and the decoder takes them back.
//
// Input: one byte that says how often the rest is repeated, then the text. The repetitions are
// numbered, so that the small inputs which a fuzzer likes reach across the window and over several
// of the encoder's blocks without being all the same.

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "compress/lz_coder.h"
#include "yardsticks/textbook_lz.h"

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t kEnough = 50000;  // the encoder's third block

Bytes Repeated(const std::uint8_t* data, std::size_t size) {
    Bytes text;
    for (int i = 0; i <= data[0] % 64 && text.size() < kEnough; ++i) {
        text.insert(text.end(), data + 1, data + size);
        if (i > 0) text.push_back(static_cast<unsigned char>(i));
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    Bytes text = Repeated(data, size);
    const auto length = static_cast<unsigned int>(text.size());
    Bytes stream(text.size() + text.size() / 8 + 1);
    Bytes expected(stream.size());
    auto stream_size = static_cast<unsigned int>(stream.size());
    std::uint32_t expected_size = stream_size;
    if (LzCompress(text.data(), length, stream.data(), &stream_size) != 0) std::abort();
    textbook::Compress(text.data(), length, expected.data(), &expected_size);
    if (stream_size != expected_size || stream != expected) std::abort();

    Bytes back(text.size() + 1);
    unsigned int back_size = length;
    stream.resize(stream_size);
    stream.shrink_to_fit();
    if (LzDecompress(stream.data(), stream_size, back.data(), &back_size) != 0) std::abort();
    back.resize(back_size);
    if (back != text) std::abort();
    return 0;
}
