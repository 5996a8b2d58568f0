#pragma once

#include "blob/detail/blob_serial.h"
#include "status/qel_status.h"
#include "status/status_codes.h"

namespace kit {

[[noreturn]] inline void ThrowOutOfMemory() { throw XQELStatus(kStatusOutOfMemory, true); }

// Whether all of a blob was read; throws when there was no memory for it.
inline bool IsWhole(const SerialBlob& blob) {
    if (blob.outcome == BlobRead::kNoMemory) ThrowOutOfMemory();
    return blob.outcome == BlobRead::kDone;
}

}  // namespace kit
