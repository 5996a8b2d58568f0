#pragma once

#include <cstdint>

#include "base/types.h"

// What a field of a record holds. A record file stores the value and hands it back; it never
// interprets it, and values that are not listed here are as good as these.
enum FileDataTypeEnum : std::int32_t {
    kFileDataBytes = 0,
    kFileDataText = 1,     // characters of the ANSI code page
    kFileDataInteger = 2,  // signed, lowest byte first
    kFileDataReal = 3,     // IEEE binary floating point
    kFileDataTime = 4,
};

// One field of a record: its type and its size in bytes.
struct CRecFieldInfo {
    CRecFieldInfo() = default;
    CRecFieldInfo(FileDataTypeEnum field_type, long32 field_size)
        : type(field_type), size(field_size) {}

    FileDataTypeEnum type = kFileDataBytes;
    long32 size = 0;
};

// The fields of a record, in their order. Points to an array of the caller's.
struct CRecordInfo {
    CRecordInfo() = default;
    CRecordInfo(long32 field_count, CRecFieldInfo* field_array)
        : count(field_count), fields(field_array) {}

    long32 count = 0;
    CRecFieldInfo* fields = nullptr;
};

static_assert(sizeof(CRecFieldInfo) == 8 && sizeof(CRecordInfo) == 16,
              "part of the binary interface");
