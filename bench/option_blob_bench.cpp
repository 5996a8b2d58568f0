// Option blobs beside the copying that they cannot do without.
//   blob parse    reads a blob into a list of options and releases it
//   blob rebuild  builds the blob of such a list
// A case is "data bytes of every option x number of options". The contender `memcpy` allocates room
// for the blob, copies it in one piece and releases it; `memcpy each` does the same record by
// record; `vectors` keeps the options in a vector of code and std::vector.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/byte_order.h"
#include "config/option_blob.h"

namespace {

using Blob = std::vector<unsigned char>;

Blob MakeBlob(unsigned data_bytes, unsigned options) {
    Blob blob(std::size_t{8 + data_bytes} * options);
    for (unsigned i = 0; i < options; ++i) {
        unsigned char* record = blob.data() + std::size_t{8 + data_bytes} * i;
        kit::StoreLe32(record, i);
        kit::StoreLe32(record + 4, data_bytes);
        std::memset(record + 8, static_cast<int>(i), data_bytes);
    }
    return blob;
}

void ParseOurs(const Blob& blob) {
    CQelOpts options(blob.data(), static_cast<unsigned>(blob.size()));
    benchmark::DoNotOptimize(options);
}

void CopyOnce(const Blob& blob) {
    const std::unique_ptr<unsigned char[]> copy(new unsigned char[blob.size()]);
    std::memcpy(copy.get(), blob.data(), blob.size());
    benchmark::DoNotOptimize(copy.get());
    benchmark::ClobberMemory();
}

void CopyEach(const Blob& blob) {
    const std::unique_ptr<unsigned char[]> copy(new unsigned char[blob.size()]);
    unsigned char* to = copy.get();
    kit::ByteReader reader(blob.data(), blob.size());
    while (reader.left() >= 8) {
        const std::uint32_t code = reader.U32();
        const std::uint32_t length = reader.U32();
        const unsigned char* data = reader.Take(length);
        if (!data) break;
        kit::StoreLe32(to, code);
        kit::StoreLe32(to + 4, length);
        std::memcpy(to + 8, data, length);
        to += 8 + length;
    }
    benchmark::DoNotOptimize(copy.get());
    benchmark::ClobberMemory();
}

struct Option {
    std::uint32_t code;
    Blob data;
};
using Options = std::vector<Option>;

Options ParseIntoVectors(const Blob& blob) {
    Options options;
    kit::ByteReader reader(blob.data(), blob.size());
    while (reader.left() >= 8) {
        const std::uint32_t code = reader.U32();
        const std::uint32_t length = reader.U32();
        const unsigned char* data = reader.Take(length);
        if (!data) break;
        options.push_back({code, Blob(data, data + length)});
    }
    return options;
}

Blob BlobOfVectors(const Options& options) {
    std::size_t size = 0;
    for (const Option& option : options) size += 8 + option.data.size();
    Blob blob(size);
    kit::ByteWriter writer(blob.data(), blob.size());
    for (const Option& option : options) {
        writer.U32(option.code);
        writer.U32(static_cast<std::uint32_t>(option.data.size()));
        writer.Bytes(option.data.data(), option.data.size());
    }
    return blob;
}

template <typename Run>
void Register(const char* group, const std::string& what, const char* contender,
              const std::shared_ptr<const Blob>& blob, Run run) {
    benchmark::RegisterBenchmark(
        (group + ("/" + what) + "/" + contender).c_str(), [=](benchmark::State& state) {
            for (auto _ : state) run(*blob);
            state.SetBytesProcessed(state.iterations() * static_cast<long>(blob->size()));
        });
}

void RegisterCase(unsigned data_bytes, unsigned options) {
    char what[40];
    std::snprintf(what, sizeof what, "%u x %u", data_bytes, options);
    const auto blob = std::make_shared<const Blob>(MakeBlob(data_bytes, options));
    Register("blob parse", what, "qelkit", blob, ParseOurs);
    Register("blob parse", what, "memcpy", blob, CopyOnce);
    Register("blob parse", what, "memcpy each", blob, CopyEach);
    Register("blob parse", what, "vectors", blob,
             [](const Blob& b) { benchmark::DoNotOptimize(ParseIntoVectors(b)); });

    const auto list = std::make_shared<CQelOpts>(blob->data(), static_cast<unsigned>(blob->size()));
    Register("blob rebuild", what, "qelkit", blob, [=](const Blob&) {
        unsigned length;
        unsigned char* built;
        list->GetAllOptions(length, built);
        benchmark::DoNotOptimize(built);
    });
    Register("blob rebuild", what, "memcpy", blob, CopyOnce);
    Register("blob rebuild", what, "memcpy each", blob, CopyEach);
    const auto vectors = std::make_shared<const Options>(ParseIntoVectors(*blob));
    Register("blob rebuild", what, "vectors", blob,
             [=](const Blob&) { benchmark::DoNotOptimize(BlobOfVectors(*vectors)); });
}

}  // namespace

int main(int argc, char** argv) {
    for (unsigned data_bytes : {64, 256, 1024, 4096}) {
        RegisterCase(data_bytes, 16);
        RegisterCase(data_bytes, (1u << 20) / data_bytes);
        RegisterCase(data_bytes, (1u << 24) / data_bytes);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
