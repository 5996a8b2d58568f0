// record_writer FILE MAPPING: appends numbered records until somebody ends it, with a PutHeader after
// every few. MAPPING holds two numbers: how many records were begun, how many are stored for good.

#include <atomic>

#include "file_com/record_file.h"
#include "numbered_record.h"
#include "platform/handles.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const kit::KernelHandle mapping(OpenFileMappingA(FILE_MAP_WRITE, FALSE, argv[2]));
    const kit::MappedView view(MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, 0));
    CRecFile file(argv[1], sizeof(NumberedRecord), 1, nullptr);
    if (!view || file.GetRetCode() != 0) return 2;

    auto* const progress = static_cast<std::atomic<long>*>(view.get());
    for (;;) {
        NumberedRecord record(file.Size());
        progress[0] = file.Size() + 1;
        if (!file.Add(&record)) return 2;
        if (file.Size() % 3 != 0) continue;
        if (!file.PutHeader()) return 2;
        progress[1] = file.Size();
    }
}
