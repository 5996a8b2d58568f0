// Input: a version resource.

#include <cstdint>
#include <cstdlib>

#include "utils/detail/version_block.h"

namespace {

// Reads every byte of a value.
void Read(const std::optional<kit::VersionBlock>& block) {
    if (!block) return;
    unsigned sum = 0;
    for (const unsigned char byte : block->value()) sum += byte;
    if (sum > 0xFFFFu * 0xFF) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto root = kit::VersionBlock::Parse({data, size});
    if (!root) return 0;
    Read(root);
    Read(root->Find({"VarFileInfo", "Translation"}));
    Read(root->Find({"StringFileInfo", "041904e3", "Comments"}));
    Read(root->Find({"StringFileInfo", "041904e3", "CompanyName"}));
    return 0;
}
