#pragma once

#include <vector>

#include "base/export.h"
#include "platform/windows.h"

// Which process of a program was first, and which windows the program has: a second process shows
// those to the user and ends.
//
//     if (!QEL::CreateProgramInstance("Product")) {
//         std::vector<HWND> windows;
//         QEL::GetProgramInstanceWindows(windows);
//         if (!windows.empty()) ::SetForegroundWindow(windows.front());
//         return 0;
//     }
//
// The processes share a mutex and a table of up to 31 windows. A window hook on the thread that
// called CreateProgramInstance in the first process, and on every thread that called
// CProgramInstance::AddThread there, keeps the table: it enters each window that they create from
// then on and that a user could bring to the front (a top-level window with a caption and without
// an owner), and removes it when it is destroyed. What a process that was killed leaves in the table
// goes with the next change or the next process.
//
// All functions may be called from any thread.

namespace QEL {

// Registers this process under a name, which is the same in all processes of the program; null
// counts as "". The names of system objects are made of it, so it has no backslash and is shorter
// than 250 characters. Returns whether the process is the first one.
//
// Waits up to 60 seconds while another process has the mutex; after that, and when the system
// refuses its objects, there are no windows, and the result still tells whether the mutex was
// there. The mutex is there for as long as any process of the name lives or has not called
// CProgramInstance::DestroyInstance. A second call in one process gives up the earlier name.
QELKIT_API bool CreateProgramInstance(const char* name);

// Appends the windows of the table to `out`, in the order in which they were created. Adds nothing
// when this process has no name.
QELKIT_API void GetProgramInstanceWindows(std::vector<HWND>& out);

// What a process keeps of this, made by its first CreateProgramInstance.
class QELKIT_API CProgramInstance {
public:
    CProgramInstance() = delete;

    // Puts the calling thread under the hook too; returns whether it is. Only in the first process.
    static bool AddThread();
    // Takes the calling thread from under the hook, and its windows out of the table. A hooked
    // thread does this before it ends.
    static void RemoveThread();

    // Takes all threads from under the hook and gives up the name. Does nothing without one.
    static void DestroyInstance();
};

}  // namespace QEL
