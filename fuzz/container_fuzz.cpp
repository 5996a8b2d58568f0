// What a careful caller does with foreign bytes: asks IsMemoryCompressed(), makes room for the
// original size and a spare byte, decompresses. The sizes are trusted from there on, so bytes that
// are no container are not decompressed.

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "base/byte_order.h"
#include "compress/compress_memory.h"
#include "compress/container_format.h"

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::uint32_t kMostRoom = 1 << 20;

void Decompress(Bytes container) {
    const std::uint32_t original_size =
        kit::LoadLe32(container.data() + kit::container::kOriginalSizeAt);
    if (original_size > kMostRoom) return;
    Bytes text(std::size_t{original_size} + 1);
    ulong32 size = 0;
    const int result = DecompressMemory2(container.data(), text.data(), &size, nullptr);
    if (result == 0) return;
    const bool told = kit::LoadLe32(container.data() + kit::container::kOriginalSizeAt) == size;
    if (!told || size > original_size || container[kit::container::kMethodAt] != 1) std::abort();
}

void RoundTrip(const Bytes& text) {
    Bytes container(text.size() + kit::container::kHeaderSize);
    auto size = static_cast<ulong32>(container.size());
    const auto length = static_cast<ulong32>(text.size());
    if (CompressMemory(text.data(), length, container.data(), &size, 1) == 0) return;
    if (size >= length || IsMemoryCompressed(container.data(), size) != 1) std::abort();
    Bytes back(text.size() + 1);
    ulong32 back_size = 0;
    if (DecompressMemory(container.data(), back.data(), &back_size) != 1) std::abort();
    back.resize(back_size);
    if (back != text) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes bytes(data, data + size);
    if (IsMemoryCompressed(bytes.data(), static_cast<ulong32>(size)) == 1) Decompress(bytes);
    RoundTrip(bytes);
    return 0;
}
