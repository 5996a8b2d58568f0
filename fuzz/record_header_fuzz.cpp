// Input: a byte that counts the caller's fields, that many bytes of their sizes, and a file. Opens it
// as a record file for update does, up to the point where the header is written back.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/header_bytes.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// The file as the engine sees it, and whether it was asked for more than there is.
class CheckedSource : public BytesSource {
public:
    using BytesSource::BytesSource;
    int Read(unsigned char* to, std::size_t size) override {
        Require(static_cast<std::int64_t>(size) <= Length());
        return BytesSource::Read(to, size);
    }
};

void RequireSoundFields(const kit::RecordHeader& header, const std::vector<CRecFieldInfo>& known) {
    for (std::int32_t j = 0; j < header.FieldCount(); ++j) {
        kit::FieldPlace place = {};
        if (!kit::FindField(header, j, place)) continue;
        Require(place.offset >= 0 && place.size >= 0);
        Require(place.offset + place.size <= header.RecordLength());
        const auto at = static_cast<std::size_t>(j);
        if (at < known.size()) Require(place.size == known[at].size);
    }
}

// The header of an empty file reads back as it was made.
void RequireFreshHeader(const CRecordInfo* info, unsigned char* bytes, kit::HeaderBlock& block) {
    Require(kit::MakeHeader(12, info, bytes, block) == 0);
    const unsigned char* const made = block ? block.get() : bytes;
    const auto length = static_cast<std::size_t>(kit::LoadLe32(made));
    BytesSource source(std::string(reinterpret_cast<const char*>(made), length));
    Require(kit::ReadHeader(source, info, bytes, block).status == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::size_t at = 1;
    std::vector<CRecFieldInfo> fields;
    while (at < size && fields.size() < data[0]) fields.emplace_back(kFileDataBytes, data[at++]);
    const CRecordInfo info(static_cast<long32>(fields.size()), fields.data());

    CheckedSource source(std::string(reinterpret_cast<const char*>(data) + at, size - at));
    unsigned char short_header[kit::kShortHeader] = {};
    kit::HeaderBlock block;
    const kit::HeaderVerdict verdict = kit::ReadHeader(source, &info, short_header, block);
    if (verdict.status == 0) {
        kit::RecordHeader header(block ? block.get() : short_header);
        Require(header.Length() <= source.Length() && header.End() >= header.Length());
        RequireSoundFields(header, fields);
        const kit::CountFit fit = kit::FitCount(header, source.Length());
        if (fit != kit::CountFit::kNothingBehind) Require(header.End() <= source.Length());
    }
    if (verdict.is_unreadable || verdict.status == 0)
        RequireFreshHeader(&info, short_header, block);
    return 0;
}
