#include "blob/crypt_bit_blob.h"

#include "blob/detail/blob_file.h"
#include "blob/detail/out_of_memory.h"

static_assert(sizeof(CQELCryptBitBlob) == 32, "part of the binary interface");

namespace {

constexpr ulong32 kFields = 8;

kit::BlobView ViewOf(const CQELCryptBitBlob& blob) {
    return {kit::BlobForm::kBits, blob.pbData, blob.pbData ? blob.cbData : 0, blob.cUnusedBits};
}

}  // namespace

CQELCryptBitBlob::CQELCryptBitBlob() = default;

CQELCryptBitBlob::CQELCryptBitBlob(const CRYPT_BIT_BLOB& other)
    : IdentObj(CRYPTOAPI_BLOB{other.cbData, other.pbData}), cUnusedBits(other.cUnusedBits) {}

CQELCryptBitBlob::CQELCryptBitBlob(const CQELCryptBitBlob& other) = default;

CQELCryptBitBlob::~CQELCryptBitBlob() = default;

CQELCryptBitBlob& CQELCryptBitBlob::operator=(const CRYPT_BIT_BLOB& other) {
    Assign(other.pbData, other.cbData);
    cUnusedBits = other.cUnusedBits;
    return *this;
}

CQELCryptBitBlob& CQELCryptBitBlob::operator=(const CQELCryptBitBlob& other) = default;

bool CQELCryptBitBlob::operator==(const CQELCryptBitBlob& other) const {
    return IdentObj::operator==(static_cast<const IdentObj&>(other)) &&
           cUnusedBits == other.cUnusedBits;
}
bool CQELCryptBitBlob::operator!=(const CQELCryptBitBlob& other) const { return !(*this == other); }

// Quirk: both parts must be less, so blobs with greater bytes and fewer unused bits stand in no order
// at all. Callers ask "less in every respect" by it; a sorted container needs another order.
// Pinned by BitBlob.IsLessOnlyInBothParts.
bool CQELCryptBitBlob::operator<(const CQELCryptBitBlob& other) const {
    return IdentObj::operator<(other) && cUnusedBits < other.cUnusedBits;
}
bool CQELCryptBitBlob::operator>(const CQELCryptBitBlob& other) const { return other < *this; }

ulong32 CQELCryptBitBlob::Take(void* block, ulong32 size, ulong32 unused_bits) {
    Own(block, size);
    cUnusedBits = unused_bits;
    return kFields + size;
}

ulong32 CQELCryptBitBlob::ReadData(const CQELFile& file, ulong32 offset) {
    kit::SerialBlob blob = kit::ReadBlobFromFile(file, offset, kit::BlobForm::kBits);
    if (kit::IsWhole(blob)) return Take(blob.bytes.release(), blob.count, blob.unused_bits);
    if (blob.outcome != kit::BlobRead::kNoPlace) Take(nullptr, 0, 0);
    return 0;
}

ulong32 CQELCryptBitBlob::ReadData(const void* buffer, ulong32 size) {
    kit::SerialBlob blob = kit::ReadBlobFromMemory(buffer, size, kit::BlobForm::kBits);
    if (!kit::IsWhole(blob)) return 0;
    return Take(blob.bytes.release(), blob.count, blob.unused_bits);
}

ulong32 CQELCryptBitBlob::WriteData(CQELFile& file, ulong32 offset) const {
    return kit::WriteBlobToFile(file, offset, ViewOf(*this));
}

ulong32 CQELCryptBitBlob::WriteData(void* buffer, ulong32 size) const {
    return kit::WriteBlobToMemory(buffer, size, ViewOf(*this));
}
