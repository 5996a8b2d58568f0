// The mask matcher beside fnmatch(3): the same masks, names and rules (case folded, no "*" across
// separators, leading dots kept).

#include <benchmark/benchmark.h>
#include <fnmatch.h>

#include <string>
#include <vector>

#include "file_com/detail/wildcard_core.h"

namespace {

struct Case {
    const char* name;
    std::string pattern;
    std::vector<std::string> names;
};

const std::vector<std::string> kNames = {"report.txt", "Annual report 2019 (final).TXT",
                                         "a.c",        "qelkit2_64.dll",
                                         "setup.exe",  "photo_20190401_120000.jpeg",
                                         "readme",     ".profile",
                                         "index.html", "data.backup.zip"};

std::string Repeated(const char* text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

const std::vector<Case> kCases = {
    {"extension", "*.txt", kNames},
    {"everything", "*", kNames},
    {"prefix", "photo_*", kNames},
    {"middle", "*report*", kNames},
    {"two stars", "*_??????.j*g", kNames},
    {"exact", "setup.exe", kNames},
    {"long name", "*backup*.tmp", {Repeated("a_rather_long_name_", 12) + "backup_7.tmp"}},
    {"hostile", Repeated("*a", 10) + "*b?", {Repeated("a", 40)}},
};

constexpr int kFlags = kit::kWildcardPath | kit::kWildcardLeadingDot | kit::kWildcardFoldCase;

template <typename Match>
void Measure(benchmark::State& state, const Case& c, Match match) {
    for (auto _ : state) {
        for (const auto& name : c.names) {
            benchmark::DoNotOptimize(match(c.pattern.c_str(), name.c_str()));
        }
    }
}

void Register(const Case& c) {
    const std::string name = std::string("mask/") + c.name + "/";
    benchmark::RegisterBenchmark((name + "qelkit").c_str(), [&c](benchmark::State& state) {
        Measure(state, c, [](const char* pattern, const char* text) {
            return kit::WildcardMatches(pattern, text, kFlags);
        });
    });
    benchmark::RegisterBenchmark((name + "fnmatch").c_str(), [&c](benchmark::State& state) {
        Measure(state, c, [](const char* pattern, const char* text) {
            return fnmatch(pattern, text, FNM_PATHNAME | FNM_PERIOD | FNM_CASEFOLD) == 0;
        });
    });
}

}  // namespace

int main(int argc, char** argv) {
    for (const Case& c : kCases) Register(c);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
