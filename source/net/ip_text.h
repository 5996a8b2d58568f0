#pragma once

#include "base/export.h"
#include "base/types.h"

// IPv4 addresses as numbers and as dotted text.
//
// An address is a 32-bit number in host order whose most significant byte is the first octet of
// the text: 1.2.3.4 is 0x01020304. The order of the numbers is the order of the addresses.
//
// Any thread may call these functions; only the CQELIpToText without a buffer shares its result.

// The address of four octets in the order of the text: (a << 24) | (b << 16) | (c << 8) | d.
QELKIT_API ulong32 CQELIpAddress(unsigned char a, unsigned char b, unsigned char c,
                                 unsigned char d);

// Reads exactly four decimal fields of 0 to 255, each of at least one digit and with any number of
// leading zeros ("001" is 1), separated by single dots and ended by the terminator. Nothing is
// skipped, blanks included, and there is no other form (hexadecimal, octal, fewer fields).
//   address  receives the address; null only checks the text
// Returns 0, or -1 for any other text, null included; then *address is unchanged.
QELKIT_API int CQELIpToLong(const char* text, ulong32* address);

// Writes "10.0.0.1", or with zeroPad other than 0 "010.000.000.001".
//   buffer  room for 16 bytes at least; what follows the terminator within them may change
// Returns buffer; null, and nothing written, when it is null.
QELKIT_API char* CQELIpToText(char* buffer, ulong32 address, int zeroPad);

// The same in a buffer that the whole process shares: every call, on any thread, overwrites the
// text of the call before.
QELKIT_API const char* CQELIpToText(ulong32 address, int zeroPad = 0);
