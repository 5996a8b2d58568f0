#pragma once

// The header of a record file: its fields, what makes it believable, and how it is repaired. Knows
// bytes and lengths only; who reads and writes the file is somebody else (record_file.cpp).
//
//    0  length H of the header: where record 0 begins
//    4  record length R
//    8  record count N
//   12  flags
//   16  maximum count M, 0 for none
//   20  ring position
//   24  field count F
//   28  F descriptors: type, size; one of zeros when F is 0
//
// All are signed 32-bit numbers, lowest byte first.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/byte_order.h"
#include "file_com/record_info.h"

namespace kit {

constexpr std::int32_t kFixedHeader = 28;  // up to the descriptors
constexpr std::int32_t kShortHeader = 36;  // without a field table
constexpr std::int32_t kDescriptorSize = 8;

// Flags: closing leaves what lies behind the last record.
constexpr std::int32_t kKeepsLength = 1;

// A view on the header in memory.
class RecordHeader {
public:
    // `bytes` has room for a short header and for as much as Length() says.
    explicit RecordHeader(unsigned char* bytes) : bytes_(bytes) {}

    std::int32_t Length() const { return At(0); }
    std::int32_t RecordLength() const { return At(4); }
    std::int32_t Count() const { return At(8); }
    std::int32_t Flags() const { return At(12); }
    std::int32_t MaxCount() const { return At(16); }
    std::int32_t RingPosition() const { return At(20); }
    std::int32_t FieldCount() const { return At(24); }
    std::int32_t FieldSize(std::int32_t j) const {
        return At(kFixedHeader + std::size_t{kDescriptorSize} * static_cast<std::size_t>(j) + 4);
    }

    void SetLength(std::int32_t value) { Set(0, value); }
    void SetRecordLength(std::int32_t value) { Set(4, value); }
    void SetCount(std::int32_t value) { Set(8, value); }
    void SetMaxCount(std::int32_t value) { Set(16, value); }
    void SetRingPosition(std::int32_t value) { Set(20, value); }
    void SetFields(const CRecordInfo& info);

    // Where record i begins; for i = Count(), where the records end. 64 bits hold every product.
    std::int64_t OffsetOf(std::int32_t i) const {
        return Length() + std::int64_t{i} * RecordLength();
    }
    std::int64_t End() const { return OffsetOf(Count()); }

private:
    std::int32_t At(std::size_t offset) const {
        return static_cast<std::int32_t>(LoadLe32(bytes_ + offset));
    }
    void Set(std::size_t offset, std::int32_t value) {
        StoreLe32(bytes_ + offset, static_cast<std::uint32_t>(value));
    }

    unsigned char* bytes_;
};

// Where field j lies in its record.
struct FieldPlace {
    std::int64_t offset;
    std::int32_t size;
};
// False when there is no such field, or when a part of it would lie behind the record.
bool FindField(const RecordHeader& header, std::int32_t j, FieldPlace& place);

// Memory of a header that is longer than a short one.
using HeaderBlock = std::unique_ptr<unsigned char[]>;

// Whether a caller's description can become a field table: no size below zero, a header of less
// than 2 GiB. Null and 0 fields or fewer mean: no field table.
bool IsUsable(const CRecordInfo* info);

// Makes the header of an empty file of records of this length, with a field table if `info`, which
// is usable, has fields. `short_header` has room for one; a longer one gets a block.
// Returns a status: 0, or 16 with nothing changed.
int MakeHeader(std::int32_t record_length, const CRecordInfo* info, unsigned char* short_header,
               HeaderBlock& block);

// The beginning of a file.
class HeaderSource {
public:
    virtual ~HeaderSource() = default;
    // Of the file; -1 when it cannot be had.
    virtual std::int64_t Length() = 0;
    // Brings the first `size` bytes of the file. Returns a status.
    virtual int Read(unsigned char* to, std::size_t size) = 0;
};

// What reading a header came to.
struct HeaderVerdict {
    int status;
    // The file has no header that could be read; opening for update gives it a fresh one. Otherwise
    // a file whose header is refused stays as it is.
    bool is_unreadable;
};

// Reads the header of a file into `short_header` or `block`, as MakeHeader does, and checks it.
//   info   the description of a caller who will take fields of the sizes that it states; or null
// Nothing is allocated that the file has not the bytes for. After status 0 every offset that the
// header leads to is 0 or more, and its descriptors lie inside it.
HeaderVerdict ReadHeader(HeaderSource& source, const CRecordInfo* info, unsigned char* short_header,
                         HeaderBlock& block);

enum class CountFit {
    kFits,
    kLowered,        // the header claimed more; its count is now that of the whole records
    kNothingBehind,  // it claimed records where the file has ended
};
// Makes the count of a sound header fit a file of this length, which is not below the header's.
CountFit FitCount(RecordHeader header, std::int64_t file_length);

}  // namespace kit
