#pragma once

#include <cstdint>
#include <cstring>

#include "base/byte_order.h"
#include "blob/detail/heap_bytes.h"

// The serial form of blobs, once for all that it is read from and written to:
//
//     offset  size  field
//     0       4     byte count n, little-endian
//     4       n     bytes
//     4 + n   4     unused-bit count, little-endian (bit blobs only)
//
// A source has `std::uint32_t Read(void* to, std::uint32_t size)`, which returns how many bytes there
// were, and `std::uint32_t Limit() const`, more than which no count can be true. A sink has
// `std::uint32_t Write(const void* from, std::uint32_t size)`, which returns how many bytes it took.

namespace kit {

enum class BlobForm { kBytes, kBits };

constexpr std::uint32_t kBlobFieldSize = 4;

// How long the serial form of `count` bytes is; it may be more than 32 bits can say.
constexpr std::uint64_t BlobSerialSize(BlobForm form, std::uint32_t count) {
    const std::uint64_t fields = form == BlobForm::kBits ? 2 : 1;
    return fields * kBlobFieldSize + count;
}

enum class BlobRead {
    kDone,
    kNoPlace,  // the place to read from lies behind the end
    kRefused,  // no count there, or one that cannot be true: nothing was allocated for it
    kCutOff,   // fewer bytes than the count says, or no unused-bit count behind them
    kNoMemory,
};

// A blob as it is read.
struct SerialBlob {
    BlobRead outcome = BlobRead::kRefused;
    HeapBytes bytes;
    std::uint32_t count = 0;
    std::uint32_t unused_bits = 0;
};

template <typename Source>
bool ReadBlobField(Source& source, std::uint32_t& value) {
    unsigned char field[kBlobFieldSize];
    if (source.Read(field, sizeof field) != sizeof field) return false;
    value = LoadLe32(field);
    return true;
}

template <typename Source>
SerialBlob ReadBlob(Source&& source, BlobForm form) {
    SerialBlob blob;
    if (!ReadBlobField(source, blob.count) || blob.count > source.Limit()) return blob;
    blob.bytes = NewZeroedBytes(blob.count);
    if (blob.count > 0 && !blob.bytes) {
        blob.outcome = BlobRead::kNoMemory;
        return blob;
    }
    const bool is_whole =
        (blob.count == 0 || source.Read(blob.bytes.get(), blob.count) == blob.count) &&
        (form == BlobForm::kBytes || ReadBlobField(source, blob.unused_bits));
    blob.outcome = is_whole ? BlobRead::kDone : BlobRead::kCutOff;
    return blob;
}

// What is written of a blob.
struct BlobView {
    BlobForm form;
    const unsigned char* bytes;
    std::uint32_t count;
    std::uint32_t unused_bits;

    std::uint64_t SerialSize() const { return BlobSerialSize(form, count); }
};

template <typename Sink>
bool WriteBlobField(Sink& sink, std::uint32_t value) {
    unsigned char field[kBlobFieldSize];
    StoreLe32(field, value);
    return sink.Write(field, sizeof field) == sizeof field;
}

// Whether the sink took all of it.
template <typename Sink>
bool WriteBlob(Sink&& sink, const BlobView& blob) {
    return WriteBlobField(sink, blob.count) &&
           (blob.count == 0 || sink.Write(blob.bytes, blob.count) == blob.count) &&
           (blob.form == BlobForm::kBytes || WriteBlobField(sink, blob.unused_bits));
}

// --- From and into memory ------------------------------------------------------------------------

class MemorySource {
public:
    MemorySource(const void* data, std::uint32_t size) : reader_(data, size) {}

    std::uint32_t Read(void* to, std::uint32_t size) {
        const auto* const from = reader_.Take(size);
        if (!from) return 0;
        std::memcpy(to, from, size);
        return size;
    }
    std::uint32_t Limit() const { return static_cast<std::uint32_t>(reader_.left()); }

private:
    ByteReader reader_;
};

class MemorySink {
public:
    MemorySink(void* data, std::uint32_t room) : writer_(data, room) {}

    std::uint32_t Write(const void* from, std::uint32_t size) {
        writer_.Bytes(from, size);
        return writer_.ok() ? size : 0;
    }

private:
    ByteWriter writer_;
};

// A null buffer, or one that does not hold all: not kDone.
inline SerialBlob ReadBlobFromMemory(const void* buffer, std::uint32_t size, BlobForm form) {
    return ReadBlob(MemorySource(buffer, buffer ? size : 0), form);
}

// Returns the bytes written; 0, and nothing written, for a null buffer or too little room.
inline std::uint32_t WriteBlobToMemory(void* buffer, std::uint32_t room, const BlobView& blob) {
    if (!buffer || blob.SerialSize() > room) return 0;
    return WriteBlob(MemorySink(buffer, room), blob) ? static_cast<std::uint32_t>(blob.SerialSize())
                                                     : 0;
}

}  // namespace kit
