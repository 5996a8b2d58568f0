#include "utils/desktop_access.h"

#include <gtest/gtest.h>
#include <sddl.h>

#include <optional>
#include <regex>
#include <string>

#include "platform/handles.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"
#include "utils/access_lists.h"
#include "utils/security_attributes.h"
#include "utils/session.h"

namespace {

// The system here has no access lists for window objects, but kernel objects have them.
BOOL WINAPI KernelSecurity(HANDLE object, SECURITY_INFORMATION* wanted, void* descriptor,
                           DWORD size, DWORD* needed) {
    return GetKernelObjectSecurity(object, *wanted, descriptor, size, needed);
}

BOOL WINAPI LegacyVersion(OSVERSIONINFOA* version) {
    version->dwPlatformId = 1;
    return TRUE;
}

// The first block is a descriptor, the second a list.
HLOCAL WINAPI NoSecondBlock(UINT flags, SIZE_T size) {
    static int count = 0;
    return count++ == 0 ? LocalAlloc(flags, size) : nullptr;
}

const std::string kRule = "////////////////////////////////////////////////\r\n";
const std::string kName = "_____Dump DACL for User Object (#), name: qelkit-test__________\r\n";
const std::string kStart = "_____________________Start dumpACL____________________\r\n";

class DesktopAccess : public testing::Test {
protected:
    DesktopAccess() {
        GetCurrentDirectoryA(sizeof before_, before_);
        SetCurrentDirectoryA(folder_.path().c_str());
        OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token_.Receive());
        CQELString sid;
        QELUtils::GetProcessUserSID(GetCurrentProcessId(), sid, nullptr);
        user_ = std::string(sid) + ")";
    }
    ~DesktopAccess() override {
        CloseDesktop(desktop_);
        SetCurrentDirectoryA(before_);
    }

    void SetList(const std::string& entries) {
        void* descriptor = nullptr;
        ConvertStringSecurityDescriptorToSecurityDescriptorA(("D:" + entries).c_str(),
                                                             SDDL_REVISION_1, &descriptor, nullptr);
        const kit::LocalBlock owner(descriptor);
        ASSERT_TRUE(SetKernelObjectSecurity(desktop_, DACL_SECURITY_INFORMATION, descriptor));
    }
    // What was logged since the last time; numbers of objects are "#".
    std::string Log() const {
        const std::string text = folder_.Read("qelkit2.log");
        EXPECT_TRUE(DeleteFileA("qelkit2.log")) << "closed";
        return std::regex_replace(text, std::regex("\\([0-9A-F]{16}\\)"), "(#)");
    }
    ulong32 Adjust(bool grant) {
        return QELUtils::AdjustDesktopDACL(token_.get(), desktop_, grant);
    }

    TempFolder folder_;
    kit::KernelHandle token_;
    std::string user_;  // and the bracket that ends an entry
    HDESK desktop_ = CreateDesktopA("qelkit-test", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
    std::optional<ImportPatch> security_{std::in_place, kLibrary, "GetUserObjectSecurity",
                                         KernelSecurity};

private:
    char before_[MAX_PATH];
};

TEST_F(DesktopAccess, GrantsAndRevokes) {
    // What stays: entries of others, another mask, the full rights that granting gives (0xF01FF).
    const std::string kept = "(D;;DC;;;WD)(A;;SW;;;WD)(A;;CCSW;;;" + user_;
    const std::string full = "(A;;CCDCLCSWRPWPDTLOCRSDRCWDWO;;;" + user_;
    const std::string first = "(A;;SW;;;" + user_, last = "(D;OI;SW;;;" + user_;
    SetList(first + kept + last);
    EXPECT_EQ(0u, Adjust(true));
    EXPECT_EQ(first + kept + last + full, AccessList(desktop_));
    EXPECT_EQ(0u, Adjust(false));
    EXPECT_EQ(kept + full, AccessList(desktop_));
    const std::string log = kRule + "sidNorvexUser = " + user_.substr(0, user_.size() - 1) +
                            "\r\nDesktop (#) name: qelkit-test\r\nend with code 0\r\n";
    EXPECT_EQ(log + log, Log());
    DWORD flags = 0;
    EXPECT_TRUE(GetHandleInformation(desktop_, &flags) && (flags & HANDLE_FLAG_INHERIT));
}

TEST_F(DesktopAccess, DumpsToTheCallersStreamOrTheLog) {
    SetList("(A;OICI;GA;;;WD)");
    FILE* own = std::fopen("qelkit2.log", "wt");
    EXPECT_EQ(0u, QELUtils::DumpUserObjectDACL(desktop_, own));
    std::fclose(own);
    EXPECT_EQ(kName + kStart +
                  "ACE #0\r\n  ACE Type = ACCESS_ALLOWED_ACE_TYPE\r\n  ACE Flags = \r\n"
                  "  \tOBJECT_INHERIT_ACE\r\n  \tCONTAINER_INHERIT_ACE\r\n"
                  "  ACE Mask = 10000000\r\n  ACE SID = S-1-1-0 (Everyone)\r\n"
                  "end with code 0\r\nend with code 0\r\n",
              Log());
}

TEST_F(DesktopAccess, NoListIsNoFailure) {
    security_.reset();
    EXPECT_EQ(0u, Adjust(true));
    EXPECT_EQ("null", AccessList(desktop_));
    Log();
    EXPECT_EQ(0u, QELUtils::DumpUserObjectDACL(desktop_, nullptr));
    EXPECT_EQ(kName + kStart + "end with code 0\r\n", Log());
}

TEST_F(DesktopAccess, ReturnsWhatTheSystemRefuses) {
    EXPECT_EQ(6u, QELUtils::AdjustDesktopDACL(nullptr, desktop_, true));
    EXPECT_EQ(kRule + "end with code 6\r\n", Log());
    EXPECT_EQ(6u, QELUtils::AdjustDesktopDACL(token_.get(), nullptr, false));
    EXPECT_EQ(6u, QELUtils::DumpUserObjectDACL(nullptr, nullptr));
}

TEST_F(DesktopAccess, ThrowsTwoNumbers) {
    SetList("(A;;GA;;;WD)");
    const auto thrown = [&](bool grant) -> long {
        try {
            return Adjust(grant) & 0;
        } catch (long number) {
            return number;
        }
    };
    {
        const ImportPatch memory(kLibrary, "LocalAlloc", NoSecondBlock);
        EXPECT_EQ(static_cast<long>(0x8007000E), thrown(true));
        Log();
    }
    const ImportPatch version(kLibrary, "GetVersionExA", LegacyVersion);
    EXPECT_EQ(16385, thrown(false));
    EXPECT_EQ(kRule, Log());
}

int HeapBlocks() {
    int count = 0;
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(GetProcessHeap(), &entry)) {
        count += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    }
    return count;
}

TEST_F(DesktopAccess, LosesNothing) {
    constexpr int kWarmUp = 1000;  // until the system's heap has its pools
    DWORD handles = 0, later = 0;
    int blocks = 0;
    for (int i = 0; i <= kWarmUp + 1000; ++i) {
        SetList("(A;;SW;;;" + user_);
        Adjust(i % 2 == 0);
        QELUtils::CNullDaclSA null_list;
        QELUtils::CWorldDaclSA world;
        GetProcessHandleCount(GetCurrentProcess(), i <= kWarmUp ? &handles : &later);
        if (i == kWarmUp) blocks = HeapBlocks();
    }
    EXPECT_EQ(handles, later);
    EXPECT_NEAR(blocks, HeapBlocks(), 100);
}

}  // namespace
