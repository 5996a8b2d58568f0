#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace kit {

// One row of a conversion table: the codes first..last become `value`.
struct CodeRow {
    std::uint32_t first;
    std::uint32_t last;
    std::uint32_t value;
};

// True when the rows ascend and do not overlap, as Convert() needs them. Meant for static_assert.
template <std::size_t N>
constexpr bool IsOrdered(const CodeRow (&rows)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        if (rows[i].first > rows[i].last) return false;
        if (i > 0 && rows[i - 1].last >= rows[i].first) return false;
    }
    return true;
}

// The value of the row that holds `code`, or `fallback`.
template <std::size_t N>
constexpr std::uint32_t Convert(const CodeRow (&rows)[N], std::uint32_t code,
                                std::uint32_t fallback) {
    const auto* row = std::upper_bound(
        std::begin(rows), std::end(rows), code,
        [](std::uint32_t wanted, const CodeRow& candidate) { return wanted < candidate.first; });
    if (row == std::begin(rows)) return fallback;
    --row;
    return code <= row->last ? row->value : fallback;
}

}  // namespace kit
