#pragma once

// Makes the allocations of the code under test fail, in a native program of its own that contains
// failing_memory.cpp and is linked with -Wl,--wrap=malloc,--wrap=calloc.
namespace failing_memory {

// Until the object is gone: lets the next `failing_first` allocations fail, then `count` succeed, and
// all others fail. malloc, calloc and operator new(std::nothrow) count; those inside the standard
// library do not.
class After {
public:
    explicit After(int count, int failing_first = 0);
    ~After();
    After(const After&) = delete;
    After& operator=(const After&) = delete;
};

}  // namespace failing_memory
