#pragma once

// There the records of _findfirst stand in a header of their own.
#include <corecrt_io.h>
#define _FINDDATA_T_DEFINED
#include_next <io.h>
