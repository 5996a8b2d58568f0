#include "file_com/detail/commit_mode.h"

namespace kit {

std::string CommitMode(const char* mode, bool file_exists) {
    if (!mode) return file_exists ? "r+bc" : "w+bc";
    std::string committed = mode;
    const bool writes = committed.find_first_of("aw+") != std::string::npos;
    const std::string letters = committed.substr(0, committed.find(','));
    if (!writes || letters.find_first_of("cn") != std::string::npos) return committed;
    const auto at = committed.find_first_of(" ,");
    return committed.insert(at == std::string::npos ? committed.size() : at, 1, 'c');
}

}  // namespace kit
