#pragma once

#include <list>

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "text/qel_string.h"

namespace VORM {

// Where a caller wants to read what went wrong. The library keeps no pointer to it beyond a call.
class ILog {
public:
    // One line, without a line break, in the ANSI code page.
    virtual void Write(const char* line) = 0;

protected:
    ~ILog() = default;
};

}  // namespace VORM

// Questions about sessions, users and services. All answer 0 and set their last argument but one,
// or answer the system's error code and leave it untouched; a `log`, which may be null, is then told
// the call that failed and its code. No state: any thread may ask.

namespace QELUtils {

// The terminal-services session that a process runs in.
QELKIT_API ulong32 GetProcessSessionID(ulong32 process, ulong32& session, VORM::ILog* log);

// The user on whose behalf a process runs, as "S-1-5-21-...".
QELKIT_API ulong32 GetProcessUserSID(ulong32 process, CQELString& sid, VORM::ILog* log);

// Whether this process's session is connected to a user's screen, here or at a distance.
QELKIT_API ulong32 IsCurrentProcessUnderActiveSession(bool& active, VORM::ILog* log);

// Whether a process belongs to somebody who logged on at a screen, by the group INTERACTIVE of its
// user; services do not.
QELKIT_API ulong32 IsProcessUnderInteractiveSession(ulong32 process, bool& interactive,
                                                    VORM::ILog* log);

// Whether somebody's screen shows another desktop than the one programs run on: it is locked, asks
// for a password or shows a screen saver.
QELKIT_API ulong32 IsWorkstationLocked(bool& locked, VORM::ILog* log);

// The names of the running services that need the service `name`.
QELKIT_API ulong32 GetActiveLinkedServices(const char* name, std::list<CQELString>& services,
                                           VORM::ILog* log);

// Whether the system has terminal services.
QELKIT_API ulong32 CQELIsTerminalServicesEnabled(bool& enabled, VORM::ILog* log);

// A command line cut into its arguments by the system's rules of blanks, quotes and backslashes,
// the program first. Null or "": this process's own.
QELKIT_API ulong32 ParseCommandLineInfo(const char* command_line, std::list<CQELString>& arguments,
                                        VORM::ILog* log);

// Brings a window to the front, as far as the system lets the caller, and out of its icon.
QELKIT_API ulong32 SetForeground(HWND window, VORM::ILog* log);

}  // namespace QELUtils
