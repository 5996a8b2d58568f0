// Walking and summing a tree of 20,000 files beside a bare walk of the same tree.

#include <cstdint>
#include <cstdio>
#include <string>

#include "file_com/file_finder.h"
#include "file_com/qel_folder.h"
#include "platform/windows.h"
#include "support/wine_bench.h"

namespace {

constexpr int kFolders = 200;
constexpr int kFilesEach = 100;

void MakeTree(const std::string& root) {
    for (int i = 0; i < kFolders; ++i) {
        const std::string folder =
            root + "\\group" + std::to_string(i / 20) + "\\folder" + std::to_string(i);
        CQELFolder::MakeFolder(folder.c_str());
        for (int j = 0; j < kFilesEach; ++j) {
            FILE* file = std::fopen((folder + "\\file" + std::to_string(j) + ".txt").c_str(), "wb");
            if (!file) continue;
            std::fputs("0123456789", file);
            std::fclose(file);
        }
    }
}

std::uint64_t BareSum(const std::string& folder) {
    std::uint64_t sum = 0;
    WIN32_FIND_DATAA entry;
    const HANDLE find = FindFirstFileA((folder + "\\*").c_str(), &entry);
    if (find == INVALID_HANDLE_VALUE) return 0;
    do {
        if (entry.cFileName[0] == '.') continue;
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            sum += BareSum(folder + "\\" + entry.cFileName);
        } else {
            sum += std::uint64_t{entry.nFileSizeHigh} << 32 | entry.nFileSizeLow;
        }
    } while (FindNextFileA(find, &entry));
    FindClose(find);
    return sum;
}

}  // namespace

int main() {
    const QEL::TEMPFOLDER tree;
    const std::string root = tree.operator const char*();
    MakeTree(root);
    WineBench bench;
    std::uint64_t sum = 0;
    bench.Run("tree/sum of 20,000 files/qelkit", [&] {
        CQELInt64 total;
        CQELFolder::RecursiveDirProcess(root.c_str(), CQELFolder::DIR_SUM_LENGTHS, total);
        sum = static_cast<std::uint64_t>(total);
    });
    bench.Run("tree/sum of 20,000 files/FindFirstFile", [&] {
        if (BareSum(root) != sum) sum = 0;
    });
    bench.Run("tree/find of 20,000 files/qelkit", [&] {
        QEL::FileFinder finder;
        finder.StartFind(root.c_str(), QEL::FILENAME_MASK("*.txt", true, 0));
        std::uint64_t size = 0;
        while (finder.NextFile()) size += finder.GetFileInfo().size;
        if (size != sum) sum = 0;
    });
    bench.Run("tree/find of 20,000 files/FindFirstFile", [&] { KeepValue(BareSum(root)); });
    if (sum != std::uint64_t{kFolders} * kFilesEach * 10) {
        std::fprintf(stderr, "tree: the sums differ\n");
        return 1;
    }
    return bench.Print();
}
