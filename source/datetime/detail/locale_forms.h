#pragma once

#include "base/types.h"
#include "platform/windows.h"
#include "text/qel_string.h"

namespace kit {

// Windows NT before 5.0: it cannot format year and month.
bool IsOldPlatform(const OSVERSIONINFOA& version);

// GetDateFormatLocaleUserDefault as one of the two kinds of platform would do it.
CQELString LocaleDateText(ulong32 flags, const SYSTEMTIME* st, bool old_platform);

// The id of a language tag, such as 0 of "RUS"; -1 of any other text.
int LanguageId(const char* tag);

}  // namespace kit
