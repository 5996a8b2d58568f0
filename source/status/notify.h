#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"

// What a notification callback is given. Fields in this order are part of the binary interface.
struct FUNCTION_NOTIFYRECORD {
    std::uint32_t kind;      // as SendNotifyMessageA was given it, like the others
    std::uint64_t value;     // the sender's
    std::int64_t parameter;  // the sender's
    std::uint64_t extra;     // the sender's
};

// The callback gets the message, the record (valid during the call), the parameter once more and
// its own context.
typedef ulong32 (*FUNCTION_NOTIFYCALLBACK)(unsigned int message,
                                           const FUNCTION_NOTIFYRECORD* record,
                                           std::int64_t parameter, std::uint64_t context);

// Where notifications go: a callback, which may be null, and its context.
struct FUNCTION_NOTIFYSTRUCT {
    FUNCTION_NOTIFYCALLBACK callback;  // null: nobody is told
    std::uint64_t context;             // the callback's own
};

// Calls the target's callback with `message`, a record of `kind`, `value`, `parameter` and `extra`,
// and `parameter` once more, and returns its result; 0 when there is no callback. Not the function
// of the same name in user32, whose arguments differ.
QELKIT_API ulong32 SendNotifyMessageA(FUNCTION_NOTIFYSTRUCT target, unsigned int message,
                                      unsigned int kind, std::uint64_t value,
                                      std::int64_t parameter, std::int64_t extra);
