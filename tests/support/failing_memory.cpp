#include "support/failing_memory.h"

#include <climits>
#include <cstddef>
#include <new>

namespace {
int refused = 0;
int allowed = INT_MAX;
bool Allowed() {
    if (refused > 0) {
        --refused;
        return false;
    }
    return allowed == INT_MAX || allowed-- > 0;
}
}  // namespace

namespace failing_memory {
After::After(int count, int failing_first) {
    refused = failing_first;
    allowed = count;
}
After::~After() {
    refused = 0;
    allowed = INT_MAX;
}
}  // namespace failing_memory

// The linker sends every call of malloc and calloc in this program here (--wrap).
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_malloc(std::size_t size) { return Allowed() ? __real_malloc(size) : nullptr; }
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return Allowed() ? __real_calloc(count, size) : nullptr;
}
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allowed() ? ::operator new(size) : nullptr;
}
