#pragma once

// There it is a function of assembly; to clang it is a builtin.
#define _InterlockedCompareExchange128 QelkitSdkCompareExchange128
#include_next <winnt.h>
#undef _InterlockedCompareExchange128

#define SYSTEM_AUDIT_OBJECT_ACE_TYPE 0x7
#define SYSTEM_ALARM_OBJECT_ACE_TYPE 0x8
