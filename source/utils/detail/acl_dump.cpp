#include "utils/detail/acl_dump.h"

#include <sddl.h>

#include <cstdarg>

#include "platform/handles.h"
#include "platform/os_version.h"

namespace kit {

namespace {

constexpr char kLogFile[] = "qelkit2.log";
constexpr DWORD kAccountRoom = 1024;

constexpr struct {
    BYTE type;
    const char* name;
} kTypes[] = {
    {ACCESS_ALLOWED_ACE_TYPE, "ACCESS_ALLOWED_ACE_TYPE"},
    {ACCESS_DENIED_ACE_TYPE, "ACCESS_DENIED_ACE_TYPE"},
    {SYSTEM_AUDIT_ACE_TYPE, "SYSTEM_AUDIT_ACE_TYPE"},
    {ACCESS_ALLOWED_OBJECT_ACE_TYPE, "ACCESS_ALLOWED_OBJECT_ACE_TYPE"},
    {ACCESS_DENIED_OBJECT_ACE_TYPE, "ACCESS_DENIED_OBJECT_ACE_TYPE"},
    {SYSTEM_AUDIT_OBJECT_ACE_TYPE, "SYSTEM_AUDIT_OBJECT_ACE_TYPE"},
};

// Quirk: the flags of inheritance come after those of auditing, by no order of their values. Logs
// of different machines are compared line by line. Pinned by AclDump.WritesEveryEntry.
constexpr struct {
    BYTE flag;
    const char* name;
} kFlags[] = {
    {SUCCESSFUL_ACCESS_ACE_FLAG, "SUCCESSFUL_ACCESS_ACE_FLAG"},
    {FAILED_ACCESS_ACE_FLAG, "FAILED_ACCESS_ACE_FLAG"},
    {NO_PROPAGATE_INHERIT_ACE, "NO_PROPAGATE_INHERIT_ACE"},
    {INHERIT_ONLY_ACE, "INHERIT_ONLY_ACE"},
    {OBJECT_INHERIT_ACE, "OBJECT_INHERIT_ACE"},
    {CONTAINER_INHERIT_ACE, "CONTAINER_INHERIT_ACE"},
    {INHERITED_ACE, "INHERITED_ACE"},
};

const char* TypeName(BYTE type) {
    for (const auto& row : kTypes) {
        if (row.type == type) return row.name;
    }
    return "Unknown ACE Type";
}

bool IsObjectEntry(BYTE type) {
    return (type >= ACCESS_ALLOWED_OBJECT_ACE_TYPE && type <= SYSTEM_ALARM_OBJECT_ACE_TYPE) ||
           type == ACCESS_ALLOWED_CALLBACK_OBJECT_ACE_TYPE ||
           type == ACCESS_DENIED_CALLBACK_OBJECT_ACE_TYPE;
}

// The bytes in front of the SID: header and mask, and in entries of object types flags and up to
// two GUIDs.
std::size_t SidOffset(const ACE_HEADER& entry) {
    if (!IsObjectEntry(entry.AceType) ||
        entry.AceSize < offsetof(ACCESS_ALLOWED_OBJECT_ACE, ObjectType)) {
        return offsetof(ACCESS_ALLOWED_ACE, SidStart);
    }
    const auto& object = reinterpret_cast<const ACCESS_ALLOWED_OBJECT_ACE&>(entry);
    std::size_t offset = offsetof(ACCESS_ALLOWED_OBJECT_ACE, ObjectType);
    for (const DWORD flag : {ACE_OBJECT_TYPE_PRESENT, ACE_INHERITED_OBJECT_TYPE_PRESENT}) {
        if (object.Flags & flag) offset += sizeof(GUID);
    }
    return offset;
}

CHAR* AccountName(PSID sid, CHAR (&account)[kAccountRoom]) {
    static CHAR unknown[] = "Unknown";
    CHAR domain[kAccountRoom];
    DWORD account_room = kAccountRoom;
    DWORD domain_room = kAccountRoom;
    SID_NAME_USE use;
    const bool is_known = sid && ::LookupAccountSidA(nullptr, sid, account, &account_room, domain,
                                                     &domain_room, &use);
    return is_known ? account : unknown;
}

void DumpEntry(const ACE_HEADER& entry, DWORD index, AccessLog& log) {
    log.Write("ACE #%lu\n", index);
    log.Write("  ACE Type = %s\n", TypeName(entry.AceType));
    log.Write("  ACE Flags = \n");
    for (const auto& row : kFlags) {
        if (entry.AceFlags & row.flag) log.Write("  \t%s\n", row.name);
    }
    log.Write("  ACE Mask = %X\n", reinterpret_cast<const ACCESS_ALLOWED_ACE&>(entry).Mask);

    const PSID sid = SidOf(entry);
    CHAR account[kAccountRoom];
    const CHAR* const name = AccountName(sid, account);
    CHAR no_text[] = "";
    CHAR* text = no_text;
    LocalBlock owner;
    if (HasSidTexts()) {
        if (!sid) ::SetLastError(ERROR_INVALID_SID);
        if (!sid || !::ConvertSidToStringSidA(sid, &text)) {
            log.Write("ConvertSidToStringSid failed with code %ld\n", ::GetLastError());
            return;
        }
        owner.Reset(text);
    }
    log.Write("  ACE SID = %s (%s)\n", text, name);
}

}  // namespace

AccessLog::AccessLog() : AccessLog(nullptr) {}

AccessLog::AccessLog(FILE* stream)
    : stream_(stream ? stream : std::fopen(kLogFile, "at")), is_own_(!stream) {}

AccessLog::~AccessLog() {
    if (is_own_ && stream_) std::fclose(stream_);
}

void AccessLog::Write(const char* format, ...) {
    if (!stream_) return;
    char line[4096];  // the longest line holds two names of up to 1024 characters
    va_list arguments;
    va_start(arguments, format);
    ::_vsnprintf(line, sizeof line - 1, format, arguments);
    va_end(arguments);
    line[sizeof line - 1] = '\0';
    std::fputs(line, stream_);
}

PSID SidOf(const ACE_HEADER& entry) {
    const std::size_t offset = SidOffset(entry);
    if (offset + ::GetSidLengthRequired(0) > entry.AceSize) return nullptr;
    auto* const sid =
        reinterpret_cast<SID*>(const_cast<BYTE*>(reinterpret_cast<const BYTE*>(&entry)) + offset);
    const std::size_t size = ::GetSidLengthRequired(sid->SubAuthorityCount);
    return offset + size <= entry.AceSize && ::IsValidSid(sid) ? sid : nullptr;
}

ulong32 DumpAcl(ACL* list, AccessLog& log) {
    log.Write("_____________________Start dumpACL____________________\n");
    if (!list) return static_cast<ulong32>(E_INVALIDARG);
    ACL_SIZE_INFORMATION info;
    if (!::GetAclInformation(list, &info, sizeof info, AclSizeInformation)) {
        return ::GetLastError();
    }
    for (DWORD i = 0; i < info.AceCount; ++i) {
        void* entry;
        if (::GetAce(list, i, &entry)) {
            DumpEntry(*static_cast<const ACE_HEADER*>(entry), i, log);
        } else {
            log.Write("GetAce failed with code %ld\n", ::GetLastError());
        }
    }
    log.Write("end with code %ld\n", 0L);
    return 0;
}

bool HasSidTexts() {
    const auto version = OsVersion();
    return version.dwPlatformId == VER_PLATFORM_WIN32_NT && version.dwMajorVersion >= 5;
}

}  // namespace kit
