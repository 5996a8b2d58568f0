#include "platform/own_module.h"

// Both linkers place this symbol at the module's first byte.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace kit {

HMODULE OwnModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }

}  // namespace kit
