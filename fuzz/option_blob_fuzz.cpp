// Reads any bytes as an option blob, looks its options up, copies it and builds it again.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "base/byte_order.h"
#include "config/option_blob.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// What was read is built again byte for byte, and the rest is no record.
void CheckBuilt(CQelOpts& options, const std::uint8_t* data, std::size_t size) {
    unsigned int length;
    unsigned char* blob;
    options.GetAllOptions(length, blob);
    Require(length == options.GetLength() && length <= size);
    Require(length == 0 || std::memcmp(blob, data, length) == 0);
    const std::size_t rest = size - length;
    Require(rest < 8 || kit::LoadLe32(data + length + 4) > rest - 8);
}

// The first option of a code is found, for every option that the cursor meets.
void LookUp(CQelOpts& options) {
    const int last = options.SeekAt(0x7FFFFFFF);
    for (int i = 0; i <= last && i < 64; ++i) {
        Require(options.SeekAt(i) == i);
        unsigned int code, length, found_length;
        unsigned char *option, *found;
        options.GetOption(code, length, option);
        Require(options.GetByCode(code, found_length, found));
        volatile unsigned char sum = 0;
        for (unsigned int byte = 0; byte < found_length; ++byte) sum = sum + found[byte];
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CDrvOptsIp options(data, static_cast<unsigned int>(size));
    CheckBuilt(options, data, size);
    LookUp(options);
    CDrvOptsIp copy(options);
    options.AddOption(1, static_cast<unsigned int>(size), data);
    options = copy;
    CheckBuilt(options, data, size);
    return 0;
}
