#pragma once

#include <string>

namespace kit {

// The fopen mode that makes every flush of a written file reach the disk: `mode` with the letter
// "c" put before its first blank or comma, or at its end. A mode that only reads, or that says "c"
// or "n" (no commit) before its first comma, stays. Null: update what exists, else create.
std::string CommitMode(const char* mode, bool file_exists);

}  // namespace kit
