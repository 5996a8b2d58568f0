// Record files beside the same work by hand: the C runtime's stream, a seek and a transfer for each
// record, and a flush after each that is written.

#include <cstdio>
#include <string>

#include "file_com/record_file.h"
#include "platform/windows.h"
#include "support/wine_bench.h"

namespace {

constexpr long kRecords = 100000;

struct Record {
    long numbers[16];
};

// The numbers of records in an order that no buffer foresees.
class Order {
public:
    long Next() {
        state_ = state_ * 1664525 + 1013904223;
        return static_cast<long>((state_ >> 8) % kRecords);
    }

private:
    unsigned state_ = 1;
};

std::string TempPath(const char* name) {
    char folder[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    return std::string(folder) + name;
}

bool AppendByHand(FILE* stream, long& count, const Record& record) {
    const long long end = 36 + count * static_cast<long long>(sizeof record);
    if (_fseeki64(stream, end, SEEK_SET) != 0) return false;
    if (std::fwrite(&record, 1, sizeof record, stream) != sizeof record) return false;
    if (std::fflush(stream) != 0) return false;
    ++count;
    return true;
}

bool ReadByHand(FILE* stream, long count, long i, Record& record) {
    if (i < 0 || i >= count) return false;
    const long long at = 36 + i * static_cast<long long>(sizeof record);
    if (_fseeki64(stream, at, SEEK_SET) != 0) return false;
    return std::fread(&record, 1, sizeof record, stream) == sizeof record;
}

void MeasureAppends(WineBench& bench, const std::string& path, const std::string& plain) {
    Record record = {};
    {
        CRecFile file(path.c_str(), sizeof record, 0, nullptr);
        bench.Run("record file/append/qelkit", [&] { KeepValue(file.Add(&record)); });
    }
    FILE* const stream = std::fopen(plain.c_str(), "w+b");
    long count = 0;
    bench.Run("record file/append/stdio", [&] { KeepValue(AppendByHand(stream, count, record)); });
    std::fclose(stream);
}

void MeasureReads(WineBench& bench, const std::string& path) {
    Record record = {};
    {
        CRecFile file(path.c_str(), sizeof record, 0, nullptr);
        for (long i = 0; i < kRecords; ++i) file.Add(&record);
    }
    {
        Order order;
        CRecFile file(path.c_str(), sizeof record, 2, nullptr);
        bench.Run("record file/random read/qelkit",
                  [&] { KeepValue(file.Get(order.Next(), &record)); });
    }
    Order order;
    FILE* const stream = std::fopen(path.c_str(), "rb");
    bench.Run("record file/random read/stdio",
              [&] { KeepValue(ReadByHand(stream, kRecords, order.Next(), record)); });
    std::fclose(stream);
}

}  // namespace

int main() {
    const std::string path = TempPath("qelkit-bench.rec");
    const std::string plain = TempPath("qelkit-bench.bin");
    WineBench bench;
    MeasureAppends(bench, path, plain);
    MeasureReads(bench, path);
    DeleteFileA(path.c_str());
    DeleteFileA(plain.c_str());
    return bench.Print();
}
