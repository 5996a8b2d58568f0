#pragma once

// Everything that the library exports, for callers. The library's own files include single headers.

#include "base/cp1251.h"
#include "base/export.h"
#include "base/types.h"
#include "net/ip_range.h"
#include "net/ip_range_list.h"
#include "net/ip_string.h"
#include "net/ip_text.h"
#include "net/long_list.h"
#include "net/std_list_safe.h"
#include "runtime/reference.h"
#include "status/qel_status.h"
#include "status/status_codes.h"
#include "status/status_convert.h"
