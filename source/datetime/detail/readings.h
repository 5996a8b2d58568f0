#pragma once

#include "datetime/detail/runtime_time.h"
#include "datetime/qel_datetime.h"

namespace kit {

// A date-time as a `tm`, and back: its millisecond is dropped, and 0.
tm MakeReading(const CQELDateTime& value, int daylight);
CQELDateTime DateTimeFrom(const tm& reading);

CQELDateTime DateTimeFrom(const SYSTEMTIME& st);

}  // namespace kit
