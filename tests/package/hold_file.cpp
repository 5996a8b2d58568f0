// hold_file FILE: holds FILE open without sharing until FILE.release appears (at most 60 s), and
// tells by FILE.held that it does. What "another program has it open" means in the sample cases.

#include <string>

#include "platform/handles.h"

namespace {

kit::FileHandle Open(const std::string& path, DWORD disposition) {
    return kit::FileHandle(
        CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, disposition, 0, nullptr));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string path = argv[1];
    const auto held = Open(path, OPEN_EXISTING);
    if (!held) return 1;
    Open(path + ".held", CREATE_ALWAYS);
    for (int i = 0; i < 600; ++i) {
        if (GetFileAttributesA((path + ".release").c_str()) != INVALID_FILE_ATTRIBUTES) return 0;
        Sleep(100);
    }
    return 1;
}
