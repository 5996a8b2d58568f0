#pragma once

#include "status/qel_status.h"

namespace kit {

// Records a failed operation on a path in a status, which throws it if its raise flag is set.
inline void Report(const XQELFile& status, const char* path, int code, int error_number) {
    status.SetErrMessEx(path);
    status.SetError(code, error_number);
}

}  // namespace kit
