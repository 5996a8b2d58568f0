#include "text/detail/base64_engine.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"
#include "support/textbook_base64.h"

namespace {

using kit::Base64Failure;

template <typename Char>
using Text = std::basic_string<Char>;

template <typename Char>
Text<Char> Of(const std::string& ascii) {
    Text<Char> text;
    for (const char c : ascii) text += static_cast<Char>(static_cast<unsigned char>(c));
    return text;
}

// Everything is tested for characters of one byte and of two.
template <typename Char>
class Base64Encode : public testing::Test {
protected:
    // The whole text, written into exactly the room that the size query gives.
    static Text<Char> Encode(const std::string& bytes, unsigned flags = 0, std::uint64_t line = 0,
                             const Char* separator = nullptr) {
        const GuardedBuffer data(bytes.data(), bytes.size());
        return EncodeAt(const_cast<GuardedBuffer&>(data).data(), bytes.size(), flags, line,
                        separator);
    }
    static Text<Char> EncodeAt(const void* data, std::size_t size, unsigned flags,
                               std::uint64_t line, const Char* separator) {
        constexpr Char* kQuery = nullptr;
        const auto room = kit::EncodeBase64(data, size, kQuery, 0, flags, line, separator).size;
        GuardedBuffer out(room * sizeof(Char));
        auto* const text = reinterpret_cast<Char*>(out.data());
        const auto length = kit::EncodeBase64(data, size, text, room, flags, line, separator).size;
        EXPECT_EQ(room, length + 1);
        EXPECT_EQ(Char{0}, text[length]);
        return Text<Char>(text, length);
    }
};
template <typename Char>
class Base64Decode : public testing::Test {
protected:
    // The bytes in hexadecimal; "bad" for a bad text. Neither text nor bytes may be left.
    static std::string Decode(const Text<Char>& text, unsigned flags) {
        GuardedBuffer source(text.data(), text.size() * sizeof(Char));
        const auto* const from = reinterpret_cast<const Char*>(source.data());
        const auto room = kit::DecodeBase64(from, text.size(), nullptr, 0, flags).size;
        EXPECT_EQ((text.size() + 3) / 4 * 3, room);
        GuardedBuffer out(room);
        const auto result = kit::DecodeBase64(from, text.size(), out.data(), room, flags);
        if (result.failure == Base64Failure::kBadText) return "bad";
        return ToHex(out.data(), result.size);
    }
    static std::string Textbook(const Text<Char>& text, unsigned flags) {
        std::u32string codes;
        for (const Char c : text) codes += static_cast<std::make_unsigned_t<Char>>(c);
        const auto bytes = textbook::DecodeBase64(codes, flags);
        return bytes ? ToHex(bytes->data(), bytes->size()) : "bad";
    }
};
using Widths = testing::Types<char, char16_t>;
TYPED_TEST_SUITE(Base64Encode, Widths);
TYPED_TEST_SUITE(Base64Decode, Widths);

TYPED_TEST(Base64Encode, WritesTheCommonExamples) {
    const struct {
        const char* bytes;
        const char* text;
    } cases[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
        {"\xFB\xEF\xBE\xFB\xEF\xBE\xFB\xEF\xBE\xFF\xFF\xFF\xFF\xFF\xFF", "++++++++++++////////"},
    };
    for (const auto& c : cases) EXPECT_EQ(Of<TypeParam>(c.text), this->Encode(c.bytes));
}

TYPED_TEST(Base64Encode, KnowsEveryValueAtEveryPlace) {
    const std::string alphabet(kit::kBase64Alphabet);
    const std::string in_order = FromHex(
        "00 10 83 10 51 87 20 92 8B 30 D3 8F 41 14 93 51 55 97 61 96 9B 71 D7 9F "
        "82 18 A3 92 59 A7 A2 9A AB B2 DB AF C3 1C B3 D3 5D B7 E3 9E BB F3 DF BF");
    EXPECT_EQ(Of<TypeParam>(alphabet), this->Encode(in_order));
    // A byte more at the front moves every value to another place.
    EXPECT_EQ(Of<TypeParam>("AAAQgxBRhyCSizDTj0EUk1FVl2GWm3HXn4IYo5JZp6Kaq7Lbr8Mcs9Ndt+Oeu/PfvwAA"),
              this->Encode(std::string(1, '\0') + in_order + std::string(2, '\0')));
}

TYPED_TEST(Base64Encode, EndsEveryLineWithASeparator) {
    const std::string thirteen("AAAAAAAAAAAAA");  // QUFBQUFBQUFBQUFBQQ==
    const struct {
        std::uint64_t line;
        const char* separator;
        const char* text;
    } cases[] = {
        {0, nullptr, "QUFBQUFBQUFBQUFBQQ==\n"},
        {8, "\r\n", "QUFBQUFB\r\nQUFBQUFB\r\nQQ==\r\n"},
        {5, "|", "QUFBQUFB|QUFBQUFB|QQ==|"},
        {1, "-", "QUFB-QUFB-QUFB-QUFB-QQ==-"},
        {20, "\n", "QUFBQUFBQUFBQUFBQQ==\n"},
        {4, "", "QUFBQUFBQUFBQUFBQQ=="},
        {UINT64_MAX, nullptr, "QUFBQUFBQUFBQUFBQQ==\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const auto separator = Of<TypeParam>(c.separator ? c.separator : "");
        EXPECT_EQ(Of<TypeParam>(c.text),
                  this->Encode(thirteen, 1, c.line, c.separator ? separator.c_str() : nullptr));
    }
    EXPECT_EQ(Text<TypeParam>(), this->Encode("", 1));  // no line, no separator

    // 57 bytes fill one line of 64 characters and 12 of another.
    std::string expected;
    for (int group = 0; group < 19; ++group) expected += group == 16 ? "\nQUFB" : "QUFB";
    EXPECT_EQ(Of<TypeParam>(expected + "\n"), this->Encode(std::string(57, 'A'), 1));
}

TYPED_TEST(Base64Encode, WritesNothingIntoTooLittleRoom) {
    const std::string bytes(57, 'A');
    std::vector<TypeParam> out(79, TypeParam{'#'});
    const auto untouched = out;
    const TypeParam* const line_feed = nullptr;
    EXPECT_EQ(0u, kit::EncodeBase64(bytes.data(), 57, out.data(), 78, 1, 0, line_feed).size);
    EXPECT_EQ(untouched, out);
    EXPECT_EQ(78u, kit::EncodeBase64(bytes.data(), 57, out.data(), 79, 1, 0, line_feed).size);
    EXPECT_EQ(0u, kit::EncodeBase64(bytes.data(), 0, out.data(), 0, 0, 0, line_feed).size);
    EXPECT_EQ(TypeParam{'Q'}, out[0]);
    // Lengths that no number tells do not wrap into small ones.
    TypeParam* const query = nullptr;
    EXPECT_EQ(0u, kit::EncodeBase64("", UINT64_MAX, out.data(), 79, 0, 0, line_feed).size);
    EXPECT_EQ(0u, kit::EncodeBase64("", UINT64_MAX, query, 0, 0, 0, line_feed).size);
    const auto separator = Of<TypeParam>("twelve chars");
    const std::uint64_t size = std::uint64_t{3} << 60;  // 2^60 lines of 4 + 12 characters
    EXPECT_EQ(0u, kit::EncodeBase64("", size, query, 0, 1, 4, separator.c_str()).size);
}

TYPED_TEST(Base64Encode, RefusesNullData) {
    TypeParam* const query = nullptr;
    const TypeParam* const line_feed = nullptr;
    EXPECT_EQ(Base64Failure::kBadParameter,
              kit::EncodeBase64(nullptr, 0, query, 0, 0, 0, line_feed).failure);
}

TYPED_TEST(Base64Decode, ReadsWhatTheFlagsAllow) {
    const struct {
        const char* text;
        unsigned flags;
        const char* bytes;
    } cases[] = {
        {"QUJD", 0, "41 42 43"},  {"QUI=", 0, "41 42"},    {"QQ==", 0, "41"},
        {"QR==", 0, "41"},  // bits that belong to no byte are not looked at
        {"QQ", 0, "bad"},         {"QQ", 4, "41"},         {"QUI", 4, "41 42"},
        {"Q", 4, "bad"},          {"QUJDQ===", 0, "bad"},  {"QQ=", 0, "bad"},
        {"QQ=", 4, "41"},         {"QQ===", 0, "bad"},     {"QUJD=", 0, "bad"},
        {"QUJD=", 4, "41 42 43"}, {"====", 0, "bad"},      {"====", 4, ""},
        {"Q Q==", 0, "bad"},      {"Q Q==", 1, "41"},      {" Q\tQ\r=\n= ", 1, "41"},
        {"Q\vQ==", 1, "bad"},     {"-Q-Q-=-=-", 1, "bad"}, {"-Q-Q-=-=-", 2, "41"},
        {"Q Q==", 2, "41"},       {"QQ==QUJD", 0, "bad"},  {"QQ==QUJD", 1, "bad"},
        {"QQ==QUJD", 2, "41"},    {"QQ==QUJD", 4, "41"},   {"Q=Q=", 2, "bad"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.text << ' ' << c.flags);
        EXPECT_EQ(c.bytes, this->Decode(Of<TypeParam>(c.text), c.flags));
        EXPECT_EQ(c.bytes, this->Textbook(Of<TypeParam>(c.text), c.flags));
    }
}

TYPED_TEST(Base64Decode, TakesWhatIsBeyondAsciiForZero) {
    EXPECT_EQ("01 42 43", this->Decode(Of<TypeParam>("\x80UJD"), 0));
    EXPECT_EQ("41 42 40", this->Decode(Of<TypeParam>("QUJ\xFF"), 0));
    EXPECT_EQ("41 40 00", this->Decode(Of<TypeParam>("QU\xC0\xE0"), 2));
    EXPECT_EQ("bad", this->Decode(Of<TypeParam>("QQ=\xC0"), 0));  // behind a "=" it is foreign
    EXPECT_EQ("41", this->Decode(Of<TypeParam>("QQ=\xC0="), 2));
}

// Every kind of intruder at every place of a text that is long enough for all ways of reading.
TYPED_TEST(Base64Decode, AgreesWithTheTextbookForm) {
    const auto whole = Of<TypeParam>("AZaz09+/QUJDRUZHSElKS0xNTk9QUVJTVFVWWFlaYWJjZGVmZ2hp");
    auto intruders = Of<TypeParam>(" \t\r\n\v=-@[`{:,\x7F\x80\xFF");
    intruders += TypeParam{0};
    if (sizeof(TypeParam) == 2) {
        for (const unsigned code : {0x0141u, 0x4141u, 0x7F41u, 0x8041u, 0xFF41u, 0xFFFFu}) {
            intruders += static_cast<TypeParam>(code);
        }
    }
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        for (const TypeParam intruder : intruders) {
            auto text = whole.substr(0, length) + intruder + whole.substr(length);
            for (unsigned flags = 0; flags < 8; ++flags) {
                ASSERT_EQ(this->Textbook(text, flags), this->Decode(text, flags))
                    << "place " << length << " code " << static_cast<unsigned>(intruder)
                    << " flags " << flags;
            }
        }
        const auto cut = whole.substr(0, length);
        if (length > 0) {
            ASSERT_EQ(this->Textbook(cut, 4), this->Decode(cut, 4));
        }
    }
}

TYPED_TEST(Base64Decode, NeedsThreeBytesForEveryFourCharactersBegun) {
    const auto text = Of<TypeParam>("QQ==\0ignored");
    unsigned char out[3] = {9, 9, 9};
    EXPECT_EQ(3u, kit::DecodeBase64(text.c_str(), 0, nullptr, 0, 0).size);
    EXPECT_EQ(0u, kit::DecodeBase64(text.c_str(), 0, out, 2, 0).size);
    EXPECT_EQ(9, out[0]);
    EXPECT_EQ(1u, kit::DecodeBase64(text.c_str(), 0, out, 3, 0).size);
    EXPECT_EQ("41 09 09", ToHex(out, 3));
    EXPECT_EQ(6u, kit::DecodeBase64(text.c_str(), 5, nullptr, 0, 0).size);
    const TypeParam* const null = nullptr;
    EXPECT_EQ(Base64Failure::kBadParameter, kit::DecodeBase64(null, 4, out, 3, 0).failure);
}

}  // namespace
