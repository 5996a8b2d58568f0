#pragma once

// Everything that the library exports, for callers. The library's own files include single headers.

#include "base/cp1251.h"
#include "base/export.h"
#include "base/types.h"
#include "compress/compress_memory.h"
#include "compress/container_format.h"
#include "compress/lz_coder.h"
