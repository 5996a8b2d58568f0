#pragma once

// Everything that the library exports, for callers. The library's own files include single headers.

#include "base/cp1251.h"
#include "base/export.h"
#include "base/types.h"
#include "runtime/universal_hash.h"
