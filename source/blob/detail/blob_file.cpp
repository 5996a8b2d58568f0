#include "blob/detail/blob_file.h"

#include <algorithm>
#include <cstdio>

#include "file_com/qel_file.h"

namespace kit {
namespace {

constexpr ulong32 kNoLength = 0xFFFFFFFF;

class FileSource {
public:
    FileSource(const CQELFile& file, ulong32 limit) : file_(file), limit_(limit) {}
    std::uint32_t Read(void* to, std::uint32_t size) { return file_.Read(to, size); }
    std::uint32_t Limit() const { return limit_; }

private:
    const CQELFile& file_;
    const ulong32 limit_;
};

class FileSink {
public:
    explicit FileSink(CQELFile& file) : file_(file) {}
    std::uint32_t Write(const void* from, std::uint32_t size) { return file_.Write(from, size); }

private:
    CQELFile& file_;
};

// Seeking takes signed distances: a far place is reached in two steps.
bool MoveTo(const CQELFile& file, ulong32 offset) {
    constexpr ulong32 kFarthest = 0x7FFFFFFF;
    const ulong32 near_part = (std::min)(offset, kFarthest);
    return file.Seek(static_cast<long32>(near_part), SEEK_SET) == 0 &&
           (near_part == offset ||
            file.Seek(static_cast<long32>(offset - near_part), SEEK_CUR) == 0);
}

// The file's length; kNoLength when it cannot be had. Seeking hands buffered data to the system, so
// that what was just written counts, and lets reads and writes follow one another.
ulong32 SettledLength(const CQELFile& file) {
    return file.Seek(0, SEEK_CUR) == 0 ? file.Length() : kNoLength;
}

// Cuts the file at `begin`. The errors of a file that only records them stay recorded.
void TakeBack(CQELFile& file, ulong32 begin) {
    const int status = file.Status();
    const int error_number = file.Errno();
    if (MoveTo(file, begin)) file.Truncate();
    if (!file.IsError()) file.SetError(status, error_number);
}

}  // namespace

SerialBlob ReadBlobFromFile(const CQELFile& file, ulong32 offset, BlobForm form) {
    const ulong32 length = SettledLength(file);
    if (length == kNoLength) return {};
    if (offset == kCurrentPosition) return ReadBlob(FileSource(file, length), form);
    // Quirk: at the very end of the file there is no place for a blob, which keeps its content, while
    // a bit blob tries there, fails and is emptied; its count may also be as great as the whole file.
    // Callers tell "no record" from "bad record" by it.
    // Pinned by BlobFile.EndsForBlobsWhereItStillBeginsForBitBlobs.
    const bool is_bits = form == BlobForm::kBits;
    SerialBlob nothing;
    nothing.outcome = BlobRead::kNoPlace;
    if (is_bits ? offset > length : offset >= length) return nothing;
    if (!MoveTo(file, offset)) return {};
    return ReadBlob(FileSource(file, is_bits ? length : length - offset), form);
}

ulong32 WriteBlobToFile(CQELFile& file, ulong32 offset, const BlobView& blob) {
    if (blob.SerialSize() > UINT32_MAX) return 0;
    const ulong32 length = SettledLength(file);
    if (length == kNoLength) return 0;
    if (offset != kCurrentPosition && (length < offset || !MoveTo(file, offset))) return 0;
    const ulong32 begin = file.CurPos();
    if (begin == kNoLength) return 0;
    try {
        if (WriteBlob(FileSink(file), blob)) return static_cast<ulong32>(blob.SerialSize());
    } catch (const XQELFile&) {
        TakeBack(file, begin);
        throw;
    }
    TakeBack(file, begin);
    return 0;
}

}  // namespace kit
