#include "utils/session.h"

#include <gtest/gtest.h>
#include <sddl.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "platform/handles.h"

namespace {

class Lines : public VORM::ILog {
public:
    void Write(const char* line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class Session : public testing::Test {
protected:
    const ulong32 own_ = GetCurrentProcessId();
    const ulong32 none_ = 0xFFFFFFF0;  // no process
    Lines log_;
};

TEST_F(Session, TellsAboutProcesses) {
    DWORD expected = 0;
    ProcessIdToSessionId(own_, &expected);
    ulong32 session = expected + 1;
    EXPECT_EQ(0u, QELUtils::GetProcessSessionID(own_, session, &log_));
    EXPECT_EQ(expected, session);

    CQELString text;
    EXPECT_EQ(0u, QELUtils::GetProcessUserSID(own_, text, nullptr));
    PSID sid = nullptr;
    ASSERT_TRUE(ConvertStringSidToSidA(text, &sid)) << static_cast<const char*>(text);
    const kit::LocalBlock owner(sid);
    EXPECT_GT(*GetSidSubAuthorityCount(sid), 1) << "of a user";
    bool interactive = false;
    EXPECT_EQ(0u, QELUtils::IsProcessUnderInteractiveSession(own_, interactive, &log_));
    EXPECT_TRUE(interactive);
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(Session, TellsAboutTheScreenAndTheSystem) {
    bool active = false, locked = true, enabled = false;
    EXPECT_EQ(0u, QELUtils::IsCurrentProcessUnderActiveSession(active, &log_));
    EXPECT_EQ(0u, QELUtils::IsWorkstationLocked(locked, &log_));
    EXPECT_EQ(0u, QELUtils::CQELIsTerminalServicesEnabled(enabled, &log_));
    EXPECT_TRUE(active && !locked);
}

TEST_F(Session, AnswersTheCodeLeavesTheResultAndTellsTheLog) {
    ulong32 session = 77;
    CQELString sid("before");
    std::list<CQELString> list{"before"};
    EXPECT_EQ(87u, QELUtils::GetProcessSessionID(none_, session, &log_));
    EXPECT_EQ(87u, QELUtils::GetProcessUserSID(none_, sid, &log_));
    EXPECT_EQ(1060u, QELUtils::GetActiveLinkedServices("qelkit none", list, &log_));
    EXPECT_EQ(1400u, QELUtils::SetForeground(nullptr, &log_));
    EXPECT_EQ(77u, session);
    EXPECT_STREQ("before", sid);
    EXPECT_EQ(1u, list.size());
    const std::vector<std::string> expected = {
        "ProcessIdToSessionId failed with code 87", "OpenProcess failed with code 87",
        "OpenService failed with code 1060", "IsWindow failed with code 1400"};
    EXPECT_EQ(expected, log_.lines);
}

TEST_F(Session, CutsCommandLines) {
    std::list<CQELString> words;
    EXPECT_EQ(0u, QELUtils::ParseCommandLineInfo("\"C:\\a b\\p.exe\" \xEF\xF0 \"x \\\"y\" z\\\\",
                                                 words, &log_));
    EXPECT_EQ((std::list<CQELString>{"C:\\a b\\p.exe", "\xEF\xF0", "x \"y", "z\\\\"}), words);
    EXPECT_EQ(0u, QELUtils::ParseCommandLineInfo(nullptr, words, &log_));
    EXPECT_NE(-1, words.front().Find("utils_tests"));
}

TEST_F(Session, ListsServicesThatNeedAnother) {
    std::list<CQELString> services{"before"};
    EXPECT_EQ(0u, QELUtils::GetActiveLinkedServices("PlugPlay", services, &log_));
    EXPECT_TRUE(services.empty());
}

TEST_F(Session, BringsAWindowToTheFront) {
    const HWND window = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 99,
                                        99, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, window);
    ShowWindow(window, SW_MINIMIZE);
    EXPECT_EQ(0u, QELUtils::SetForeground(window, &log_));
    EXPECT_FALSE(IsIconic(window));
    EXPECT_EQ(window, GetForegroundWindow());
    DestroyWindow(window);
}

}  // namespace
