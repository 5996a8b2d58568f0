#pragma once

// Everything that the library exports, for callers. The library's own files include single headers.

#include "base/cp1251.h"
#include "base/export.h"
#include "base/types.h"
#include "runtime/reference.h"
#include "status/qel_status.h"
#include "status/status_codes.h"
#include "status/status_convert.h"
#include "text/c_text.h"
#include "text/qel_string.h"
