#include "blob/ident_obj.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "blob/detail/blob_file.h"
#include "blob/detail/out_of_memory.h"
#include "text/codecs.h"
#include "text/qel_string.h"

static_assert(sizeof(IdentObj) == 24, "part of the binary interface");

namespace {

kit::HeapBytes BytesOrThrow(kit::HeapBytes bytes, std::uint32_t size) {
    if (size > 0 && !bytes) kit::ThrowOutOfMemory();
    return bytes;
}

kit::HeapBytes CopyOf(const void* data, std::uint32_t size) {
    kit::HeapBytes bytes = BytesOrThrow(kit::NewBytes(size), size);
    if (size > 0) std::memcpy(bytes.get(), data, size);
    return bytes;
}

// What is there to be copied or compared: the count of a blob without bytes says nothing.
std::uint32_t CountOf(const CRYPTOAPI_BLOB& blob) { return blob.pbData ? blob.cbData : 0; }

// Below 0, 0, above 0: the shorter one first, then by bytes.
int CompareBlobs(const CRYPTOAPI_BLOB& a, const CRYPTOAPI_BLOB& b) {
    const std::uint32_t a_count = CountOf(a);
    const std::uint32_t b_count = CountOf(b);
    if (a_count != b_count) return a_count < b_count ? -1 : 1;
    return a_count == 0 ? 0 : std::memcmp(a.pbData, b.pbData, a_count);
}

kit::BlobView ViewOf(const CRYPTOAPI_BLOB& blob) {
    return {kit::BlobForm::kBytes, blob.pbData, CountOf(blob), 0};
}

}  // namespace

// --- Life ----------------------------------------------------------------------------------------

IdentObj::IdentObj() : CRYPTOAPI_BLOB{0, nullptr} {}

IdentObj::IdentObj(const void* data, ulong32 size) : IdentObj() {
    if (data) {
        Assign(data, size);
    } else {
        Own(BytesOrThrow(kit::NewZeroedBytes(size), size).release(), size);
    }
}

IdentObj::IdentObj(const CRYPTOAPI_BLOB& other) : IdentObj() { Assign(other.pbData, other.cbData); }

IdentObj::IdentObj(const IdentObj& other) : IdentObj() { Assign(other.pbData, other.cbData); }

IdentObj::~IdentObj() { std::free(pbData); }

IdentObj& IdentObj::operator=(const IdentObj& other) {
    return *this = static_cast<const CRYPTOAPI_BLOB&>(other);
}

IdentObj& IdentObj::operator=(const CRYPTOAPI_BLOB& other) {
    if (&other != this) Assign(other.pbData, other.cbData);
    return *this;
}

IdentObj& IdentObj::operator=(const char* text) {
    const std::size_t length = text ? std::strlen(text) : 0;
    if (length > UINT32_MAX) kit::ThrowOutOfMemory();
    Assign(text, static_cast<ulong32>(length));
    return *this;
}

// --- Content -------------------------------------------------------------------------------------

void IdentObj::Own(void* block, ulong32 size) {
    std::free(pbData);
    pbData = static_cast<BYTE*>(block);
    cbData = size;
}

void IdentObj::Alloc(ulong32 size) {
    Own(nullptr, 0);
    Own(BytesOrThrow(kit::NewBytes(size), size).release(), size);
}

void IdentObj::Assign(const void* data, ulong32 size) {
    const ulong32 count = data ? size : 0;
    Own(CopyOf(data, count).release(), count);
}

void IdentObj::Resize(ulong32 size) {
    if (size == 0) return Own(nullptr, 0);
    void* const block = std::realloc(pbData, size);
    if (!block) kit::ThrowOutOfMemory();
    pbData = static_cast<BYTE*>(block);
    cbData = size;
}

void IdentObj::Realloc(ulong32 size) {
    if (size != cbData) Resize(size);
}

void IdentObj::AddData(const void* data, ulong32 size) {
    if (size == 0) return;
    const ulong32 old_size = cbData;
    if (size > UINT32_MAX - old_size) kit::ThrowOutOfMemory();
    // Own bytes move when the block does.
    const auto* from = static_cast<const BYTE*>(data);
    const bool is_own =
        data && pbData && !std::less<>()(from, pbData) && std::less<>()(from, pbData + old_size);
    const std::ptrdiff_t place = is_own ? from - pbData : 0;
    Resize(old_size + size);
    if (is_own) from = pbData + place;
    if (from) std::memmove(pbData + old_size, from, size);
}

void IdentObj::Empty() { Own(nullptr, 0); }

IdentObj IdentObj::Reverse(const IdentObj& blob) {
    IdentObj reversed(blob);
    std::reverse(reversed.pbData, reversed.pbData + reversed.cbData);
    return reversed;
}

ulong32 IdentObj::SetByHexString(const char* hex) {
    const ulong32 size = QELHex2Bin(hex, nullptr, 0);
    kit::HeapBytes bytes = BytesOrThrow(kit::NewBytes(size), size);
    if (size > 0) QELHex2Bin(hex, bytes.get(), size);
    Own(bytes.release(), size);
    return size;
}

// --- Comparison ----------------------------------------------------------------------------------

bool IdentObj::operator==(const IdentObj& other) const { return CompareBlobs(*this, other) == 0; }
bool IdentObj::operator!=(const IdentObj& other) const { return CompareBlobs(*this, other) != 0; }
bool IdentObj::operator==(const CRYPTOAPI_BLOB& other) const {
    return CompareBlobs(*this, other) == 0;
}
bool IdentObj::operator!=(const CRYPTOAPI_BLOB& other) const {
    return CompareBlobs(*this, other) != 0;
}
bool IdentObj::operator<(const IdentObj& other) const { return CompareBlobs(*this, other) < 0; }
bool IdentObj::operator>(const IdentObj& other) const { return CompareBlobs(*this, other) > 0; }

bool IdentObj::operator==(const CQELString& text) const {
    return CQELString(reinterpret_cast<const char*>(pbData), std::uint64_t{CountOf(*this)}) == text;
}
bool IdentObj::operator!=(const CQELString& text) const { return !(*this == text); }

// --- Serial form ---------------------------------------------------------------------------------

ulong32 IdentObj::ReadData(const CQELFile& file, ulong32 offset) {
    kit::SerialBlob blob = kit::ReadBlobFromFile(file, offset, kit::BlobForm::kBytes);
    if (kit::IsWhole(blob)) {
        Own(blob.bytes.release(), blob.count);
        return GetObjectSize();
    }
    if (blob.outcome == kit::BlobRead::kCutOff) Own(nullptr, 0);
    return 0;
}

ulong32 IdentObj::ReadData(const void* buffer, ulong32 size) {
    kit::SerialBlob blob = kit::ReadBlobFromMemory(buffer, size, kit::BlobForm::kBytes);
    if (!kit::IsWhole(blob)) return 0;
    Own(blob.bytes.release(), blob.count);
    return GetObjectSize();
}

ulong32 IdentObj::WriteData(CQELFile& file, ulong32 offset) const {
    return kit::WriteBlobToFile(file, offset, ViewOf(*this));
}

ulong32 IdentObj::WriteData(void* buffer, ulong32 size) const {
    return kit::WriteBlobToMemory(buffer, size, ViewOf(*this));
}
