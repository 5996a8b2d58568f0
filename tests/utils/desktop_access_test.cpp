#include "utils/desktop_access.h"

#include <gtest/gtest.h>
#include <sddl.h>

#include <optional>
#include <regex>
#include <string>

#include "platform/handles.h"
#include "support/handle_count.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"
#include "support/working_folder.h"
#include "utils/security_attributes.h"
#include "utils/session.h"

namespace {

// The access list of a kernel object as the system writes it: "(A;;GA;;;WD)" is one entry that
// gives everyone all rights. "null" when the object has the list that keeps nobody out.
std::string AccessList(HANDLE object) {
    BYTE descriptor[1024];
    DWORD size = sizeof descriptor;
    BOOL is_present = FALSE, is_default = FALSE;
    ACL* list = nullptr;
    char* text = nullptr;
    if (!GetKernelObjectSecurity(object, DACL_SECURITY_INFORMATION, descriptor, size, &size) ||
        !GetSecurityDescriptorDacl(descriptor, &is_present, &list, &is_default) || !is_present ||
        !ConvertSecurityDescriptorToStringSecurityDescriptorA(
            descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr)) {
        return "none";
    }
    const kit::LocalBlock owner(text);
    return list ? text + 2 : "null";
}

std::string ListOfEvent(SECURITY_ATTRIBUTES* attributes) {
    EXPECT_TRUE(attributes->nLength == 24 && !attributes->bInheritHandle);
    return AccessList(kit::KernelHandle(CreateEventA(attributes, TRUE, FALSE, nullptr)).get());
}

TEST(SecurityAttributes, GiveObjectsTheirAccessLists) {
    EXPECT_EQ("null", ListOfEvent(QELUtils::CNullDaclSA()));
    // Inherited by objects and containers, all rights, for the world.
    EXPECT_EQ("(A;OICI;GA;;;WD)", ListOfEvent(QELUtils::CWorldDaclSA()));
}

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

class DesktopAccess : public testing::Test {
protected:
    DesktopAccess() {
        OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token_.Receive());
        CQELString sid;
        QELUtils::GetProcessUserSID(GetCurrentProcessId(), sid, nullptr);
        user_ = std::string(sid) + ")";
    }
    ~DesktopAccess() override { CloseDesktop(desktop_); }

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
    const WorkingFolder here_{folder_.path()};
    kit::KernelHandle token_;
    std::string user_;  // and the bracket that ends an entry
    HDESK desktop_ = CreateDesktopA("qelkit-test", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
    std::optional<ImportPatch> security_{std::in_place, kLibrary, "GetUserObjectSecurity",
                                         KernelSecurity};
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

TEST_F(DesktopAccess, NoListIsNoFailure) {
    security_.reset();
    EXPECT_EQ(0u, Adjust(true));
    EXPECT_EQ("null", AccessList(desktop_));
    Log();
    FILE* own = std::fopen("own", "wt");
    EXPECT_EQ(0u, QELUtils::DumpUserObjectDACL(desktop_, own));
    std::fclose(own);
    EXPECT_EQ(0u, QELUtils::DumpUserObjectDACL(desktop_, nullptr));
    EXPECT_EQ(
        "_____Dump DACL for User Object (#), name: qelkit-test__________\r\n"
        "_____________________Start dumpACL____________________\r\nend with code 0\r\n",
        Log());
    EXPECT_NE(std::string::npos, folder_.Read("own").find("end with code 0"));
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
    std::int64_t handles[2];
    int blocks[2];
    for (const int round : {0, 1}) {  // in the first the system's heap gets its pools
        for (int i = 0; i < 1000; ++i) {
            SetList("(A;;SW;;;" + user_);
            Adjust(i % 2 == 0);
            QELUtils::CNullDaclSA null_list;
            QELUtils::CWorldDaclSA world;
        }
        handles[round] = HandleCount();
        blocks[round] = HeapBlocks();
    }
    EXPECT_NEAR(handles[0], handles[1], 100);
    EXPECT_NEAR(blocks[0], blocks[1], 100);
}

}  // namespace
