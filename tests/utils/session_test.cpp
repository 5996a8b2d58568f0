#include "utils/session.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Session : public testing::Test, public VORM::ILog {
protected:
    void Write(const char* line) override { lines_.emplace_back(line); }

    const ulong32 own_ = GetCurrentProcessId();
    std::vector<std::string> lines_;
};

TEST_F(Session, AnswersForAnOrdinaryProgram) {
    DWORD expected = 0;
    ulong32 session = 77;
    CQELString user;
    bool interactive = false, active = false, locked = true, enabled = false;
    std::list<CQELString> services{"before"};
    ProcessIdToSessionId(own_, &expected);
    EXPECT_EQ(0u, QELUtils::GetProcessSessionID(own_, session, this));
    EXPECT_EQ(0u, QELUtils::GetProcessUserSID(own_, user, nullptr));
    EXPECT_EQ(0u, QELUtils::IsProcessUnderInteractiveSession(own_, interactive, this));
    EXPECT_EQ(0u, QELUtils::IsCurrentProcessUnderActiveSession(active, this));
    EXPECT_EQ(0u, QELUtils::IsWorkstationLocked(locked, this));
    EXPECT_EQ(0u, QELUtils::CQELIsTerminalServicesEnabled(enabled, this));
    EXPECT_EQ(0u, QELUtils::GetActiveLinkedServices("PlugPlay", services, this));
    EXPECT_EQ(expected, session);
    EXPECT_EQ(0, user.Find("S-1-5-21-"));
    EXPECT_TRUE(interactive && active && !locked && services.empty() && lines_.empty());
}

TEST_F(Session, AnswersTheCodeLeavesTheResultAndTellsTheLog) {
    const ulong32 none = 0xFFFFFFF0;  // no process
    ulong32 session = 77;
    CQELString user("before");
    std::list<CQELString> services{"before"};
    EXPECT_EQ(87u, QELUtils::GetProcessSessionID(none, session, this));
    EXPECT_EQ(87u, QELUtils::GetProcessUserSID(none, user, this));
    EXPECT_EQ(1060u, QELUtils::GetActiveLinkedServices("qelkit none", services, this));
    EXPECT_EQ(1400u, QELUtils::SetForeground(nullptr, this));
    EXPECT_TRUE(session == 77 && user == "before" && services.size() == 1);
    EXPECT_EQ((std::vector<std::string>{
                  "ProcessIdToSessionId failed with code 87", "OpenProcess failed with code 87",
                  "OpenService failed with code 1060", "IsWindow failed with code 1400"}),
              lines_);
}

TEST_F(Session, CutsCommandLines) {
    std::list<CQELString> words;
    const char line[] = "\"C:\\a b\\p.exe\" \xEF\xF0 \"x \\\"y\" z\\\\";
    EXPECT_EQ(0u, QELUtils::ParseCommandLineInfo(line, words, this));
    EXPECT_EQ((std::list<CQELString>{"C:\\a b\\p.exe", "\xEF\xF0", "x \"y", "z\\\\"}), words);
    EXPECT_EQ(0u, QELUtils::ParseCommandLineInfo(nullptr, words, this));
    EXPECT_NE(-1, words.front().Find("utils_tests"));
}

TEST_F(Session, BringsAWindowToTheFront) {
    const HWND window = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 99,
                                        99, nullptr, nullptr, nullptr, nullptr);
    ShowWindow(window, SW_MINIMIZE);
    EXPECT_EQ(0u, QELUtils::SetForeground(window, this));
    EXPECT_FALSE(IsIconic(window));
    EXPECT_EQ(window, GetForegroundWindow());
    DestroyWindow(window);
}

}  // namespace
