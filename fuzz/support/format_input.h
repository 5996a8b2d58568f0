#pragma once

#include <sys/mman.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "text/detail/format_input.h"

// A format and its arguments out of a fuzz input: a byte N, N bytes of format, then two bytes for
// each argument; arguments that are missing are null.
//
// No one can tell which argument the format will take for a text, so all of them are texts: they
// point into an area around an address whose low 32 bits are zero. Taken for an int, which the low
// half is, they lie between -4096 and 4095. The area ends at an inaccessible page.
class FormatInput {
public:
    FormatInput(const std::uint8_t* data, std::size_t size) {
        if (size == 0) return;
        const std::size_t length = data[0] < size - 1 ? data[0] : size - 1;
        format_.assign(reinterpret_cast<const char*>(data) + 1, length);
        format_.resize(std::strlen(format_.c_str()));  // up to the first zero byte
        // No character of a format takes more than one argument.
        arguments_.resize(format_.size() + 1);
        const std::uint8_t* choice = data + 1 + length;
        for (std::uint64_t& argument : arguments_) {
            if (data + size - choice < 2) return;
            const std::size_t at = choice[0] + 256u * choice[1];
            argument = at == 0 ? 0 : Area() + at % (kAreaSize - 1);
            choice += 2;
        }
    }

    const char* format() const { return format_.c_str(); }
    std::size_t length() const { return format_.size(); }
    kit::ArgumentCursor arguments() const {
        return kit::ArgumentCursor(reinterpret_cast<const char*>(arguments_.data()));
    }

private:
    static constexpr std::size_t kHalf = 4096;
    static constexpr std::size_t kAreaSize = 2 * kHalf;
    static constexpr std::size_t kEnd = 3;  // zero bytes that end a wide text wherever it starts

    // Where the area starts.
    static std::uint64_t Area() {
        static const std::uint64_t start = MakeArea();
        return start;
    }

    static std::uint64_t MakeArea() {
        constexpr std::uint64_t kMiddle = 0x200000000000;
        void* const wanted = reinterpret_cast<void*>(kMiddle - kHalf);
        void* const base = mmap(wanted, kAreaSize + kHalf, PROT_READ | PROT_WRITE,
                                MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
        if (base != wanted) {
            std::perror("mmap");
            std::abort();
        }
        auto* const bytes = static_cast<unsigned char*>(base);
        mprotect(bytes + kAreaSize, kHalf, PROT_NONE);
        // Texts of growing length with bytes of all kinds, one or two zero bytes between them.
        std::size_t at = 0;
        for (std::size_t length = 0; at + length + kEnd < kAreaSize; ++length) {
            for (const std::size_t end = at + length; at < end; ++at) {
                bytes[at] = static_cast<unsigned char>(1 + (at * 7 + length) % 255);
            }
            at += 1 + length % 2;
        }
        return kMiddle - kHalf;
    }

    std::string format_;
    std::vector<std::uint64_t> arguments_ = {0};
};
