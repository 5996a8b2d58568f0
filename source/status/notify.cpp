#include "status/notify.h"

static_assert(sizeof(FUNCTION_NOTIFYRECORD) == 32, "callbacks are compiled apart from us");
static_assert(sizeof(FUNCTION_NOTIFYSTRUCT) == 16, "callers are compiled apart from us");

ulong32 SendNotifyMessageA(FUNCTION_NOTIFYSTRUCT target, unsigned int message, unsigned int kind,
                           std::uint64_t value, std::int64_t parameter, std::int64_t extra) {
    if (!target.callback) return 0;
    const FUNCTION_NOTIFYRECORD record = {kind, value, parameter,
                                          static_cast<std::uint64_t>(extra)};
    return target.callback(message, &record, parameter, target.context);
}
