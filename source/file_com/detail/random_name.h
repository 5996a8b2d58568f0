#pragma once

#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>

namespace kit {

// The alphabets of generated names. They differ in order, and so do the names that one seed gives.
constexpr std::string_view kFileNameAlphabet = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kFolderNameAlphabet = "qwertyuiopasdfghjklzxcvbnm1234567890";

// `pattern` with a random character of the alphabet for every "?". Draws from the C runtime's
// generator, in order, one value for each character; nothing is seeded here.
inline std::string RandomName(std::string_view alphabet, std::string_view pattern) {
    std::string name(pattern);
    for (char& c : name) {
        if (c == '?') c = alphabet[static_cast<std::size_t>(std::rand()) % alphabet.size()];
    }
    return name;
}

}  // namespace kit
