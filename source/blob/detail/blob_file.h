#pragma once

#include "base/types.h"
#include "blob/detail/blob_serial.h"

class CQELFile;

// Blobs in files. An offset of kCurrentPosition means the file's position. Errors that the file
// raises pass through.

namespace kit {

constexpr ulong32 kCurrentPosition = 0xFFFFFFFF;

SerialBlob ReadBlobFromFile(const CQELFile& file, ulong32 offset, BlobForm form);

// Returns the bytes written; 0 when not all could be written, and then the file is cut where the
// record would have begun.
ulong32 WriteBlobToFile(CQELFile& file, ulong32 offset, const BlobView& blob);

}  // namespace kit
