#pragma once

#include "config/registry.h"

namespace kit {

// The messages of the library's table that registry failures come with.
enum RegistryMessage {
    kCannotCreateKey = 1011,   // key
    kCannotOpenKey = 1012,     // key
    kCannotWriteValue = 1014,  // value, key
    kCannotQuery = 1015,       // key, or "key : value"
    kCannotEnumerate = 1016,   // key
    kNoRoomForPath = 1017,     // key
    kCannotDeleteKey = 1018,   // key, sub-key
    kNoRoomForSubPath = 1019,  // sub-key, key
    kCannotCopyValue = 1020,   // value, key
};

// Throws XQELRegError with a message about one name or two, and the system's code.
[[noreturn]] void ThrowKeyError(RegistryMessage message, LSTATUS code, const char* name);
[[noreturn]] void ThrowKeyError(RegistryMessage message, LSTATUS code, const char* first,
                                const char* second);

}  // namespace kit
