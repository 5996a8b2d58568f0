// program_instance_helper NAME: another process of a program. Ends with 100 if it is the first of
// its name, else with the number of windows that the others have.
// program_instance_helper NAME EVENT: makes two windows, sets the event and waits to be killed; with
// a third argument it is killed while it has the mutex.

#include <string>

#include "platform/windows.h"
#include "runtime/program_instance.h"

namespace {

HWND MakeWindow(DWORD style, HWND parent) {
    return ::CreateWindowExA(0, "STATIC", "window", style, 0, 0, 100, 100, parent, nullptr, nullptr,
                             nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 1;
    const std::string name = argv[1];
    const bool first = QEL::CreateProgramInstance(name.c_str());
    if (argc == 2) {
        std::vector<HWND> windows;
        QEL::GetProgramInstanceWindows(windows);
        return first ? 100 : static_cast<int>(windows.size());
    }
    MakeWindow(WS_OVERLAPPEDWINDOW, nullptr);
    MakeWindow(WS_OVERLAPPEDWINDOW, nullptr);
    if (argc == 4) {
        ::WaitForSingleObject(::OpenMutexA(SYNCHRONIZE, FALSE, (name + " Mutex").c_str()),
                              INFINITE);
    }
    ::SetEvent(::OpenEventA(EVENT_MODIFY_STATE, FALSE, argv[2]));
    ::Sleep(60000);
    return 2;
}
