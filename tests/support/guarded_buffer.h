#pragma once

// A buffer that ends exactly where an inaccessible page begins: one byte too far, read or written,
// ends the test program.

#include <cstddef>
#include <cstring>

#ifdef _WIN32
#include "platform/windows.h"
#else
#include <sys/mman.h>
#endif

class GuardedBuffer {
public:
    explicit GuardedBuffer(std::size_t size)
        : size_(size), room_((size + kPage - 1) / kPage * kPage) {
#ifdef _WIN32
        base_ = static_cast<unsigned char*>(
            VirtualAlloc(nullptr, room_ + kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        DWORD before;
        VirtualProtect(base_ + room_, kPage, PAGE_NOACCESS, &before);
#else
        base_ = static_cast<unsigned char*>(mmap(nullptr, room_ + kPage, PROT_READ | PROT_WRITE,
                                                 MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(base_ + room_, kPage, PROT_NONE);
#endif
    }
    GuardedBuffer(const void* bytes, std::size_t size) : GuardedBuffer(size) {
        if (size > 0) std::memcpy(data(), bytes, size);
    }
    // The text with its terminator as the last byte of the buffer.
    explicit GuardedBuffer(const char* text) : GuardedBuffer(text, std::strlen(text) + 1) {}
    ~GuardedBuffer() {
#ifdef _WIN32
        VirtualFree(base_, 0, MEM_RELEASE);
#else
        munmap(base_, room_ + kPage);
#endif
    }
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    unsigned char* data() { return base_ + room_ - size_; }
    char* text() { return reinterpret_cast<char*>(data()); }
    std::size_t size() const { return size_; }

private:
    static constexpr std::size_t kPage = 4096;
    std::size_t size_;
    std::size_t room_;
    unsigned char* base_;
};
