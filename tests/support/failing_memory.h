#pragma once

// Makes the allocations of the code under test fail, in a native program of its own that contains
// failing_memory.cpp and is linked with -Wl,--wrap=malloc,--wrap=calloc.
namespace failing_memory {

// Lets `count` more allocations succeed and none after them, until the object is gone. malloc,
// calloc and operator new(std::nothrow) count; those inside the standard library do not.
class After {
public:
    explicit After(int count);
    ~After();
    After(const After&) = delete;
    After& operator=(const After&) = delete;
};

}  // namespace failing_memory
