#include "file_com/detail/record_header.h"

#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "status/status_codes.h"

namespace kit {
namespace {

std::int32_t FieldsOf(const CRecordInfo* info) { return info && info->count > 0 ? info->count : 0; }

// The length of a header with this many descriptors.
std::int64_t TableEnd(std::int32_t fields) {
    return kFixedHeader + std::int64_t{kDescriptorSize} * fields;
}

unsigned char* Provide(std::int32_t length, unsigned char* short_header, HeaderBlock& block) {
    if (length <= kShortHeader) {
        std::memset(short_header, 0, kShortHeader);
        block.reset();
        return short_header;
    }
    HeaderBlock made(new (std::nothrow) unsigned char[static_cast<std::size_t>(length)]());
    if (!made) return nullptr;
    block = std::move(made);
    return block.get();
}

bool HasSoundNumbers(const RecordHeader& header) {
    return header.RecordLength() >= 0 && header.Count() >= 0 && header.MaxCount() >= 0 &&
           header.RingPosition() >= 0;
}

// The descriptors lie inside the header, and a caller who has room for the fields of `info` has
// room for those of the file.
bool HasSoundFields(const RecordHeader& header, const CRecordInfo* info) {
    const std::int32_t fields = header.FieldCount();
    if (fields < 0 || TableEnd(fields) > header.Length()) return false;
    for (std::int32_t j = 0; j < fields; ++j) {
        const std::int32_t size = header.FieldSize(j);
        if (size < 0 || (j < FieldsOf(info) && size != info->fields[j].size)) return false;
    }
    return true;
}

}  // namespace

void RecordHeader::SetFields(const CRecordInfo& info) {
    Set(24, info.count);
    ByteWriter table(bytes_ + kFixedHeader, static_cast<std::size_t>(Length() - kFixedHeader));
    for (std::int32_t j = 0; j < info.count; ++j) {
        table.U32(static_cast<std::uint32_t>(info.fields[j].type));
        table.U32(static_cast<std::uint32_t>(info.fields[j].size));
    }
}

bool FindField(const RecordHeader& header, std::int32_t j, FieldPlace& place) {
    if (j < 0 || j >= header.FieldCount()) return false;
    place = {0, header.FieldSize(j)};
    for (std::int32_t before = 0; before < j; ++before) place.offset += header.FieldSize(before);
    return place.offset + place.size <= header.RecordLength();
}

bool IsUsable(const CRecordInfo* info) {
    const std::int32_t fields = FieldsOf(info);
    if (fields == 0) return true;
    if (!info->fields || TableEnd(fields) > std::numeric_limits<std::int32_t>::max()) return false;
    for (std::int32_t j = 0; j < fields; ++j) {
        if (info->fields[j].size < 0) return false;
    }
    return true;
}

int MakeHeader(std::int32_t record_length, const CRecordInfo* info, unsigned char* short_header,
               HeaderBlock& block) {
    const std::int32_t fields = FieldsOf(info);
    const std::int32_t length =
        fields > 0 ? static_cast<std::int32_t>(TableEnd(fields)) : kShortHeader;
    unsigned char* const bytes = Provide(length, short_header, block);
    if (!bytes) return kStatusOutOfMemory;
    RecordHeader header(bytes);
    header.SetLength(length);
    header.SetRecordLength(record_length);
    if (fields > 0) header.SetFields(*info);
    return kStatusOk;
}

HeaderVerdict ReadHeader(HeaderSource& source, const CRecordInfo* info, unsigned char* short_header,
                         HeaderBlock& block) {
    unsigned char first[4];
    const std::int64_t file_length = source.Length();
    if (file_length < 0) return {kStatusReadFailed, false};
    if (file_length < std::int64_t{sizeof first}) return {kStatusReadFailed, true};
    int status = source.Read(first, sizeof first);
    if (status != kStatusOk) return {status, false};

    const auto length = static_cast<std::int32_t>(LoadLe32(first));
    const std::int32_t described = FieldsOf(info);
    // Quirk: a file with more fields than the caller describes counts as one without a header, so
    // that an update empties it. Callers rely on a changed description starting a file anew.
    // Pinned by RecordHeader.TellsUnreadableFromDamaged.
    if (described > 0 && length > TableEnd(described)) return {kStatusFileDamaged, true};
    // Quirk: a negative length is reported as the size of a block that memory has no room for.
    // Programs show that status. Pinned by RecordHeader.TellsUnreadableFromDamaged.
    if (length < 0) return {kStatusOutOfMemory, true};
    if (length > file_length) return {kStatusReadFailed, true};
    if (length < kFixedHeader) return {kStatusFileDamaged, false};

    unsigned char* const bytes = Provide(length, short_header, block);
    if (!bytes) return {kStatusOutOfMemory, false};
    status = source.Read(bytes, static_cast<std::size_t>(length));
    if (status != kStatusOk) return {status, false};
    const RecordHeader header(bytes);
    // The file may have changed since its first bytes were read.
    const bool is_sound =
        header.Length() == length && HasSoundNumbers(header) && HasSoundFields(header, info);
    return {is_sound ? kStatusOk : kStatusFileDamaged, false};
}

CountFit FitCount(RecordHeader header, std::int64_t file_length) {
    if (header.End() <= file_length) return CountFit::kFits;
    if (file_length <= header.Length()) return CountFit::kNothingBehind;
    // Records of length 0 always fit, so there is a length to divide by.
    const std::int64_t whole = (file_length - header.Length()) / header.RecordLength();
    header.SetCount(static_cast<std::int32_t>(whole));
    return CountFit::kLowered;
}

}  // namespace kit
