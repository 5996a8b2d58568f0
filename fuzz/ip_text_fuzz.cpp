// Any bytes as the text of an address. What is accepted must survive being written and read again.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "net/ip_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<char> text(data, data + size);
    text.push_back('\0');
    text.shrink_to_fit();  // the terminator is the last byte that may be read
    ulong32 address = 0xDEADBEEF;
    const int result = CQELIpToLong(text.data(), &address);
    if (result != 0) {
        if (result != -1 || address != 0xDEADBEEF) std::abort();
        return 0;
    }
    for (const int zero_pad : {0, 1}) {
        char written[16];
        ulong32 again = ~address;
        CQELIpToText(written, address, zero_pad);
        if (CQELIpToLong(written, &again) != 0 || again != address) std::abort();
    }
    return 0;
}
