#pragma once

#include <cstdint>

namespace kit {

// What a volume has room for, in bytes.
struct DiskSpace {
    std::uint64_t available = 0;  // to the caller, quotas included
    std::uint64_t total = 0;
    bool counted_in_clusters = false;  // by the query of old systems, which knows no quotas
};

// Asks for the volume that holds the existing folder `folder`; systems without the extended query
// (which is looked up at run time) are asked by `root`, the root folder of the volume. Returns
// whether the system told; false leaves GetLastError's code.
bool QueryDiskSpace(const char* folder, const char* root, DiskSpace& space);

}  // namespace kit
