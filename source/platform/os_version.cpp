#include "platform/os_version.h"

namespace kit {

OSVERSIONINFOEXA OsVersion() {
    OSVERSIONINFOEXA version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version))) return {};
    return version;
}

}  // namespace kit
