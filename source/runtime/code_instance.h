#pragma once

#include "base/export.h"
#include "platform/windows.h"

namespace QEL {

// The module, DLL or program, whose code contains the call; null when the system cannot tell.
//
// It is found by the address to which the call returns. So use the result in the function that
// calls: a mere `return GetCurrentCodeInstance();` may become a jump, and then counts as a call by
// the function above.
QELKIT_API HINSTANCE GetCurrentCodeInstance();

}  // namespace QEL
