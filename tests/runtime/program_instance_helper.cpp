// program_instance_helper NAME: another process of a program. Ends with 100 if it is the first of
// its name, else with the number of windows that the others have.
// program_instance_helper NAME EVENT: makes a window, takes the mutex, sets the event and waits to be
// killed.

#include <string>

#include "platform/windows.h"
#include "runtime/program_instance.h"

int main(int argc, char** argv) {
    if (argc < 2) return 1;
    const std::string name = argv[1];
    const bool first = QEL::CreateProgramInstance(name.c_str());
    if (argc == 2) {
        std::vector<HWND> windows;
        QEL::GetProgramInstanceWindows(windows);
        return first ? 100 : static_cast<int>(windows.size());
    }
    CreateWindowExA(0, "STATIC", "", WS_OVERLAPPED, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    WaitForSingleObject(OpenMutexA(SYNCHRONIZE, FALSE, (name + " Mutex").c_str()), INFINITE);
    SetEvent(OpenEventA(EVENT_MODIFY_STATE, FALSE, argv[2]));
    Sleep(60000);
    return 2;
}
