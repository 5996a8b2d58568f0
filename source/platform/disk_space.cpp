#include "platform/disk_space.h"

#include "platform/windows.h"

namespace kit {
namespace {

using ExtendedQuery = BOOL(WINAPI*)(const char*, ULARGE_INTEGER*, ULARGE_INTEGER*, ULARGE_INTEGER*);

ExtendedQuery FindExtendedQuery() {
    const HMODULE kernel = ::GetModuleHandleA("kernel32.dll");
    const FARPROC found = kernel ? ::GetProcAddress(kernel, "GetDiskFreeSpaceExA") : nullptr;
    return reinterpret_cast<ExtendedQuery>(reinterpret_cast<void*>(found));
}

bool AskInClusters(const char* root, DiskSpace& space) {
    DWORD sectors_per_cluster, bytes_per_sector, free_clusters, clusters;
    if (!::GetDiskFreeSpaceA(root, &sectors_per_cluster, &bytes_per_sector, &free_clusters,
                             &clusters)) {
        return false;
    }
    const std::uint64_t cluster = std::uint64_t{sectors_per_cluster} * bytes_per_sector;
    space = {cluster * free_clusters, cluster * clusters, true};
    return true;
}

}  // namespace

bool QueryDiskSpace(const char* folder, const char* root, DiskSpace& space) {
    const ExtendedQuery query = FindExtendedQuery();
    if (!query) return AskInClusters(root, space);
    ULARGE_INTEGER available, total;
    if (!query(folder, &available, &total, nullptr)) return false;
    space = {available.QuadPart, total.QuadPart, false};
    return true;
}

}  // namespace kit
