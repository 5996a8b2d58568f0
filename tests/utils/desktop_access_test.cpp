#include "utils/desktop_access.h"

#include <aclapi.h>
#include <gtest/gtest.h>
#include <sddl.h>

#include <optional>
#include <regex>
#include <string>

#include "platform/handles.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"
#include "utils/access_lists.h"

namespace {

// The system here has no access lists for window objects, but kernel objects have them.
BOOL WINAPI KernelSecurity(HANDLE object, SECURITY_INFORMATION* wanted, void* descriptor,
                           DWORD size, DWORD* needed) {
    return GetKernelObjectSecurity(object, *wanted, descriptor, size, needed);
}

BOOL WINAPI Version98(OSVERSIONINFOA* version) {
    version->dwPlatformId = 1;
    return TRUE;
}

// The first block is a descriptor, the second a list.
HLOCAL WINAPI NoSecondBlock(UINT flags, SIZE_T size) {
    static int count = 0;
    return count++ == 0 ? LocalAlloc(flags, size) : nullptr;
}

std::string UserSid() {
    HANDLE token;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
    const kit::KernelHandle owner(token);
    alignas(TOKEN_USER) BYTE user[256];
    DWORD size;
    GetTokenInformation(token, TokenUser, user, sizeof user, &size);
    char* text;
    ConvertSidToStringSidA(reinterpret_cast<TOKEN_USER*>(user)->User.Sid, &text);
    const kit::LocalBlock text_owner(text);
    return text;
}

class DesktopAccess : public testing::Test {
protected:
    DesktopAccess() {
        GetCurrentDirectoryA(sizeof before_, before_);
        SetCurrentDirectoryA(folder_.path().c_str());
        HANDLE token;
        OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
        token_.Reset(token);
    }
    ~DesktopAccess() override {
        CloseDesktop(desktop_);
        SetCurrentDirectoryA(before_);
    }

    void SetList(const std::string& entries) {
        void* descriptor;
        ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(
            ("D:" + entries).c_str(), SDDL_REVISION_1, &descriptor, nullptr));
        const kit::LocalBlock owner(descriptor);
        ASSERT_TRUE(SetKernelObjectSecurity(desktop_, DACL_SECURITY_INFORMATION, descriptor));
    }
    std::string List() const { return AccessList(desktop_); }
    // The log, whose numbers of desktops are "#".
    std::string Log() const {
        return std::regex_replace(folder_.Read("qelkit2.log"), std::regex("\\([0-9A-F]{16}\\)"),
                                  "(#)");
    }
    ulong32 Adjust(bool grant) {
        return QELUtils::AdjustDesktopDACL(token_.get(), desktop_, grant);
    }

    TempFolder folder_;
    kit::KernelHandle token_;
    HDESK desktop_ = CreateDesktopA("qelkit-test", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
    std::optional<ImportPatch> security_{std::in_place, kLibrary, "GetUserObjectSecurity",
                                         KernelSecurity};

private:
    char before_[MAX_PATH];
};

// 0xF01FF
const std::string kFull = "(A;;CCDCLCSWRPWPDTLOCRSDRCWDWO;;;";

const std::string kRule = "////////////////////////////////////////////////\r\n";
const std::string kStart = "_____________________Start dumpACL____________________\r\n";
const std::string kDone = "end with code 0\r\n";

TEST_F(DesktopAccess, GrantsAndRevokes) {
    const std::string user = UserSid();
    const std::string others = "(D;;0x2;;;WD)(A;;0x8;;;WD)(A;;0x9;;;" + user + ")";
    SetList("(A;;0x8;;;" + user + ")" + others + "(D;OI;0x8;;;" + user + ")");
    const std::string before = List();
    EXPECT_EQ(0u, Adjust(true));
    EXPECT_EQ(before + kFull + user + ")", List());
    EXPECT_EQ(0u, Adjust(false));
    SetList(others + kFull + user + ")");
    const std::string after = List();
    SetList("(A;;0x8;;;" + user + ")" + others + "(D;OI;0x8;;;" + user + ")" + kFull + user + ")");
    EXPECT_EQ(0u, Adjust(false));
    EXPECT_EQ(after, List());
    DWORD flags = 0;
    EXPECT_TRUE(GetHandleInformation(desktop_, &flags));
    EXPECT_TRUE(flags & HANDLE_FLAG_INHERIT);
    const std::string log =
        kRule + "sidNorvexUser = " + user + "\r\nDesktop (#) name: qelkit-test\r\n" + kDone;
    EXPECT_EQ(log + log + log, Log());
}

TEST_F(DesktopAccess, DumpsEveryEntry) {
    SetList("(A;OICI;GA;;;WD)(D;NPIO;0x1f;;;S-1-5-21-1-2-3-4)");
    folder_.Write("own", "");
    FILE* own = std::fopen("own", "wb");
    EXPECT_EQ(0u, QELUtils::DumpUserObjectDACL(desktop_, own));
    std::fclose(own);
    const std::string text =
        std::regex_replace(folder_.Read("own"), std::regex("\\([0-9A-F]{16}\\)"), "(#)");
    EXPECT_EQ(
        "_____Dump DACL for User Object (#), name: qelkit-test__________\n"
        "_____________________Start dumpACL____________________\n"
        "ACE #0\n  ACE Type = ACCESS_ALLOWED_ACE_TYPE\n  ACE Flags = \n"
        "  \tOBJECT_INHERIT_ACE\n  \tCONTAINER_INHERIT_ACE\n  ACE Mask = 10000000\n"
        "  ACE SID = S-1-1-0 (Everyone)\n"
        "ACE #1\n  ACE Type = ACCESS_DENIED_ACE_TYPE\n  ACE Flags = \n"
        "  \tNO_PROPAGATE_INHERIT_ACE\n  \tINHERIT_ONLY_ACE\n  ACE Mask = 1F\n"
        "  ACE SID = S-1-5-21-1-2-3-4 (Unknown)\n"
        "end with code 0\nend with code 0\n",
        text);
    EXPECT_FALSE(folder_.Has("qelkit2.log"));
}

TEST_F(DesktopAccess, NoListIsNoFailure) {
    security_.reset();
    EXPECT_EQ(0u, Adjust(true));
    EXPECT_EQ("null", List());
    EXPECT_EQ(0u, QELUtils::DumpUserObjectDACL(desktop_, nullptr));
    const std::string dump =
        "_____Dump DACL for User Object (#), name: qelkit-test__________\r\n" + kStart + kDone;
    EXPECT_EQ(dump, Log().substr(Log().size() - dump.size()));
}

TEST_F(DesktopAccess, ReturnsWhatTheSystemRefuses) {
    EXPECT_EQ(6u, QELUtils::AdjustDesktopDACL(nullptr, desktop_, true));
    EXPECT_EQ(kRule + "end with code 6\r\n", Log());
    EXPECT_EQ(6u, QELUtils::AdjustDesktopDACL(token_.get(), nullptr, false));
    EXPECT_EQ(6u, QELUtils::DumpUserObjectDACL(nullptr, nullptr));
}

TEST_F(DesktopAccess, ThrowsTwoNumbers) {
    SetList("(A;;GA;;;WD)");
    const auto thrown = [](auto call) -> long {
        try {
            call();
            return 0;
        } catch (long number) {
            return number;
        }
    };
    {
        const ImportPatch memory(kLibrary, "LocalAlloc", NoSecondBlock);
        EXPECT_EQ(static_cast<long>(0x8007000E),
                  thrown([&] { QELUtils::DumpUserObjectDACL(desktop_, nullptr); }));
    }
    const ImportPatch version(kLibrary, "GetVersionExA", Version98);
    EXPECT_EQ(16385, thrown([&] { Adjust(true); }));
    EXPECT_EQ(kRule, Log().substr(Log().size() - kRule.size()));
    EXPECT_TRUE(DeleteFileA("qelkit2.log")) << "closed";
}

TEST_F(DesktopAccess, LosesNothing) {
    SetList("(A;;GA;;;WD)");
    DWORD handles = 0, later = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    for (int i = 0; i < 500; ++i) {
        Adjust(i % 2 == 0);
        SetList("(A;;GA;;;WD)");
    }
    GetProcessHandleCount(GetCurrentProcess(), &later);
    EXPECT_EQ(handles, later);
}

}  // namespace
