// Input: the form (1 byte), then the serial form. What is read is written back as it was.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "blob/detail/blob_serial.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto form = data[0] & 1 ? kit::BlobForm::kBits : kit::BlobForm::kBytes;
    const std::vector<std::uint8_t> serial(data + 1, data + size);
    const auto room = static_cast<std::uint32_t>(serial.size());
    const auto blob = kit::ReadBlobFromMemory(serial.data(), room, form);
    Require(!blob.bytes || blob.count <= serial.size());
    if (blob.outcome != kit::BlobRead::kDone) return 0;

    const kit::BlobView view{form, blob.bytes.get(), blob.count, blob.unused_bits};
    std::vector<std::uint8_t> again(static_cast<std::size_t>(view.SerialSize()));
    const auto written =
        kit::WriteBlobToMemory(again.data(), static_cast<std::uint32_t>(again.size()), view);
    Require(written == again.size() && written <= serial.size());
    Require(std::memcmp(again.data(), serial.data(), written) == 0);
    return 0;
}
