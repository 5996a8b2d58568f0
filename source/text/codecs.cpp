#include "text/codecs.h"

#include "blob/ident_obj.h"
#include "status/qel_status.h"
#include "status/status_codes.h"
#include "text/detail/base64_engine.h"
#include "text/detail/work_text.h"
#include "text/qel_string.h"

namespace {

std::uint64_t SizeOrThrow(const kit::Base64Result& result) {
    switch (result.failure) {
        case kit::Base64Failure::kBadParameter:
            throw XQELStatus(kStatusBadParameter, true);
        case kit::Base64Failure::kBadText:
            throw XQELStatus(kStatusDataError, true);
        case kit::Base64Failure::kNone:
            break;
    }
    return result.size;
}

}  // namespace

namespace QEL {

std::uint64_t Base64Encode(const void* data, std::uint64_t size, char* out, std::uint64_t outSize,
                           unsigned int flags, std::uint64_t lineLength,
                           const char* lineSeparator) {
    return SizeOrThrow(
        kit::EncodeBase64(data, size, out, outSize, flags, lineLength, lineSeparator));
}

std::uint64_t Base64Encode(const void* data, std::uint64_t size, wchar_t* out,
                           std::uint64_t outSize, unsigned int flags, std::uint64_t lineLength,
                           const wchar_t* lineSeparator) {
    return SizeOrThrow(
        kit::EncodeBase64(data, size, out, outSize, flags, lineLength, lineSeparator));
}

std::uint64_t Base64Decode(const char* text, std::uint64_t length, void* out, std::uint64_t outSize,
                           unsigned int flags) {
    return SizeOrThrow(kit::DecodeBase64(text, length, out, outSize, flags));
}

std::uint64_t Base64Decode(const wchar_t* text, std::uint64_t length, void* out,
                           std::uint64_t outSize, unsigned int flags) {
    return SizeOrThrow(kit::DecodeBase64(text, length, out, outSize, flags));
}

}  // namespace QEL

CQELString DumpBlob2String(const IdentObj& blob) {
    if (blob.IsEmpty()) return CQELString();
    const ulong32 room = QELBin2Hex(blob.pbData, blob.cbData, nullptr, 0, false);
    if (room == 0) throw const_cast<char*>("MemoryError");  // more than 32 bits can say
    kit::WorkText digits;
    char* const text = digits.Reserve(room);
    const ulong32 written = QELBin2Hex(blob.pbData, blob.cbData, text, room, false);
    return CQELString(text, std::uint64_t{written} - 1);
}
