#pragma once

#include <cstdint>

#include "base/types.h"

// What a field of a record holds. A record file stores the value and hands it back; it never
// interprets it, and values that are not listed here are as good as these.
enum FileDataTypeEnum : std::int32_t {
    kFileDataBytes = 0,    // of no known form
    kFileDataText = 1,     // characters of the ANSI code page
    kFileDataInteger = 2,  // signed, lowest byte first
    kFileDataReal = 3,     // IEEE binary floating point
    kFileDataTime = 4,     // a moment, in a form of the caller's
};

// One field of a record: its type and its size in bytes.
struct CRecFieldInfo {
    // Bytes, size 0.
    CRecFieldInfo() = default;
    // Type `field_type`, size `field_size`.
    CRecFieldInfo(FileDataTypeEnum field_type, long32 field_size)
        : type(field_type), size(field_size) {}

    FileDataTypeEnum type = kFileDataBytes;  // not looked at by the library
    long32 size = 0;                         // in bytes
};

// The fields of a record, in their order. Points to an array of the caller's.
struct CRecordInfo {
    // No fields.
    CRecordInfo() = default;
    // The `field_count` descriptors at `field_array`, which are not copied.
    CRecordInfo(long32 field_count, CRecFieldInfo* field_array)
        : count(field_count), fields(field_array) {}

    long32 count = 0;                 // of the fields
    CRecFieldInfo* fields = nullptr;  // the caller's
};

static_assert(sizeof(CRecFieldInfo) == 8 && sizeof(CRecordInfo) == 16,
              "part of the binary interface");
