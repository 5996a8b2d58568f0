#pragma once

#include "platform/windows.h"

namespace kit {

// The module that holds this code: the DLL, or the program that links the library's objects.
// Needs no start-up code, so it is right in static initialisers too.
HMODULE OwnModule();

}  // namespace kit
