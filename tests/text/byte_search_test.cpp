#include "text/detail/byte_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/guarded_buffer.h"

namespace {

// Few different bytes, so that texts are full of near matches.
std::string RandomText(std::mt19937& random, std::size_t size) {
    std::string text(size, ' ');
    for (char& c : text) c = "ab\xFF"[random() % 3];
    return text;
}

TEST(FindBytes, AgreesWithThePlainSearchUpToTheLastReadableByte) {
    std::mt19937 random(20240305);
    for (int round = 0; round < 3000; ++round) {
        const std::string text = RandomText(random, random() % 90);
        const std::string pattern = RandomText(random, random() % (round % 3 == 0 ? 40 : 5));
        const std::size_t from = random() % 95;
        GuardedBuffer a(text.data(), text.size()), b(pattern.data(), pattern.size());
        const std::string_view x(a.text(), a.size()), y(b.text(), b.size());
        ASSERT_EQ(text.find(pattern, from), kit::FindBytes(x, y, from))
            << text << " / " << pattern << " from " << from;
    }
}

TEST(PartingIndex, IsTheFirstDifferenceOrTheCommonEnd) {
    for (std::size_t length = 0; length <= 40; ++length) {
        const std::string text(length, '\x80');  // bytes that a test for zero mistakes easily
        GuardedBuffer a(text.c_str()), b(text.c_str());
        const std::string_view x(a.text(), length), y(b.text(), length);
        ASSERT_EQ(length, kit::PartingIndex(x, y));
        for (std::size_t at = 0; at < length; ++at) {
            for (char other : {'\x81', '\x01', '\0'}) {
                b.text()[at] = other;
                ASSERT_EQ(at, kit::PartingIndex(x, y)) << length << " bytes";
                ASSERT_EQ(at, kit::PartingIndex(x, y.substr(0, at + 1)));
            }
            a.text()[at] = '\0';  // both end here, whatever follows
            ASSERT_EQ(at, kit::PartingIndex(x, y)) << length << " bytes";
            a.text()[at] = b.text()[at] = '\x80';
        }
        ASSERT_EQ(length / 2, kit::PartingIndex(x, std::string(length / 2, '\x80')));
    }
}

}  // namespace
