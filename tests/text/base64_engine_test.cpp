#include "text/detail/base64_engine.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"
#include "yardsticks/textbook_base64.h"

namespace {

using kit::Base64Failure;

// Everything is tested for characters of one byte and of two.
template <typename Char>
class Base64Encode : public testing::Test {
protected:
    using Text = std::basic_string<Char>;

    static Text Of(const std::string& ascii) {
        Text text;
        for (const char c : ascii) text += static_cast<Char>(static_cast<unsigned char>(c));
        return text;
    }
    static std::uint64_t EncodeInto(Char* out, std::uint64_t room, const void* data,
                                    std::uint64_t size, unsigned flags = 0, std::uint64_t line = 0,
                                    const Char* separator = nullptr) {
        return kit::EncodeBase64(data, size, out, room, flags, line, separator).size;
    }
    // The whole text, written into exactly the room that the size query gives.
    static Text Encode(const std::string& bytes, unsigned flags = 0, std::uint64_t line = 0,
                       const Char* separator = nullptr) {
        GuardedBuffer data(bytes.data(), bytes.size());
        const auto room = EncodeInto(nullptr, 0, data.data(), bytes.size(), flags, line, separator);
        GuardedBuffer out(room * sizeof(Char));
        auto* const text = reinterpret_cast<Char*>(out.data());
        EXPECT_EQ(room - 1,
                  EncodeInto(text, room, data.data(), bytes.size(), flags, line, separator));
        EXPECT_EQ(Char{0}, text[room - 1]);
        return Text(text, room - 1);
    }
    // The bytes in hexadecimal; "bad" for a bad text. Neither text nor bytes may be left.
    static std::string Decode(const Text& text, unsigned flags) {
        GuardedBuffer source(text.data(), text.size() * sizeof(Char));
        const auto* const from = reinterpret_cast<const Char*>(source.data());
        const auto room = kit::DecodeBase64(from, text.size(), nullptr, 0, flags).size;
        EXPECT_EQ((text.size() + 3) / 4 * 3, room);
        GuardedBuffer out(room);
        const auto result = kit::DecodeBase64(from, text.size(), out.data(), room, flags);
        if (result.failure == Base64Failure::kBadText) return "bad";
        return ToHex(out.data(), result.size);
    }
    static std::string Textbook(const Text& text, unsigned flags) {
        std::u32string codes;
        for (const Char c : text) codes += static_cast<std::make_unsigned_t<Char>>(c);
        const auto bytes = textbook::DecodeBase64(codes, flags);
        return bytes ? ToHex(bytes->data(), bytes->size()) : "bad";
    }
};
template <typename Char>
class Base64Decode : public Base64Encode<Char> {};
using Widths = testing::Types<char, char16_t>;
TYPED_TEST_SUITE(Base64Encode, Widths);
TYPED_TEST_SUITE(Base64Decode, Widths);

TYPED_TEST(Base64Encode, WritesWhatTheTextbookReads) {
    std::string bytes;
    for (int size = 0; size < 200; ++size, bytes += static_cast<char>(size * 151 + 7)) {
        const auto text = this->Encode(bytes);
        EXPECT_EQ((bytes.size() + 2) / 3 * 4, text.size());
        EXPECT_EQ(ToHex(bytes.data(), bytes.size()), this->Textbook(text, 0)) << size;
    }
}

TYPED_TEST(Base64Encode, EndsEveryLineWithASeparator) {
    const std::tuple<std::uint64_t, const char*, const char*> cases[] = {
        {8, "\r\n", "QUFBQUFB\r\nQUFBQUFB\r\nQQ==\r\n"},
        {5, "|", "QUFBQUFB|QUFBQUFB|QQ==|"},
        {1, "-", "QUFB-QUFB-QUFB-QUFB-QQ==-"},
        {20, "\n", "QUFBQUFBQUFBQUFBQQ==\n"},
        {4, "", "QUFBQUFBQUFBQUFBQQ=="},
    };
    const std::string thirteen("AAAAAAAAAAAAA");
    for (const auto& [line, separator, text] : cases) {
        EXPECT_EQ(this->Of(text), this->Encode(thirteen, 1, line, this->Of(separator).c_str()));
    }
    EXPECT_EQ(this->Of("QUFBQUFBQUFBQUFBQQ==\n"), this->Encode(thirteen, 1, UINT64_MAX));
    EXPECT_TRUE(this->Encode("", 1).empty());  // no line, no separator
    // 57 bytes fill one line of 64 characters and 12 of another.
    std::string expected;
    for (int group = 0; group < 19; ++group) expected += group == 16 ? "\nQUFB" : "QUFB";
    EXPECT_EQ(this->Of(expected + "\n"), this->Encode(std::string(57, 'A'), 1));
}

TYPED_TEST(Base64Encode, WritesNothingIntoTooLittleRoom) {
    const std::string bytes(57, 'A');
    std::vector<TypeParam> out(79, TypeParam{'#'});
    const auto untouched = out;
    EXPECT_EQ(0u, this->EncodeInto(out.data(), 78, bytes.data(), 57, 1));
    EXPECT_EQ(0u, this->EncodeInto(out.data(), 0, bytes.data(), 0));
    EXPECT_EQ(untouched, out);
    EXPECT_EQ(78u, this->EncodeInto(out.data(), 79, bytes.data(), 57, 1));
    // Lengths that no number tells do not wrap into small ones: 2^60 lines of 4 + 12 characters.
    EXPECT_EQ(0u, this->EncodeInto(out.data(), 79, "", UINT64_MAX));
    EXPECT_EQ(0u, this->EncodeInto(nullptr, 0, "", UINT64_MAX));
    const auto separator = this->Of("twelve chars");
    EXPECT_EQ(0u,
              this->EncodeInto(nullptr, 0, "", std::uint64_t{3} << 60, 1, 4, separator.c_str()));
    const TypeParam* const null = nullptr;
    EXPECT_EQ(Base64Failure::kBadParameter,
              kit::EncodeBase64(nullptr, 0, out.data(), 9, 0, 0, null).failure);
    EXPECT_EQ(Base64Failure::kBadParameter, kit::DecodeBase64(null, 4, nullptr, 0, 0).failure);
}

TYPED_TEST(Base64Decode, ReadsWhatTheFlagsAllow) {
    const std::tuple<const char*, unsigned, const char*> cases[] = {
        {"QUJD", 0, "41 42 43"}, {"QUI=", 0, "41 42"},     {"QQ==", 0, "41"},
        {"QR==", 0, "41"},       {"QQ", 0, "bad"},         {"QQ", 4, "41"},
        {"QUI", 4, "41 42"},     {"Q", 4, "bad"},          {"QUJDQ===", 0, "bad"},
        {"QQ=", 0, "bad"},       {"QQ=", 4, "41"},         {"QQ===", 0, "bad"},
        {"QUJD=", 0, "bad"},     {"QUJD=", 4, "41 42 43"}, {"====", 0, "bad"},
        {"====", 4, ""},         {"Q Q==", 0, "bad"},      {" Q\tQ\r=\n= ", 1, "41"},
        {"Q\vQ==", 1, "bad"},    {"-Q-Q-=-=-", 1, "bad"},  {"-Q-Q-=-=-", 2, "41"},
        {"QQ==QUJD", 0, "bad"},  {"QQ==QUJD", 1, "bad"},   {"QQ==QUJD", 2, "41"},
        {"QQ==QUJD", 4, "41"},   {"Q=Q=", 2, "bad"},
    };
    for (const auto& [text, flags, bytes] : cases) {
        EXPECT_EQ(bytes, this->Decode(this->Of(text), flags)) << text << ' ' << flags;
        EXPECT_EQ(bytes, this->Textbook(this->Of(text), flags)) << text << ' ' << flags;
    }
}

TYPED_TEST(Base64Decode, TakesWhatIsBeyondAsciiForZero) {
    EXPECT_EQ("01 42 43", this->Decode(this->Of("\x80UJD"), 0));
    EXPECT_EQ("41 42 40", this->Decode(this->Of("QUJ\xFF"), 0));
    EXPECT_EQ("41 40 00", this->Decode(this->Of("QU\xC0\xE0"), 2));
    EXPECT_EQ("bad", this->Decode(this->Of("QQ=\xC0"), 0));  // behind a "=" it is foreign
    EXPECT_EQ("41", this->Decode(this->Of("QQ=\xC0="), 2));
}

// Every kind of intruder at every place of a text that is long enough for all ways of reading.
TYPED_TEST(Base64Decode, AgreesWithTheTextbookForm) {
    const auto whole = this->Of("AZaz09+/QUJDRUZHSElKS0xNTk9QUVJTVFVWWFlaYWJjZGVmZ2hp");
    auto intruders = this->Of(" \t\r\n\v=-@[`{:,\x7F\x80\xFF") + TypeParam{0};
    for (const unsigned code : {0x0141u, 0x4141u, 0x7F41u, 0x8041u, 0xFF41u, 0xFFFFu}) {
        intruders += static_cast<TypeParam>(code);
    }
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        for (unsigned flags = 0; flags < 8; ++flags) {
            const auto cut = whole.substr(0, length);
            ASSERT_TRUE(length == 0 || this->Textbook(cut, flags) == this->Decode(cut, flags));
            for (const TypeParam intruder : intruders) {
                const auto text = cut + intruder + whole.substr(length);
                ASSERT_EQ(this->Textbook(text, flags), this->Decode(text, flags))
                    << "place " << length << " code " << static_cast<unsigned>(intruder)
                    << " flags " << flags;
            }
        }
    }
}

TYPED_TEST(Base64Decode, NeedsThreeBytesForEveryFourCharactersBegun) {
    const auto text = this->Of("QQ==");
    unsigned char out[3] = {9, 9, 9};
    EXPECT_EQ(3u, kit::DecodeBase64(text.c_str(), 0, nullptr, 0, 0).size);
    EXPECT_EQ(0u, kit::DecodeBase64(text.c_str(), 0, out, 2, 0).size);
    EXPECT_EQ(9, out[0]);
    EXPECT_EQ(1u, kit::DecodeBase64(text.c_str(), 0, out, 3, 0).size);
    EXPECT_EQ("41 09 09", ToHex(out, 3));
}

}  // namespace
