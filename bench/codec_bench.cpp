// Base64 and hexadecimal beside OpenSSL's EVP and GLib. Wide characters are compared with what one
// would do otherwise: the narrow codec of OpenSSL and a copy into wide ones.

#include <benchmark/benchmark.h>
#include <glib.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/corpora.h"
#include "text/codecs.h"
#include "text/detail/base64_engine.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes RandomBytes(std::size_t size) {
    corpora::Random random(42);
    Bytes bytes(size);
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random.Next());
    return bytes;
}

int Int(std::size_t size) { return static_cast<int>(size); }

// One measurement: a buffer with room for everything, and the work that fills it.
void Measure(const std::string& name, std::size_t size, std::function<void(char* out)> work) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        std::vector<char> out(size * 6 + 256);
        for (auto _ : state) {
            work(out.data());
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
    });
}

struct Size {
    const char* name;
    std::size_t bytes;
};
constexpr Size kSizes[] = {{"57 bytes", 57}, {"1 KiB", 1024}, {"1 MiB", 1 << 20}};

std::string Named(const char* group, const Size& size, const char* contender) {
    return std::string(group) + "/" + size.name + "/" + contender;
}

template <typename Char>
std::basic_string<Char> Encoded(const Bytes& data, unsigned flags, std::uint64_t line) {
    const Char* const line_feed = nullptr;
    std::basic_string<Char> text(data.size() * 2 + 16, Char{0});
    const auto result = kit::EncodeBase64(data.data(), data.size(), text.data(), text.size(), flags,
                                          line, line_feed);
    text.resize(result.size);
    return text;
}

// --- Encoding ------------------------------------------------------------------------------------

template <typename Char>
void OurEncode(const Bytes& data, char* out, unsigned flags, std::uint64_t line) {
    const Char* const line_feed = nullptr;
    kit::EncodeBase64(data.data(), data.size(), reinterpret_cast<Char*>(out), data.size() * 2 + 16,
                      flags, line, line_feed);
}

int EvpEncode(const Bytes& data, char* out) {
    return EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out), data.data(), Int(data.size()));
}

// EVP's own lines have 64 characters.
void EvpEncodeLines(const Bytes& data, char* out) {
    auto* const to = reinterpret_cast<unsigned char*>(out);
    EVP_ENCODE_CTX* const context = EVP_ENCODE_CTX_new();
    int written = 0;
    int last = 0;
    EVP_EncodeInit(context);
    EVP_EncodeUpdate(context, to, &written, data.data(), Int(data.size()));
    EVP_EncodeFinal(context, to + written, &last);
    EVP_ENCODE_CTX_free(context);
}

void GlibEncode(const Bytes& data, char* out, gboolean lines) {
    int state = 0;
    int save = 0;
    gsize size = g_base64_encode_step(data.data(), data.size(), lines, out, &state, &save);
    size += g_base64_encode_close(lines, out + size, &state, &save);
    out[size] = '\0';
}

void RegisterEncoding(const Size& size) {
    const Bytes data = RandomBytes(size.bytes);
    Measure(Named("base64 encode", size, "qelkit"), size.bytes,
            [=](char* out) { OurEncode<char>(data, out, 0, 0); });
    Measure(Named("base64 encode", size, "openssl"), size.bytes,
            [=](char* out) { EvpEncode(data, out); });
    Measure(Named("base64 encode", size, "glib"), size.bytes,
            [=](char* out) { GlibEncode(data, out, FALSE); });

    Measure(Named("base64 encode lines", size, "qelkit"), size.bytes,
            [=](char* out) { OurEncode<char>(data, out, 1, 64); });
    Measure(Named("base64 encode lines", size, "openssl"), size.bytes,
            [=](char* out) { EvpEncodeLines(data, out); });
    Measure(Named("base64 encode lines", size, "glib"), size.bytes,
            [=](char* out) { GlibEncode(data, out, TRUE); });

    Measure(Named("base64 encode wide", size, "qelkit"), size.bytes,
            [=](char* out) { OurEncode<char16_t>(data, out, 0, 0); });
    Measure(Named("base64 encode wide", size, "openssl"), size.bytes, [=](char* out) {
        char* const narrow = out + data.size() * 3;
        const int length = EvpEncode(data, narrow);
        std::copy_n(narrow, length, reinterpret_cast<char16_t*>(out));
    });
}

// --- Decoding ------------------------------------------------------------------------------------

template <typename Char>
void OurDecode(const std::basic_string<Char>& text, char* out, unsigned flags) {
    const auto result = kit::DecodeBase64(text.data(), text.size(), out, text.size(), flags);
    if (result.failure != kit::Base64Failure::kNone) std::abort();
}

const unsigned char* Unsigned(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

void EvpDecode(const std::string& text, char* out) {
    const int size =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(out), Unsigned(text), Int(text.size()));
    if (size < 0) std::abort();
}

void EvpDecodeLines(const std::string& text, char* out) {
    auto* const to = reinterpret_cast<unsigned char*>(out);
    EVP_ENCODE_CTX* const context = EVP_ENCODE_CTX_new();
    int written = 0;
    int last = 0;
    EVP_DecodeInit(context);
    if (EVP_DecodeUpdate(context, to, &written, Unsigned(text), Int(text.size())) < 0) std::abort();
    EVP_DecodeFinal(context, to + written, &last);
    EVP_ENCODE_CTX_free(context);
}

void GlibDecode(const std::string& text, char* out) {
    int state = 0;
    guint save = 0;
    g_base64_decode_step(text.data(), text.size(), reinterpret_cast<guchar*>(out), &state, &save);
}

// A blank behind every eighth character, about.
std::string WithBlanks(const std::string& text) {
    corpora::Random random(7);
    std::string result;
    for (const char c : text) {
        result += c;
        if (random.Below(8) == 0) result += ' ';
    }
    return result;
}

void RegisterDecoding(const Size& size) {
    const Bytes data = RandomBytes(size.bytes);
    const std::string text = Encoded<char>(data, 0, 0);
    Measure(Named("base64 decode", size, "qelkit"), size.bytes,
            [=](char* out) { OurDecode(text, out, 0); });
    Measure(Named("base64 decode", size, "openssl"), size.bytes,
            [=](char* out) { EvpDecode(text, out); });
    Measure(Named("base64 decode", size, "glib"), size.bytes,
            [=](char* out) { GlibDecode(text, out); });

    const struct {
        const char* group;
        std::string text;
    } cases[] = {{"base64 decode lines", Encoded<char>(data, 1, 64)},
                 {"base64 decode blanks", WithBlanks(text)}};
    for (const auto& c : cases) {
        Measure(Named(c.group, size, "qelkit"), size.bytes,
                [broken = c.text](char* out) { OurDecode(broken, out, 1); });
        Measure(Named(c.group, size, "openssl"), size.bytes,
                [broken = c.text](char* out) { EvpDecodeLines(broken, out); });
        Measure(Named(c.group, size, "glib"), size.bytes,
                [broken = c.text](char* out) { GlibDecode(broken, out); });
    }

    const std::u16string wide = Encoded<char16_t>(data, 0, 0);
    Measure(Named("base64 decode wide", size, "qelkit"), size.bytes,
            [=](char* out) { OurDecode(wide, out, 0); });
    Measure(Named("base64 decode wide", size, "openssl"), size.bytes, [=](char* out) {
        std::string narrow(wide.size(), '\0');
        std::transform(wide.begin(), wide.end(), narrow.begin(),
                       [](char16_t c) { return static_cast<char>(c); });
        EvpDecode(narrow, out);
    });
}

// --- Hexadecimal ---------------------------------------------------------------------------------

void RegisterHex(const Size& size) {
    const Bytes data = RandomBytes(size.bytes);
    const std::size_t room = size.bytes * 3 + 1;
    const struct {
        const char* write;
        const char* read;
        bool spaced;
    } forms[] = {{"hex write", "hex read", false}, {"hex write spaced", "hex read spaced", true}};
    for (const auto& form : forms) {
        const bool spaced = form.spaced;
        Measure(Named(form.write, size, "qelkit"), size.bytes, [=](char* out) {
            QELBin2Hex(data.data(), static_cast<ulong32>(data.size()), out,
                       static_cast<ulong32>(room), spaced);
        });
        Measure(Named(form.write, size, "openssl"), size.bytes, [=](char* out) {
            std::size_t length;
            OPENSSL_buf2hexstr_ex(out, room, &length, data.data(), Int(data.size()),
                                  spaced ? ' ' : '\0');
        });

        std::string text(room, '\0');
        QELBin2Hex(data.data(), static_cast<ulong32>(data.size()), text.data(),
                   static_cast<ulong32>(room), spaced);
        Measure(Named(form.read, size, "qelkit"), size.bytes, [=](char* out) {
            QELHex2Bin(text.c_str(), reinterpret_cast<unsigned char*>(out),
                       static_cast<ulong32>(data.size()));
        });
        Measure(Named(form.read, size, "openssl"), size.bytes, [=](char* out) {
            std::size_t length;
            OPENSSL_hexstr2buf_ex(reinterpret_cast<unsigned char*>(out), data.size(), &length,
                                  text.c_str(), spaced ? ' ' : '\0');
        });
    }
}

}  // namespace

int main(int argc, char** argv) {
    for (const Size& size : kSizes) RegisterEncoding(size);
    for (const Size& size : kSizes) RegisterDecoding(size);
    for (const Size& size : kSizes) RegisterHex(size);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
