#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "compress/compress_memory.h"
#include "compress/lz_coder.h"

static bool memory_is_out = false;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return memory_is_out ? nullptr : std::malloc(size);
}
void* operator new(std::size_t size) {
    if (void* block = memory_is_out ? nullptr : std::malloc(size)) return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }

TEST(Compression, ReportsThatMemoryRanOut) {
    unsigned char data[1000] = {};
    unsigned char packed[2000];
    unsigned int room = sizeof packed;
    ulong32 container_room = sizeof packed;
    memory_is_out = true;
    const int result = LzCompress(data, sizeof data, packed, &room);
    const int container_result = CompressMemory(data, sizeof data, packed, &container_room, 1);
    memory_is_out = false;
    EXPECT_EQ(-1, result);
    EXPECT_EQ(sizeof packed, room);
    EXPECT_EQ(0, container_result);
    EXPECT_EQ(sizeof packed, container_room);
    EXPECT_EQ(0, LzCompress(data, sizeof data, packed, &room));  // it was the memory
}
