#pragma once

#include "base/export.h"
#include "base/types.h"

// Conversions between status codes and the numbers of the system and of PKCS#11. Each direction
// has a table of its own; they are no inverses of each other, on purpose. None of these functions
// fails or throws: what is not listed becomes the fallback that the function names.
// All are reentrant.

// The Win32 code or HRESULT for a status; 1627 (function failed) for an unlisted one.
QELKIT_API ulong32 QelErr2WinErr(int status);

// The status for a Win32 code or HRESULT; 36 (unknown error) for an unlisted one.
QELKIT_API int WinErr2QelkitErr(ulong32 code);

// QelErr2WinErr in HRESULT form: a Win32 code is wrapped (0x8007....), an HRESULT and 0 stay.
QELKIT_API long32 QelErr2HResult(int status);

// The status for an HRESULT or a plain Win32 code:
//   - interface facility (0x0004 under any severity): the low half is a status that a caller
//     wrapped, returned as it is;
//   - otherwise the low half is tried as a Win32 code first, and the whole value only when the low
//     half says nothing.
// So 0x80070002 gives 4, 0x8009000B gives 1043, and 0x80090000 gives 0.
QELKIT_API ulong32 HResult2QelkitErr(long32 hresult);

// The PKCS#11 return value for a status; 6 (CKR_FUNCTION_FAILED) for an unlisted one.
QELKIT_API ulong32 QelkitErr2PKCS11Err(int status);

// 0 for 0 (CKR_OK), 115 (function not implemented) for every other PKCS#11 return value `rv`.
QELKIT_API int PKCS11ErrQelkitErr2(ulong32 rv);
