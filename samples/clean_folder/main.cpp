// clean_folder [--clear | --wipe] FOLDER [MASK...]: lists the files of FOLDER and of the folders
// below it that match a mask ("*" and "?"; all files when there is none) and sums them up.
//
// --clear deletes the listed files, --wipe overwrites them three times first; without masks the
// emptied folders below FOLDER go as well. Names that begin with a dot are left alone by "*", and
// what a junction or folder link leads to is never touched.
//
// Ends with 0, or with 1 and a message when something failed.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <qelkit2.h>

#include <windows.h>

#include "../console/utf8.h"

namespace {

using Clock = std::chrono::steady_clock;

enum class Work { kList, kClear, kWipe };

struct Request {
    Work work = Work::kList;
    std::string folder;
    std::vector<QEL::FILENAME_MASK> masks;
    bool everything = false;  // no mask was given
};

double Megabytes(std::uint64_t bytes) { return static_cast<double>(bytes) / 1e6; }

// A line every half second, so that long work is seen to go on.
class Progress {
public:
    Progress(const char* what, std::size_t count) : what_(what), count_(count) {}
    void Show(std::size_t done, std::uint64_t bytes) {
        if (Clock::now() - shown_ < std::chrono::milliseconds(500)) return;
        shown_ = Clock::now();
        std::printf("  %s %zu of %zu files, %.1f MB\n", what_, done, count_, Megabytes(bytes));
        std::fflush(stdout);
    }

private:
    const char* const what_;
    const std::size_t count_;
    Clock::time_point shown_ = Clock::now();
};

bool ReadArguments(int argc, char** argv, Request& request) {
    int at = 1;
    if (at < argc && std::strcmp(argv[at], "--clear") == 0) request.work = Work::kClear;
    if (at < argc && std::strcmp(argv[at], "--wipe") == 0) request.work = Work::kWipe;
    if (request.work != Work::kList) ++at;
    if (at >= argc || argv[at][0] == '-') return false;
    request.folder = argv[at++];
    for (; at < argc; ++at) request.masks.emplace_back(argv[at], true, 0);
    request.everything = request.masks.empty();
    if (request.everything) request.masks.emplace_back("*", true, 0);
    return true;
}

QEL::FilesList ListFiles(QEL::FileFinder& finder) {
    constexpr std::size_t kShown = 20;
    QEL::FilesList list;
    while (finder.NextFile()) {
        list.Add(finder.GetFileInfo());
        if (list.size() > kShown) continue;
        std::printf("  %12llu  %s\n", static_cast<unsigned long long>(finder.GetFileInfo().size),
                    Utf8(finder.GetFullFilename()).c_str());
    }
    if (list.size() > kShown) std::printf("  ... and %zu more\n", list.size() - kShown);
    return list;
}

void ShowSums(const Request& request, const QEL::FilesList& list) {
    std::printf("found %zu files, %.1f MB\n", list.size(), Megabytes(list.TotalSize()));
    CQELInt64 sum(std::uint64_t{0});
    CQELFolder::RecursiveDirProcess(request.folder.c_str(), CQELFolder::DIR_SUM_LENGTHS, sum);
    std::printf("the whole folder: %.1f MB\n", Megabytes(static_cast<std::uint64_t>(sum)));
    CQELInt64 available;
    const XQELFile status(false);
    if (CQELFolder::GetDiskFree(request.folder.c_str(), available, status)) {
        std::printf("free on its disk: %.1f MB\n",
                    Megabytes(static_cast<std::uint64_t>(available)));
    }
}

bool IsGone(const QEL::FF_FILE_INFO& file, Work work) {
    if (work == Work::kClear) return CQELFolder::UnLink(file.name) == 0;
    const bool is_link = (file.attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return is_link ? CQELFolder::UnLink(file.name) == 0 : QELUtils::WipeFile(file.name) == 0;
}

// Returns how many files could not be removed.
int RemoveFiles(const Request& request, const QEL::FilesList& list) {
    Progress progress(request.work == Work::kWipe ? "wiped" : "deleted", list.size());
    std::size_t done = 0;
    std::uint64_t bytes = 0;
    int failures = 0;
    for (const auto& file : list) {
        if (IsGone(file, request.work)) {
            bytes += file.size;
        } else {
            ++failures;
            std::printf("  failed: %s\n", Utf8(file.name).c_str());
        }
        progress.Show(++done, bytes);
    }
    if (request.everything && failures == 0) CQELFolder::ClearFolder(request.folder.c_str(), 1);
    std::printf("%s %zu files, %.1f MB; %d failed\n",
                request.work == Work::kWipe ? "wiped" : "deleted",
                list.size() - static_cast<std::size_t>(failures), Megabytes(bytes), failures);
    return failures;
}

}  // namespace

int main(int argc, char** argv) {
    SetConsoleOutputCP(CP_UTF8);
    Request request;
    if (!ReadArguments(argc, argv, request)) {
        std::printf("usage: clean_folder [--clear | --wipe] FOLDER [MASK...]\n");
        return 1;
    }
    try {
        QEL::FileFinder finder;
        if (!finder.StartFind(request.folder.c_str(), request.masks)) {
            std::printf("failed: there is no folder %s\n", Utf8(request.folder.c_str()).c_str());
            return 1;
        }
        const QEL::FilesList list = ListFiles(finder);
        ShowSums(request, list);
        if (request.work == Work::kList) return 0;
        return RemoveFiles(request, list) == 0 ? 0 : 1;
    } catch (const std::bad_alloc&) {
        std::printf("failed: not enough memory for the list\n");
        return 1;
    }
}
