#include "utils/session.h"

#include <sddl.h>
#include <shellapi.h>
#include <winsvc.h>
#include <wtsapi32.h>

#include <cstring>
#include <vector>

#include "platform/handles.h"
#include "platform/os_version.h"

namespace QELUtils {

namespace {

struct ServiceTraits {
    using Type = SC_HANDLE;
    static Type Invalid() { return nullptr; }
    static void Close(Type handle) { ::CloseServiceHandle(handle); }
};
using ServiceHandle = kit::Owner<ServiceTraits>;

struct DesktopTraits {
    using Type = HDESK;
    static Type Invalid() { return nullptr; }
    static void Close(Type desktop) { ::CloseDesktop(desktop); }
};
using DesktopHandle = kit::Owner<DesktopTraits>;

struct SessionDataTraits {
    using Type = char*;
    static Type Invalid() { return nullptr; }
    static void Close(Type data) { ::WTSFreeMemory(data); }
};
using SessionData = kit::Owner<SessionDataTraits>;

// Tells the log about a failed call; the result of the whole question, never 0, though some calls
// fail without saying why.
ulong32 Failed(VORM::ILog* log, const char* call, ulong32 code) {
    if (code == ERROR_SUCCESS) code = ERROR_GEN_FAILURE;
    if (log) {
        CQELString line;
        line.Format("%s failed with code %d", call, code);
        log->Write(line);
    }
    return code;
}

ulong32 OpenToken(ulong32 process, kit::KernelHandle& token, VORM::ILog* log) {
    const kit::KernelHandle handle(
        ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    if (!handle) return Failed(log, "OpenProcess", ::GetLastError());
    if (!::OpenProcessToken(handle.get(), TOKEN_QUERY, token.Receive())) {
        return Failed(log, "OpenProcessToken", ::GetLastError());
    }
    return ERROR_SUCCESS;
}

// What the system knows about a process's token, of any length.
ulong32 ReadToken(ulong32 process, TOKEN_INFORMATION_CLASS what, kit::LocalBlock& data,
                  VORM::ILog* log) {
    kit::KernelHandle token;
    if (const ulong32 error = OpenToken(process, token, log)) return error;
    DWORD size = 0;
    ::GetTokenInformation(token.get(), what, nullptr, 0, &size);
    data.Reset(::LocalAlloc(LPTR, size));
    if (!data) return Failed(log, "LocalAlloc", ERROR_NOT_ENOUGH_MEMORY);
    if (!::GetTokenInformation(token.get(), what, data.get(), size, &size)) {
        return Failed(log, "GetTokenInformation", ::GetLastError());
    }
    return ERROR_SUCCESS;
}

bool HasGroup(const TOKEN_GROUPS& groups, WELL_KNOWN_SID_TYPE wanted) {
    for (DWORD i = 0; i < groups.GroupCount; ++i) {
        const auto& group = groups.Groups[i];
        if ((group.Attributes & SE_GROUP_ENABLED) && ::IsWellKnownSid(group.Sid, wanted))
            return true;
    }
    return false;
}

std::vector<wchar_t> Widened(const char* text) {
    std::vector<wchar_t> wide(std::strlen(text) + 1);
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

CQELString Narrowed(const wchar_t* text) {
    const int room = ::WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::vector<char> narrow(static_cast<std::size_t>(room) + 1);
    ::WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.data(), room, nullptr, nullptr);
    return CQELString(narrow.data());
}

}  // namespace

ulong32 GetProcessSessionID(ulong32 process, ulong32& session, VORM::ILog* log) {
    DWORD found = 0;
    if (!::ProcessIdToSessionId(process, &found)) {
        return Failed(log, "ProcessIdToSessionId", ::GetLastError());
    }
    session = found;
    return ERROR_SUCCESS;
}

ulong32 GetProcessUserSID(ulong32 process, CQELString& sid, VORM::ILog* log) {
    kit::LocalBlock user;
    if (const ulong32 error = ReadToken(process, TokenUser, user, log)) return error;
    char* text = nullptr;
    if (!::ConvertSidToStringSidA(static_cast<const TOKEN_USER*>(user.get())->User.Sid, &text)) {
        return Failed(log, "ConvertSidToStringSid", ::GetLastError());
    }
    const kit::LocalBlock owner(text);
    sid = text;
    return ERROR_SUCCESS;
}

ulong32 IsCurrentProcessUnderActiveSession(bool& active, VORM::ILog* log) {
    ulong32 session = 0;
    if (const ulong32 error = GetProcessSessionID(::GetCurrentProcessId(), session, log)) {
        return error;
    }
    if (session == ::WTSGetActiveConsoleSessionId()) {  // at the machine's own screen
        active = true;
        return ERROR_SUCCESS;
    }
    SessionData state;
    DWORD size = 0;
    WTS_CONNECTSTATE_CLASS value;
    if (!::WTSQuerySessionInformationA(WTS_CURRENT_SERVER_HANDLE, session, WTSConnectState,
                                       state.Receive(), &size) ||
        size < sizeof value) {
        return Failed(log, "WTSQuerySessionInformation", ::GetLastError());
    }
    std::memcpy(&value, state.get(), sizeof value);
    active = value == WTSActive;
    return ERROR_SUCCESS;
}

ulong32 IsProcessUnderInteractiveSession(ulong32 process, bool& interactive, VORM::ILog* log) {
    kit::LocalBlock groups;
    if (const ulong32 error = ReadToken(process, TokenGroups, groups, log)) return error;
    interactive = HasGroup(*static_cast<const TOKEN_GROUPS*>(groups.get()), WinInteractiveSid);
    return ERROR_SUCCESS;
}

ulong32 IsWorkstationLocked(bool& locked, VORM::ILog* log) {
    const DesktopHandle desktop(::OpenInputDesktop(0, FALSE, DESKTOP_READOBJECTS));
    if (!desktop) {
        const ulong32 error = ::GetLastError();
        // The desktop of the logon screen is closed to everybody but the system.
        if (error != ERROR_ACCESS_DENIED) return Failed(log, "OpenInputDesktop", error);
        locked = true;
        return ERROR_SUCCESS;
    }
    char name[256] = {};
    DWORD length = 0;
    if (!::GetUserObjectInformationA(desktop.get(), UOI_NAME, name, sizeof name, &length)) {
        return Failed(log, "GetUserObjectInformation", ::GetLastError());
    }
    locked = ::lstrcmpiA(name, "Default") != 0;
    return ERROR_SUCCESS;
}

ulong32 GetActiveLinkedServices(const char* name, std::list<CQELString>& services,
                                VORM::ILog* log) {
    if (!name) return Failed(log, "OpenService", ERROR_INVALID_PARAMETER);
    const ServiceHandle manager(::OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT));
    if (!manager) return Failed(log, "OpenSCManager", ::GetLastError());
    const ServiceHandle service(::OpenServiceA(manager.get(), name, SERVICE_ENUMERATE_DEPENDENTS));
    if (!service) return Failed(log, "OpenService", ::GetLastError());

    kit::LocalBlock data;
    DWORD size = 0, count = 0;
    while (!::EnumDependentServicesA(service.get(), SERVICE_ACTIVE,
                                     static_cast<ENUM_SERVICE_STATUSA*>(data.get()), size, &size,
                                     &count)) {
        const DWORD error = ::GetLastError();  // more may have started since the size was asked
        if (error != ERROR_MORE_DATA) return Failed(log, "EnumDependentServices", error);
        data.Reset(::LocalAlloc(LPTR, size));
        if (!data) return Failed(log, "LocalAlloc", ERROR_NOT_ENOUGH_MEMORY);
    }
    services.clear();
    const auto* const found = static_cast<const ENUM_SERVICE_STATUSA*>(data.get());
    for (DWORD i = 0; i < count; ++i) services.emplace_back(found[i].lpServiceName);
    return ERROR_SUCCESS;
}

ulong32 CQELIsTerminalServicesEnabled(bool& enabled, VORM::ILog* log) {
    const auto version = kit::OsVersion();
    if (version.dwMajorVersion == 0) return Failed(log, "GetVersionEx", ERROR_NOT_SUPPORTED);
    enabled = (version.wSuiteMask & (VER_SUITE_TERMINAL | VER_SUITE_SINGLEUSERTS)) != 0;
    return ERROR_SUCCESS;
}

ulong32 ParseCommandLineInfo(const char* command_line, std::list<CQELString>& arguments,
                             VORM::ILog* log) {
    const bool is_own = !command_line || *command_line == '\0';
    int count = 0;
    const kit::LocalBlock owner(
        ::CommandLineToArgvW(Widened(is_own ? ::GetCommandLineA() : command_line).data(), &count));
    if (!owner) return Failed(log, "CommandLineToArgv", ::GetLastError());
    arguments.clear();
    auto* const* const words = static_cast<wchar_t* const*>(owner.get());
    for (int i = 0; i < count; ++i) arguments.push_back(Narrowed(words[i]));
    return ERROR_SUCCESS;
}

ulong32 SetForeground(HWND window, VORM::ILog* log) {
    if (!::IsWindow(window)) return Failed(log, "IsWindow", ERROR_INVALID_WINDOW_HANDLE);
    if (::IsIconic(window)) ::ShowWindow(window, SW_RESTORE);
    // The call sets no error code of its own.
    if (!::SetForegroundWindow(window)) {
        return Failed(log, "SetForegroundWindow", ERROR_ACCESS_DENIED);
    }
    return ERROR_SUCCESS;
}

}  // namespace QELUtils
