#pragma once

#include "platform/windows.h"

namespace kit {

// What the system calls itself: rules of old families decide by the platform identifier (1 is the
// family without security, 2 the NT family), the presence of a service by the suite mask. All zero
// when the system does not tell.
OSVERSIONINFOEXA OsVersion();

}  // namespace kit
