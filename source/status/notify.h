#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"

// What a notification callback is given. Fields in this order are part of the binary interface.
struct FUNCTION_NOTIFYRECORD {
    std::uint32_t kind;
    std::uint64_t value;
    std::int64_t parameter;
    std::uint64_t extra;
};

// The callback gets the message, the record (valid during the call), the parameter once more and
// its own context.
typedef ulong32 (*FUNCTION_NOTIFYCALLBACK)(unsigned int message,
                                           const FUNCTION_NOTIFYRECORD* record,
                                           std::int64_t parameter, std::uint64_t context);

// Where notifications go: a callback, which may be null, and its context.
struct FUNCTION_NOTIFYSTRUCT {
    FUNCTION_NOTIFYCALLBACK callback;
    std::uint64_t context;
};

// Calls the target's callback and returns its result; 0 when there is no callback. Not the function
// of the same name in user32, whose arguments differ.
QELKIT_API ulong32 SendNotifyMessageA(FUNCTION_NOTIFYSTRUCT target, unsigned int message,
                                      unsigned int kind, std::uint64_t value,
                                      std::int64_t parameter, std::int64_t extra);
