#pragma once

#include <string>

namespace kit {

// The full path of `path` with long names for what of it exists, and without a final backslash
// unless it is the root of a drive; empty when there is none.
std::string FullPathOf(const char* path);

}  // namespace kit
