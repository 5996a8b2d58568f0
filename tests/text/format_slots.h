#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "text/detail/format_input.h"

// The argument list of a variadic call of Windows x86-64, built on any machine. What an argument
// leaves of its slot is filled with rubbish, as a compiler may do.
class Slots {
public:
    template <typename... Arguments>
    explicit Slots(Arguments... arguments) {
        (Add(&arguments, sizeof arguments), ...);
    }

    kit::ArgumentCursor cursor() const {
        return kit::ArgumentCursor(reinterpret_cast<const char*>(slots_.data()));
    }

private:
    void Add(const void* value, std::size_t size) {
        std::uint64_t slot = 0xDEADBEEFDEADBEEF;
        std::memcpy(&slot, value, size);
        slots_.push_back(slot);
    }

    std::vector<std::uint64_t> slots_;
};
