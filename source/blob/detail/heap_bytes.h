#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

// Blocks of the C runtime's heap, which blobs live on.

namespace kit {

struct FreeBlock {
    void operator()(void* block) const { std::free(block); }
};
using HeapBytes = std::unique_ptr<unsigned char, FreeBlock>;

// Null for a size of 0, and when there is no memory.
inline HeapBytes NewBytes(std::uint32_t size) {
    return HeapBytes(size == 0 ? nullptr : static_cast<unsigned char*>(std::malloc(size)));
}
inline HeapBytes NewZeroedBytes(std::uint32_t size) {
    return HeapBytes(size == 0 ? nullptr : static_cast<unsigned char*>(std::calloc(size, 1)));
}

}  // namespace kit
