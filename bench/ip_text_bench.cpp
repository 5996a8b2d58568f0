// Address text beside the C library and Boost.Asio.

#include <arpa/inet.h>
#include <benchmark/benchmark.h>

#include <boost/asio/ip/address_v4.hpp>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "net/ip_text.h"

namespace {

constexpr std::size_t kCount = 4096;  // a power of two: the benchmarks go round

// Random addresses: fields of one, two and three digits in no order that a processor could learn.
const std::vector<ulong32>& Addresses() {
    static const std::vector<ulong32> addresses = [] {
        std::mt19937 random(20240601);
        std::vector<ulong32> made(kCount);
        for (auto& address : made) {
            address = 0;
            for (int i = 0; i < 4; ++i) {
                static constexpr unsigned kWidths[] = {10, 100, 256};
                address = address << 8 | random() % kWidths[random() % 3];
            }
        }
        return made;
    }();
    return addresses;
}

const std::vector<std::string>& Texts() {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> made;
        char text[16];
        for (const ulong32 address : Addresses()) made.emplace_back(CQELIpToText(text, address, 0));
        return made;
    }();
    return texts;
}

template <typename Parse>
void RunParse(benchmark::State& state, Parse parse) {
    const auto& texts = Texts();
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(parse(texts[i++ % kCount].c_str()));
}

template <typename Write>
void RunFormat(benchmark::State& state, Write write) {
    const auto& addresses = Addresses();
    std::size_t i = 0;
    for (auto _ : state) write(addresses[i++ % kCount]);
}

void ParseOurs(benchmark::State& state) {
    RunParse(state, [](const char* text) {
        ulong32 address = 0;
        CQELIpToLong(text, &address);
        return address;
    });
}
void ParseInetPton(benchmark::State& state) {
    RunParse(state, [](const char* text) {
        in_addr address;
        inet_pton(AF_INET, text, &address);
        return ntohl(address.s_addr);
    });
}
void ParseAsio(benchmark::State& state) {
    RunParse(state, [](const char* text) {
        boost::system::error_code error;
        return boost::asio::ip::make_address_v4(text, error).to_uint();
    });
}

void FormatOurs(benchmark::State& state) {
    RunFormat(state, [](ulong32 address) {
        char text[16];
        benchmark::DoNotOptimize(CQELIpToText(text, address, 0));
        benchmark::ClobberMemory();
    });
}
void FormatPaddedOurs(benchmark::State& state) {
    RunFormat(state, [](ulong32 address) {
        char text[16];
        benchmark::DoNotOptimize(CQELIpToText(text, address, 1));
        benchmark::ClobberMemory();
    });
}
void FormatPaddedSnprintf(benchmark::State& state) {
    RunFormat(state, [](ulong32 a) {
        char text[16];
        std::snprintf(text, sizeof text, "%03d.%03d.%03d.%03d", a >> 24, a >> 16 & 255,
                      a >> 8 & 255, a & 255);
        benchmark::DoNotOptimize(text);
    });
}
void FormatInetNtop(benchmark::State& state) {
    RunFormat(state, [](ulong32 address) {
        char text[16];
        in_addr network;
        network.s_addr = htonl(address);
        benchmark::DoNotOptimize(inet_ntop(AF_INET, &network, text, sizeof text));
    });
}
void FormatAsio(benchmark::State& state) {
    RunFormat(state, [](ulong32 address) {
        benchmark::DoNotOptimize(boost::asio::ip::address_v4(address).to_string());
    });
}

BENCHMARK(ParseOurs)->Name("address text/parse/qelkit");
BENCHMARK(ParseInetPton)->Name("address text/parse/inet");
BENCHMARK(ParseAsio)->Name("address text/parse/Boost.Asio");
BENCHMARK(FormatOurs)->Name("address text/format/qelkit");
BENCHMARK(FormatInetNtop)->Name("address text/format/inet");
BENCHMARK(FormatAsio)->Name("address text/format/Boost.Asio");
BENCHMARK(FormatPaddedOurs)->Name("address text/format padded/qelkit");
BENCHMARK(FormatPaddedSnprintf)->Name("address text/format padded/snprintf");

}  // namespace

BENCHMARK_MAIN();
