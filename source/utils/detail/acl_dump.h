#pragma once

#include <cstdio>

#include "base/types.h"
#include "platform/windows.h"

namespace kit {

// The text log of the access routines. Everything goes to a stream of the C runtime, formatted by
// its own rules; without a stream nothing happens.
class AccessLog {
public:
    // Appends to the log file, and closes it at the end.
    AccessLog();
    // Writes to a caller's stream; null is the log file.
    explicit AccessLog(FILE* stream);
    ~AccessLog();
    AccessLog(const AccessLog&) = delete;
    AccessLog& operator=(const AccessLog&) = delete;

    void Write(const char* format, ...);

private:
    FILE* stream_;
    bool is_own_;
};

// The SID that an entry of an access list is about; null when the entry has none within its bounds.
PSID SidOf(const ACE_HEADER& entry);

// Writes every entry of a list. 0, or the system's error code; 0x80070057 for a null list.
ulong32 DumpAcl(ACL* list, AccessLog& log);

// Whether SIDs have a text form: NT 5.0 and later.
bool HasSidTexts();

}  // namespace kit
