#pragma once

#include <cerrno>

#include "file_com/qel_file.h"
#include "platform/retry.h"
#include "platform/windows.h"
#include "status/status_codes.h"

namespace kit {

// How an operation on a file that others may hold ended.
struct BusyOutcome {
    bool done = false;
    int last_errno = 0;  // of the last failed attempt

    bool denied() const { return last_errno == EACCES; }
    // The status of a failure: access denied, or the operation's own.
    int StatusOr(int status) const { return denied() ? kStatusAccessDenied : status; }
};

inline void SleepMs(unsigned ms) { ::Sleep(ms); }

// Runs operation() -> bool, which sets errno when it fails, on a file that other processes may
// hold: 20 attempts, 200 ms apart, while `path` exists or access is denied; once the file is gone,
// exactly one more attempt.
template <typename Operation, typename Pause = void (*)(unsigned)>
BusyOutcome RunOnBusyFile(const char* path, Operation operation, Pause pause = SleepMs) {
    BusyOutcome outcome;
    outcome.done = RetryWhileBusy(
        [&] {
            const bool done = operation();
            if (!done) outcome.last_errno = errno;
            return done;
        },
        [&] {
            return outcome.denied() || CQELFile::IsExists(path) ? Failure::kBusy : Failure::kGone;
        },
        pause);
    return outcome;
}

}  // namespace kit
