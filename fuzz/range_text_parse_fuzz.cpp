// Any text as a list of addresses, the first byte as its separator. What is read must come out of
// its own written form again.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "net/ip_text.h"
#include "net/long_list.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::vector<char> text(data + 1, data + size);
    text.push_back('\0');
    text.shrink_to_fit();
    CQELLongList list;
    list.FromString(text.data(), static_cast<char>(data[0]));

    std::string written;
    for (const ulong32 address : list) written += std::string(CQELIpToText(address)) + ";";
    CQELLongList again;
    if (again.FromString(written.c_str(), ';') != list) std::abort();
    return 0;
}
