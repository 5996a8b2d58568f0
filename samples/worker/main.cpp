// worker [THREADS [EACH]]: several threads post functions to one worker thread, which runs them one
// at a time and so needs no lock around the results. Shows what came of it, and ends with 0 if
// nothing is missing and each thread's functions ran in the order in which it posted them.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include <qelkit2.h>

namespace {

// What the functions leave behind. Only the worker touches it while it works.
struct Results {
    struct Line {
        int poster;
        int number;
        unsigned long thread;  // that ran it
    };
    std::vector<Line> lines;
};

// One posted function. The worker deletes it after it has run.
class Entry : public QEL::IFunction {
public:
    Entry(Results& results, int poster, int number)
        : results_(results), poster_(poster), number_(number) {}

    void Invoke() override { results_.lines.push_back({poster_, number_, ::GetCurrentThreadId()}); }

private:
    Results& results_;
    const int poster_;
    const int number_;
};

void PostFromThreads(QEL::IThreadBinder& worker, Results& results, int threads, int each) {
    std::vector<std::thread> posters;
    for (int poster = 0; poster < threads; ++poster) {
        posters.emplace_back([&, poster] {
            for (int i = 0; i < each; ++i) worker.BindInvoke(new Entry(results, poster, i));
        });
    }
    for (auto& poster : posters) poster.join();
}

// Prints a line for each poster; returns whether all is as it should be.
bool Show(const Results& results, int threads, int each) {
    bool good = true;
    for (int poster = 0; poster < threads; ++poster) {
        int next = 0;
        bool in_order = true;
        for (const auto& line : results.lines) {
            if (line.poster == poster) in_order = line.number == next++ && in_order;
        }
        std::printf("  thread %d: %d of %d functions ran, %s\n", poster, next, each,
                    in_order ? "in order" : "OUT OF ORDER");
        good = good && in_order && next == each;
    }
    bool one_thread = true;
    for (const auto& line : results.lines) {
        one_thread = one_thread && line.thread == results.lines.front().thread;
    }
    std::printf("  all on one thread: %s\n", one_thread ? "yes" : "NO");
    return good && one_thread;
}

}  // namespace

int main(int argc, char** argv) {
    const int threads = argc > 1 ? std::atoi(argv[1]) : 4;
    const int each = argc > 2 ? std::atoi(argv[2]) : 1000;
    if (argc > 3 || threads < 1 || threads > 64 || each < 1 || each > 1000000) {
        std::printf("usage: worker [THREADS (1..64) [EACH (1..1000000)]]\n");
        return 1;
    }
    Results results;
    const auto start = std::chrono::steady_clock::now();
    {
        const TRef<QEL::IThreadBinder> worker = QEL::CreateSimpleThreadBinder();
        if (!worker) {
            std::printf("failed: no memory for a worker\n");
            return 1;
        }
        PostFromThreads(*worker, results, threads, each);
    }  // the last reference waits until everything has run
    const std::chrono::duration<double, std::milli> passed =
        std::chrono::steady_clock::now() - start;
    std::printf("%d threads posted %d functions each, %.1f ms\n", threads, each, passed.count());
    return Show(results, threads, each) ? 0 : 1;
}
