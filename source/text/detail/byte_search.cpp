#include "text/detail/byte_search.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "text/detail/simd.h"

namespace kit {
namespace {

#ifdef QELKIT_SSE2
constexpr std::size_t kBlock = sizeof(__m128i);

__m128i Load(const char* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }

// One bit for each byte of a comparison that holds.
unsigned BitsOf(__m128i bytes) { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); }
#endif

// Looks for a pattern at the places of a text where it has room. A place is compared in full only
// when the first and the last byte of the pattern are right.
class PlaceSearch {
public:
    PlaceSearch(const char* text, std::size_t places, std::string_view pattern)
        : text_(text), places_(places), pattern_(pattern), last_(pattern.size() - 1) {}

    std::size_t First() const {
#ifdef QELKIT_SSE2
        if (places_ >= kBlock) return FirstByBlocks();
#endif
        for (std::size_t at = 0; at < places_; ++at) {
            const char* const place = text_ + at;
            if (place[0] == pattern_.front() && place[last_] == pattern_.back() && Matches(at)) {
                return at;
            }
        }
        return std::string_view::npos;
    }

private:
    bool Matches(std::size_t at) const {
        return std::memcmp(text_ + at, pattern_.data(), pattern_.size()) == 0;
    }

#ifdef QELKIT_SSE2
    // Sixteen places at a time; the last sixteen may overlap those before, which do not match.
    std::size_t FirstByBlocks() const {
        const __m128i first_byte = _mm_set1_epi8(pattern_.front());
        const __m128i last_byte = _mm_set1_epi8(pattern_.back());
        const std::size_t last_block = places_ - kBlock;
        for (std::size_t at = 0;; at = (std::min)(at + kBlock, last_block)) {
            const __m128i first_right = _mm_cmpeq_epi8(first_byte, Load(text_ + at));
            const __m128i last_right = _mm_cmpeq_epi8(last_byte, Load(text_ + at + last_));
            for (unsigned both = BitsOf(_mm_and_si128(first_right, last_right)); both != 0;
                 both &= both - 1) {
                const std::size_t place = at + static_cast<std::size_t>(std::countr_zero(both));
                if (Matches(place)) return place;
            }
            if (at == last_block) return std::string_view::npos;
        }
    }
#endif

    const char* const text_;
    const std::size_t places_;
    const std::string_view pattern_;
    const std::size_t last_;
};

constexpr std::size_t kWord = sizeof(std::uint64_t);

// Whether eight bytes are the same in both texts and none of them ends these.
bool GoesOn(const char* x, const char* y) {
    std::uint64_t a, b;
    std::memcpy(&a, x, kWord);
    std::memcpy(&b, y, kWord);
    const std::uint64_t some_zero = (a - 0x0101010101010101) & ~a & 0x8080808080808080;
    return a == b && some_zero == 0;
}

}  // namespace

std::size_t FindBytes(std::string_view text, std::string_view pattern, std::size_t from) {
    if (from > text.size() || pattern.size() > text.size() - from) return std::string_view::npos;
    if (pattern.empty()) return from;
    const std::size_t places = text.size() - from - pattern.size() + 1;
    const std::size_t at = PlaceSearch(text.data() + from, places, pattern).First();
    return at == std::string_view::npos ? at : from + at;
}

std::size_t PartingIndex(std::string_view a, std::string_view b) {
    const std::size_t size = (std::min)(a.size(), b.size()) + 1;  // with the terminator
    const char* const x = a.data();
    const char* const y = b.data();
    std::size_t at = 0;
    while (at + kWord <= size && GoesOn(x + at, y + at)) at += kWord;
    while (x[at] == y[at] && x[at] != '\0') ++at;
    return at;
}

}  // namespace kit
