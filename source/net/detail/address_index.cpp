#include "net/detail/address_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <utility>

namespace kit {
namespace {

constexpr int kPlaces = 3;  // digits in 32 bits, the lowest at place 0
constexpr int kDigitBits = 11;
constexpr std::size_t kDigits = std::size_t{1} << kDigitBits;

std::size_t DigitOf(std::uint64_t packed, int place) {
    return static_cast<std::size_t>(packed >> (32 + place * kDigitBits)) & (kDigits - 1);
}

}  // namespace

void SortByHighHalf(std::vector<std::uint64_t>& packed) {
    if (packed.size() < kDigits / 4) {
        std::sort(packed.begin(), packed.end());
        return;
    }
    std::array<std::array<std::uint32_t, kDigits>, kPlaces> counts{};
    for (const std::uint64_t one : packed) {
        for (int place = 0; place < kPlaces; ++place) ++counts[place][DigitOf(one, place)];
    }
    std::vector<std::uint64_t> sorted(packed.size());
    for (int place = 0; place < kPlaces; ++place) {
        auto& at = counts[place];
        std::exclusive_scan(at.begin(), at.end(), at.begin(), std::uint32_t{0});
        for (const std::uint64_t one : packed) sorted[at[DigitOf(one, place)]++] = one;
        packed.swap(sorted);
    }
}

// --- AddressSearch ---------------------------------------------------------------------------------

constexpr std::ptrdiff_t kNear = 8;  // so few addresses are looked through one by one

AddressSearch::AddressSearch(std::vector<std::uint32_t> ascending)
    : addresses_(std::move(ascending)) {
    if (addresses_.empty()) return;
    lowest_ = addresses_.front();
    const std::uint32_t span = addresses_.back() - lowest_;
    while (span >> shift_ > addresses_.size()) ++shift_;
    first_.assign((span >> shift_) + std::size_t{2}, 0);
    for (const std::uint32_t address : addresses_) ++first_[((address - lowest_) >> shift_) + 1];
    std::partial_sum(first_.begin(), first_.end(), first_.begin());
}

std::size_t AddressSearch::CountUpTo(std::uint32_t address) const {
    if (addresses_.empty() || address < lowest_) return 0;
    if (address >= addresses_.back()) return addresses_.size();
    const std::uint32_t* const row = &first_[(address - lowest_) >> shift_];
    const std::uint32_t* at = addresses_.data() + row[0];
    const std::uint32_t* const end = addresses_.data() + row[1];
    if (end - at > kNear) at = std::upper_bound(at, end, address);
    while (at != end && *at <= address) ++at;
    return static_cast<std::size_t>(at - addresses_.data());
}

std::size_t AddressSearch::CountUpTo(std::uint32_t address, std::size_t known) const {
    const std::size_t near = (std::min)(addresses_.size(), known + kNear);
    while (known < near && addresses_[known] <= address) ++known;
    return known < near || near == addresses_.size() ? known : CountUpTo(address);
}

// --- ReachTable ------------------------------------------------------------------------------------

void ReachTable::Build() {
    SortByHighHalf(pairs_);
    std::vector<std::uint32_t> lows;
    lows.reserve(pairs_.size());
    reach_.reserve(pairs_.size());
    std::uint32_t reach = 0;
    for (const std::uint64_t pair : pairs_) {
        reach = (std::max)(reach, LowOf(pair));
        lows.push_back(HighOf(pair));
        reach_.push_back(reach);
    }
    lows_ = AddressSearch(std::move(lows));
}

// --- FirstHit --------------------------------------------------------------------------------------

FirstHit::FirstHit(std::size_t count) {
    bounds_.reserve(2 * count);
    numbers_.reserve(count);
}

void FirstHit::Add(std::uint32_t first, std::uint32_t last, std::uint32_t number) {
    const auto index = static_cast<std::uint32_t>(numbers_.size());
    bounds_.push_back(Pack(first, 2 * index));
    if (last != kLastAddress) bounds_.push_back(Pack(last + 1, 2 * index + 1));
    numbers_.push_back(number);
}

void FirstHit::Build() {
    SortByHighHalf(bounds_);
    std::vector<std::uint32_t> starts;
    std::vector<std::uint32_t> begins(numbers_.size());
    std::vector<std::uint32_t> ends(numbers_.size(), kNone);
    for (const std::uint64_t bound : bounds_) {
        if (starts.empty() || starts.back() != HighOf(bound)) starts.push_back(HighOf(bound));
        auto& places = LowOf(bound) % 2 == 0 ? begins : ends;
        places[LowOf(bound) / 2] = static_cast<std::uint32_t>(starts.size());
    }
    leaves_ = starts.size() + 1;
    for (auto& end : ends) end = (std::min)(end, static_cast<std::uint32_t>(leaves_));
    least_.assign(2 * leaves_, kNone);
    Paint(begins, ends);
    for (std::size_t i = leaves_ - 1; i > 0; --i) {
        least_[i] = (std::min)(least_[2 * i], least_[2 * i + 1]);
    }
    segments_ = AddressSearch(std::move(starts));
}

// Gives every segment to the first interval that covers it. Each chain of `unpainted` leads to the
// next segment that is still free, so that no segment is passed twice.
void FirstHit::Paint(const std::vector<std::uint32_t>& begins,
                     const std::vector<std::uint32_t>& ends) {
    std::vector<std::uint32_t> unpainted(leaves_ + 1);
    std::iota(unpainted.begin(), unpainted.end(), 0U);
    const auto next_free = [&](std::uint32_t at) {
        while (unpainted[at] != at) at = unpainted[at] = unpainted[unpainted[at]];
        return at;
    };
    for (std::size_t i = 0; i < begins.size(); ++i) {
        for (std::uint32_t at = next_free(begins[i]); at < ends[i]; at = next_free(at)) {
            least_[leaves_ + at] = numbers_[i];
            unpainted[at] = at + 1;
        }
    }
}

std::uint32_t FirstHit::Find(std::uint32_t first, std::uint32_t last) const {
    std::size_t left = segments_.CountUpTo(first);
    std::size_t right = segments_.CountUpTo(last, left) + 1;
    left += leaves_;
    right += leaves_;
    std::uint32_t least = kNone;
    for (; left < right; left /= 2, right /= 2) {
        if (left % 2 != 0) least = (std::min)(least, least_[left++]);
        if (right % 2 != 0) least = (std::min)(least, least_[--right]);
    }
    return least;
}

// --- OverlapIndex ----------------------------------------------------------------------------------

void OverlapIndex::Add(std::uint32_t first, std::uint32_t last, std::uint32_t number) {
    pending_.push_back(Pack(first, static_cast<std::uint32_t>(pending_.size())));
    pending_last_.push_back(last);
    pending_number_.push_back(number);
}

void OverlapIndex::Build() {
    SortByHighHalf(pending_);
    leaves_ = std::bit_ceil(pending_.size() + 1);
    greatest_.assign(2 * leaves_, 0);
    std::vector<std::uint32_t> lows;
    lows.reserve(pending_.size());
    numbers_.reserve(pending_.size());
    reach_.reserve(pending_.size());
    std::uint32_t reach = 0;
    for (const std::uint64_t entry : pending_) {
        const std::uint32_t last = pending_last_[LowOf(entry)];
        reach = (std::max)(reach, last);
        reach_.push_back(reach);
        greatest_[leaves_ + lows.size()] = last;
        numbers_.push_back(pending_number_[LowOf(entry)]);
        lows.push_back(HighOf(entry));
    }
    for (std::size_t i = leaves_ - 1; i > 0; --i) {
        greatest_[i] = (std::max)(greatest_[2 * i], greatest_[2 * i + 1]);
    }
    lows_ = AddressSearch(std::move(lows));
}

std::size_t OverlapIndex::PreviousReaching(std::size_t end, std::uint32_t address) const {
    if (end == 0 || reach_[end - 1] < address) return kNone;
    // Up, until a subtree on the left holds the place; there is always a leaf behind `end`.
    std::size_t node = leaves_ + end;
    while (node % 2 == 0 || greatest_[node - 1] < address) node /= 2;
    --node;
    while (node < leaves_) {  // and down on its right side
        node *= 2;
        if (greatest_[node + 1] >= address) ++node;
    }
    return node - leaves_;
}

}  // namespace kit
