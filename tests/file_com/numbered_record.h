#pragma once

#include <algorithm>
#include <array>

// A record that shows by every part of it which one it is.
struct NumberedRecord {
    explicit NumberedRecord(long number = -1) { parts.fill(number); }
    bool IsNumber(long number) const {
        return std::all_of(parts.begin(), parts.end(), [&](long part) { return part == number; });
    }
    std::array<long, 128> parts;
};
