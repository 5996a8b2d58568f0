#pragma once

#include <cstddef>
#include <string_view>

namespace kit {

// The length of what a path begins with and nobody can make: for "\\server\share", "\\?\UNC\server"
// and "\\?\C:" the prefix with the component behind it, otherwise everything before the first
// separator. All of a path that has none.
constexpr std::size_t RootLength(std::string_view path) {
    constexpr std::string_view kPrefixes[] = {"\\\\?\\UNC\\", "\\\\?\\", "\\\\"};
    std::size_t from = 0;
    for (const auto prefix : kPrefixes) {
        if (path.substr(0, prefix.size()) == prefix) {
            from = prefix.size();
            break;
        }
    }
    const std::size_t at = path.find_first_of("\\/", from);
    return at == std::string_view::npos ? path.size() : at;
}

// Calls visit(end) -> bool for every prefix path[0, end) that ends before a separator behind
// `from`, and for the whole path, until one returns false. Returns whether none did.
template <typename Visit>
bool ForEachPrefix(std::string_view path, std::size_t from, Visit visit) {
    for (std::size_t at = from; at < path.size();) {
        at = path.find_first_of("\\/", at + 1);
        if (at == std::string_view::npos) break;
        if (!visit(at)) return false;
    }
    return visit(path.size());
}

}  // namespace kit
