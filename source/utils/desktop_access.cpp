#include "utils/desktop_access.h"

#include <aclapi.h>
#include <sddl.h>

#include "platform/handles.h"
#include "platform/os_version.h"
#include "utils/detail/acl_dump.h"

namespace QELUtils {

namespace {

// Failures that leave the library as they are, without becoming a result.
constexpr long kNotWindowsNt = 16385;
constexpr long kOutOfMemory = static_cast<long>(0x8007000E);

constexpr DWORD kAllDesktopRights = 0xF01FF;
constexpr DWORD kEntryHeader = 8;  // of an access-allowed entry, in front of the SID

// Quirk: only entries with exactly this right are taken away, so that those which granting adds
// stay. Services that revoke expect a user's own full entry to survive. Pinned by
// DesktopAccess.GrantsAndRevokes.
constexpr DWORD kRevokedRights = 8;

ACL* AsAcl(const kit::LocalBlock& block) { return static_cast<ACL*>(block.get()); }

// The part of a window object's descriptor that holds its access list.
DWORD ReadDescriptor(HANDLE object, kit::LocalBlock& descriptor) {
    SECURITY_INFORMATION wanted = DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    if (!::GetUserObjectSecurity(object, &wanted, nullptr, 0, &size)) {
        const DWORD error = ::GetLastError();
        if (error != ERROR_INSUFFICIENT_BUFFER) return error;
    }
    descriptor.Reset(::LocalAlloc(LPTR, size));
    if (!descriptor) return ERROR_NOT_ENOUGH_MEMORY;
    const bool is_read =
        ::GetUserObjectSecurity(object, &wanted, descriptor.get(), size, &size) != FALSE;
    return is_read ? ERROR_SUCCESS : ::GetLastError();
}

DWORD AppendEntries(ACL* from, DWORD count, ACL* to) {
    for (DWORD i = 0; i < count; ++i) {
        void* entry;
        if (!::GetAce(from, i, &entry) ||
            !::AddAce(to, ACL_REVISION, MAXDWORD, entry,
                      static_cast<const ACE_HEADER*>(entry)->AceSize)) {
            return ::GetLastError();
        }
    }
    return ERROR_SUCCESS;
}

// A copy of a window object's access list with `extra` spare bytes; none when there is none.
DWORD CopyDacl(HANDLE object, DWORD extra, kit::LocalBlock& copy) {
    kit::LocalBlock descriptor;
    if (const DWORD error = ReadDescriptor(object, descriptor)) return error;
    BOOL is_present = FALSE, is_default = FALSE;
    ACL* list = nullptr;
    if (!::GetSecurityDescriptorDacl(descriptor.get(), &is_present, &list, &is_default)) {
        return ::GetLastError();
    }
    if (!is_present || !list) return ERROR_SUCCESS;

    ACL_SIZE_INFORMATION info;
    if (!::GetAclInformation(list, &info, sizeof info, AclSizeInformation)) {
        return ::GetLastError();
    }
    const DWORD size = info.AclBytesInUse + extra;
    kit::LocalBlock block(::LocalAlloc(LPTR, size));
    if (!block) throw kOutOfMemory;
    if (!::InitializeAcl(AsAcl(block), size, ACL_REVISION)) return ::GetLastError();
    if (const DWORD error = AppendEntries(list, info.AceCount, AsAcl(block))) return error;
    copy = std::move(block);
    return ERROR_SUCCESS;
}

// A window object's name; "" when it cannot be had.
struct ObjectName {
    char text[256] = {};

    explicit ObjectName(HANDLE object) {
        DWORD length = 0;
        if (!::GetUserObjectInformationA(object, UOI_NAME, text, sizeof text, &length)) {
            text[0] = '\0';
        }
    }
    explicit operator bool() const { return text[0] != '\0'; }
};

// The user of a token.
class TokenUser {
public:
    DWORD Read(HANDLE token) {
        DWORD length = 0;
        const bool is_read =
            ::GetTokenInformation(token, ::TokenUser, buffer_, sizeof buffer_, &length) != FALSE;
        return is_read ? ERROR_SUCCESS : ::GetLastError();
    }
    PSID sid() const { return reinterpret_cast<const TOKEN_USER*>(buffer_)->User.Sid; }

private:
    alignas(TOKEN_USER) BYTE buffer_[4096];
};

void LogUser(PSID user, kit::AccessLog& log) {
    char* text = nullptr;
    if (!kit::HasSidTexts() || !::ConvertSidToStringSidA(user, &text)) return;
    const kit::LocalBlock owner(text);
    log.Write("sidNorvexUser = %s\n", text);
}

DWORD Grant(HDESK desktop, PSID user, kit::LocalBlock& list, kit::AccessLog& log) {
    const DWORD extra = ::GetLengthSid(user) + kEntryHeader;
    const DWORD error = CopyDacl(desktop, extra, list);
    if (error != ERROR_SUCCESS || !list) return error;
    if (::AddAccessAllowedAce(AsAcl(list), ACL_REVISION, kAllDesktopRights, user)) return 0;
    const DWORD add_error = ::GetLastError();
    log.Write("AddAccessAllowedAce failed with code %ld\n", add_error);
    return add_error;
}

bool IsRevoked(const ACE_HEADER& entry, PSID user) {
    const PSID sid = kit::SidOf(entry);
    return sid && ::EqualSid(sid, user) &&
           reinterpret_cast<const ACCESS_ALLOWED_ACE&>(entry).Mask == kRevokedRights;
}

DWORD Revoke(HDESK desktop, PSID user, kit::LocalBlock& list) {
    const DWORD error = CopyDacl(desktop, 0, list);
    if (error != ERROR_SUCCESS || !list) return error;
    ACL_SIZE_INFORMATION info;
    if (!::GetAclInformation(AsAcl(list), &info, sizeof info, AclSizeInformation)) {
        return ::GetLastError();
    }
    for (DWORD i = info.AceCount; i-- > 0;) {
        void* entry;
        if (!::GetAce(AsAcl(list), i, &entry)) return ::GetLastError();
        const bool is_revoked = IsRevoked(*static_cast<const ACE_HEADER*>(entry), user);
        if (is_revoked && !::DeleteAce(AsAcl(list), i)) return ::GetLastError();
    }
    return ERROR_SUCCESS;
}

DWORD Adjust(HANDLE token, HDESK desktop, bool grant, kit::AccessLog& log) {
    TokenUser user;
    if (const DWORD error = user.Read(token)) return error;
    LogUser(user.sid(), log);
    if (!::SetHandleInformation(desktop, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT)) {
        return ::GetLastError();
    }
    if (const ObjectName name(desktop); name) {
        log.Write("Desktop (%p) name: %s\n", static_cast<void*>(desktop), name.text);
    }
    kit::LocalBlock list;
    const DWORD error =
        grant ? Grant(desktop, user.sid(), list, log) : Revoke(desktop, user.sid(), list);
    if (error != ERROR_SUCCESS) return error;
    return ::SetSecurityInfo(desktop, SE_WINDOW_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                             AsAcl(list), nullptr);
}

}  // namespace

ulong32 AdjustDesktopDACL(void* token, HDESK desktop, bool grant) {
    kit::AccessLog log;
    log.Write("////////////////////////////////////////////////\n");
    if (kit::OsVersion().dwPlatformId != VER_PLATFORM_WIN32_NT) throw kNotWindowsNt;
    const ulong32 result = Adjust(token, desktop, grant, log);
    log.Write("end with code %ld\n", result);
    return result;
}

ulong32 DumpUserObjectDACL(void* object, FILE* stream) {
    kit::AccessLog log(stream);
    if (const ObjectName name(object); name) {
        log.Write("_____Dump DACL for User Object (%p), name: %s__________\n", object, name.text);
    }
    kit::LocalBlock list;
    const ulong32 result = CopyDacl(object, 0, list);
    // Quirk: that an object has no list is told by the dump, which fails, but is a success here.
    // Pinned by DesktopAccess.NoListIsNoFailure.
    if (result == ERROR_SUCCESS) kit::DumpAcl(AsAcl(list), log);
    log.Write("end with code %ld\n", result);
    return result;
}

}  // namespace QELUtils
