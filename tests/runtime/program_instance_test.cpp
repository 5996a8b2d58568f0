#include "runtime/program_instance.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/handles.h"

namespace {

using Windows = std::vector<HWND>;
constexpr int kIsFirst = 100;

kit::KernelHandle Start(const std::string& arguments) {
    std::string command = "program_instance_helper.exe " + arguments;
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    EXPECT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                               nullptr, &startup, &process));
    CloseHandle(process.hThread);
    return kit::KernelHandle(process.hProcess);
}

int ExitCodeOf(const std::string& arguments) {
    const auto process = Start(arguments);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.get(), 30000));
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    return static_cast<int>(code);
}

void Kill(const kit::KernelHandle& process) {
    TerminateProcess(process.get(), 3);
    WaitForSingleObject(process.get(), 30000);
}

kit::KernelHandle StartAndAwait(const std::string& name, const std::string& more = "") {
    const std::string event_name = name + "Ready";
    const kit::KernelHandle ready(CreateEventA(nullptr, FALSE, FALSE, event_name.c_str()));
    auto process = Start(name + " " + event_name + more);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(ready.get(), 30000));
    return process;
}

Windows Listed() {
    Windows windows;
    QEL::GetProgramInstanceWindows(windows);
    return windows;
}

HWND MakeWindow(DWORD style, HWND parent = nullptr) {
    const HWND window =
        CreateWindowExA(0, "STATIC", "", style, 0, 0, 100, 100, parent, nullptr, nullptr, nullptr);
    EXPECT_NE(nullptr, window);
    return window;
}

class ProgramInstance : public testing::Test {
protected:
    ~ProgramInstance() override { QEL::CProgramInstance::DestroyInstance(); }
    // Another name for every test.
    const std::string name_ = "qelkit" + std::to_string(GetCurrentProcessId()) +
                              testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(ProgramInstance, TellsTheFirstProcessFromTheOthers) {
    EXPECT_TRUE(Listed().empty());
    EXPECT_TRUE(QEL::CreateProgramInstance(name_.c_str()));
    EXPECT_FALSE(QEL::CreateProgramInstance(name_.c_str()));
    EXPECT_EQ(0, ExitCodeOf(name_));
    EXPECT_EQ(kIsFirst, ExitCodeOf(name_ + "Other"));
    QEL::CProgramInstance::DestroyInstance();
    EXPECT_EQ(kIsFirst, ExitCodeOf(name_));
}

TEST_F(ProgramInstance, ListsTheMainWindowsOfHookedThreads) {
    ASSERT_TRUE(QEL::CreateProgramInstance(name_.c_str()));
    const HWND first = MakeWindow(WS_OVERLAPPEDWINDOW);
    const HWND owned = MakeWindow(WS_POPUP | WS_CAPTION, first);
    const HWND child = MakeWindow(WS_CHILD, first);
    const HWND bare = MakeWindow(WS_POPUP);
    const HWND second = MakeWindow(WS_POPUP | WS_CAPTION);
    EXPECT_EQ((Windows{first, second}), Listed());
    EXPECT_EQ(2, ExitCodeOf(name_));

    for (const HWND window : {child, owned, bare, first}) DestroyWindow(window);
    EXPECT_EQ(Windows{second}, Listed());
    std::thread([&] {
        DestroyWindow(MakeWindow(WS_OVERLAPPED));  // not hooked
        EXPECT_EQ(Windows{second}, Listed());
        EXPECT_TRUE(QEL::CProgramInstance::AddThread());
        const HWND third = MakeWindow(WS_OVERLAPPED);
        EXPECT_EQ((Windows{second, third}), Listed());
        QEL::CProgramInstance::RemoveThread();
        EXPECT_EQ(Windows{second}, Listed());
        DestroyWindow(third);
    }).join();
    DestroyWindow(second);
    EXPECT_TRUE(Listed().empty());
}

TEST_F(ProgramInstance, SurvivesTheEndOfTheFirstProcess) {
    const auto first = StartAndAwait(name_);
    EXPECT_FALSE(QEL::CreateProgramInstance(name_.c_str()));
    EXPECT_FALSE(QEL::CProgramInstance::AddThread());
    EXPECT_EQ(2u, Listed().size());
    Kill(first);
    EXPECT_EQ(0, ExitCodeOf(name_));  // its windows are gone, the name is still ours
    EXPECT_TRUE(Listed().empty());
    QEL::CProgramInstance::DestroyInstance();
    EXPECT_TRUE(QEL::CreateProgramInstance(name_.c_str()));
}

TEST_F(ProgramInstance, TakesOverAMutexWhoseOwnerDied) {
    const auto owner = StartAndAwait(name_, " mutex");
    std::thread killer([&] {
        Sleep(200);
        Kill(owner);
    });
    EXPECT_FALSE(QEL::CreateProgramInstance(name_.c_str()));
    killer.join();
    EXPECT_TRUE(Listed().empty());
}

}  // namespace
