#include "platform/windows.h"

// Leaves a trace when this library's code runs: reading a text from it must not run any.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) SetEnvironmentVariableA("QELKIT_TEST_STRINGS_RAN", "1");
    return TRUE;
}
