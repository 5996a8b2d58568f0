// The LZSS coder beside its textbook form, zlib, LZ4 and a plain copy. Encoding times include what
// every call allocates. The stream of each contender is its own; ours and the textbook's are equal.

#include <benchmark/benchmark.h>
#include <lz4.h>
#include <zlib.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "compress/lz_coder.h"
#include "support/corpora.h"
#include "yardsticks/textbook_lz.h"

namespace {

const unsigned char* Bytes(const std::string& s) {
    return reinterpret_cast<const unsigned char*>(s.data());
}
unsigned char* Bytes(std::string& s) { return reinterpret_cast<unsigned char*>(s.data()); }

// Writes all of `from` coded into `to` and returns the bytes written, 0 on failure. Decoders get a
// `to` of exactly the size of the text and a spare byte.
using Code = std::size_t (*)(const std::string& from, std::string& to);

struct Contender {
    const char* name;
    Code encode;
    Code decode;
};

std::size_t OurEncode(const std::string& from, std::string& to) {
    auto size = static_cast<unsigned int>(to.size());
    auto* const src = const_cast<unsigned char*>(Bytes(from));
    return LzCompress(src, static_cast<unsigned int>(from.size()), Bytes(to), &size) ? 0 : size;
}
std::size_t OurDecode(const std::string& from, std::string& to) {
    auto size = static_cast<unsigned int>(to.size() - 1);
    auto* const src = const_cast<unsigned char*>(Bytes(from));
    return LzDecompress(src, static_cast<unsigned int>(from.size()), Bytes(to), &size) ? 0 : size;
}

std::size_t TextbookEncode(const std::string& from, std::string& to) {
    auto size = static_cast<std::uint32_t>(to.size());
    const auto length = static_cast<std::uint32_t>(from.size());
    return textbook::Compress(Bytes(from), length, Bytes(to), &size) ? 0 : size;
}
std::size_t TextbookDecode(const std::string& from, std::string& to) {
    auto size = static_cast<std::uint32_t>(to.size() - 1);
    const auto length = static_cast<std::uint32_t>(from.size());
    return textbook::Decompress(Bytes(from), length, Bytes(to), &size) ? 0 : size;
}

template <int kLevel>
std::size_t ZlibEncode(const std::string& from, std::string& to) {
    uLongf size = to.size();
    return compress2(Bytes(to), &size, Bytes(from), from.size(), kLevel) == Z_OK ? size : 0;
}
std::size_t ZlibDecode(const std::string& from, std::string& to) {
    uLongf size = to.size();
    return uncompress(Bytes(to), &size, Bytes(from), from.size()) == Z_OK ? size : 0;
}

std::size_t Lz4Encode(const std::string& from, std::string& to) {
    return static_cast<std::size_t>(LZ4_compress_default(
        from.data(), to.data(), static_cast<int>(from.size()), static_cast<int>(to.size())));
}
std::size_t Lz4Decode(const std::string& from, std::string& to) {
    const int size = LZ4_decompress_safe(from.data(), to.data(), static_cast<int>(from.size()),
                                         static_cast<int>(to.size()));
    return size < 0 ? 0 : static_cast<std::size_t>(size);
}

std::size_t Copy(const std::string& from, std::string& to) {
    std::memcpy(to.data(), from.data(), from.size());
    return from.size();
}

constexpr Contender kContenders[] = {
    {"qelkit", OurEncode, OurDecode},      {"textbook", TextbookEncode, TextbookDecode},
    {"zlib-1", ZlibEncode<1>, ZlibDecode}, {"zlib-6", ZlibEncode<6>, ZlibDecode},
    {"lz4", Lz4Encode, Lz4Decode},         {"memcpy", Copy, Copy},
};
constexpr std::size_t kOwnForms = 2;  // the first contenders: those that make our stream

void Run(benchmark::State& state, Code code, const std::string& from, std::string& to,
         const std::string& text, std::size_t expected) {
    std::size_t size = 0;
    for (auto _ : state) {
        size = code(from, to);
        benchmark::ClobberMemory();
    }
    if (size != expected) state.SkipWithError("wrong output");
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void Register(const std::string& group, const corpora::Corpus& corpus, const Contender& contender,
              std::function<void(benchmark::State&)> run) {
    const std::string name = group + "/" + corpus.name + "/" + contender.name;
    benchmark::RegisterBenchmark(name.c_str(), std::move(run))
        ->MinTime(0.05)
        ->Repetitions(3)
        ->ReportAggregatesOnly();
}

// `kind` goes behind the names of the groups, so that each kind has a table and medians of its own.
void RegisterCorpus(const std::string& kind, const corpora::Corpus& corpus,
                    std::size_t contenders) {
    for (std::size_t i = 0; i < contenders; ++i) {
        const Contender& contender = kContenders[i];
        std::string stream(corpus.bytes.size() * 2 + 64, '\0');
        stream.resize(contender.encode(corpus.bytes, stream));
        Register("LZ encode" + kind, corpus, contender, [=](benchmark::State& state) {
            std::string to(corpus.bytes.size() * 2 + 64, '\0');
            Run(state, contender.encode, corpus.bytes, to, corpus.bytes, stream.size());
            state.counters["ratio"] =
                static_cast<double>(stream.size()) / static_cast<double>(corpus.bytes.size());
        });
        Register("LZ decode" + kind, corpus, contender, [=](benchmark::State& state) {
            std::string to(corpus.bytes.size() + 1, '\0');
            Run(state, contender.decode, stream, to, corpus.bytes, corpus.bytes.size());
            if (to.compare(0, corpus.bytes.size(), corpus.bytes) != 0) {
                state.SkipWithError("wrong text");
            }
        });
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (const auto& corpus : corpora::All()) RegisterCorpus("", corpus, std::size(kContenders));
    for (const auto& corpus : corpora::Degenerate())
        RegisterCorpus(" degenerate", corpus, kOwnForms);
    for (const auto& corpus : corpora::Small()) RegisterCorpus(" small", corpus, kOwnForms);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
