#pragma once

// Everything that the library exports, for callers. The library's own files include single headers.

#include "base/cp1251.h"
#include "base/export.h"
#include "base/types.h"
#include "datetime/dos_time.h"
#include "datetime/file_time.h"
#include "datetime/locale_text.h"
#include "datetime/qel_date.h"
#include "datetime/qel_datetime.h"
#include "datetime/qel_time.h"
#include "file_com/com_stream.h"
#include "file_com/file_time_record.h"
#include "file_com/qel_file.h"
#include "file_com/stream.h"
#include "runtime/reference.h"
#include "status/library_loader.h"
#include "status/notify.h"
#include "status/qel_status.h"
#include "status/status_codes.h"
#include "status/status_convert.h"
<<<<<<< HEAD
#include "status/status_text.h"
=======
#include "text/c_text.h"
#include "text/qel_string.h"
>>>>>>> string
