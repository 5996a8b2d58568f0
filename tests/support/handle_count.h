#pragma once

#include <cstdint>

#include "platform/handles.h"
#include "platform/windows.h"

// How many handles the process has. Where the system does not count them (Wine) it is the number of
// the next new one, which is the lowest that is free.
inline std::int64_t HandleCount() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    const kit::KernelHandle next(CreateEventA(nullptr, FALSE, FALSE, nullptr));
    return count > 0 ? count : reinterpret_cast<std::intptr_t>(next.get());
}
