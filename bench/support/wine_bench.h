#pragma once

// A small stand-in for Google Benchmark where that is not to be had: times closures and writes its
// JSON, as far as tools/bench_table.py reads it.
//
//   int main() {
//       WineBench bench;
//       bench.Run("string append/short/qelkit", [] { ... one operation ... });
//       return bench.Print();
//   }

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

// Keeps a value, and what led to it, from being optimised away.
template <typename T>
inline void KeepValue(const T& value) {
#if defined(_MSC_VER)
    static const volatile void* sink;
    sink = &value;
#else
    asm volatile("" : : "r,m"(value) : "memory");
#endif
}

class WineBench {
public:
    // Times `operation`: the best of many short batches. Whatever else the machine does only ever
    // makes a batch longer, so the shortest one says most.
    //   bytes   what one operation processes, for throughput; 0 when that says nothing
    template <typename Operation>
    void Run(const std::string& name, Operation operation, double bytes = 0) {
        const std::size_t count = CountFor(operation);
        double best = Batch(operation, count);
        for (int i = 1; i < kBatches; ++i) best = (std::min)(best, Batch(operation, count));
        results_.push_back({name, best / static_cast<double>(count), bytes});
    }

    int Print() const {
        std::printf("{\"benchmarks\": [\n");
        const char* separator = "";
        for (const auto& r : results_) {
            std::printf("%s{\"name\": \"%s\", \"cpu_time\": %.3f, \"time_unit\": \"ns\"", separator,
                        r.name.c_str(), r.nanoseconds);
            if (r.bytes > 0) {
                std::printf(", \"bytes_per_second\": %.1f", r.bytes * 1e9 / r.nanoseconds);
            }
            std::printf("}");
            separator = ",\n";
        }
        std::printf("\n]}\n");
        return results_.empty() ? 1 : 0;
    }

private:
    static constexpr int kBatches = 25;
    static constexpr double kBatchNanoseconds = 2e6;

    struct Result {
        std::string name;
        double nanoseconds;
        double bytes;
    };

    template <typename Operation>
    static double Batch(Operation& operation, std::size_t count) {
        const auto start = std::chrono::steady_clock::now();
        for (std::size_t i = 0; i < count; ++i) operation();
        const std::chrono::duration<double, std::nano> passed =
            std::chrono::steady_clock::now() - start;
        return passed.count();
    }

    template <typename Operation>
    static std::size_t CountFor(Operation& operation) {
        for (std::size_t count = 1;; count *= 2) {
            // Twice, so that one interruption does not pass for a long batch.
            if (Batch(operation, count) >= kBatchNanoseconds &&
                Batch(operation, count) >= kBatchNanoseconds) {
                return count;
            }
        }
    }

    std::vector<Result> results_;
};
