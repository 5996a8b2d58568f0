#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"

// Bytes as text and back: Base64 in two flavours and hexadecimal. The functions work on the
// caller's buffers and keep no state: any thread may call them on its own. Input and output do not
// overlap.

class CQELString;
class IdentObj;

namespace QEL {

// Base64 with the alphabet A-Z a-z 0-9 + / and "=" as padding. The functions for wide characters
// do the same with characters of two bytes; their sizes and lengths count characters.
//
// Failures are thrown as XQELStatus with its raise flag set: 28 (bad parameter) or 131 (bad data).

// Writes the text of the `size` bytes at `data`, terminated, into `out`, which has room for
// `outSize` characters. Returns the characters written, the terminator not counted.
//   flags          1 breaks the text into lines; without it the last two arguments mean nothing
//   lineLength     characters of a line without its separator, rounded up to a multiple of 4; 0: 64
//   lineSeparator  written behind every line, the last one too; null: "\n"
// A null `out`: writes nothing and returns the room that is needed, the terminator included.
// Too little room, or a text whose length no number can tell: returns 0 and writes nothing.
// Null `data` throws 28, whatever the size.
QELKIT_API std::uint64_t Base64Encode(const void* data, std::uint64_t size, char* out,
                                      std::uint64_t outSize, unsigned int flags,
                                      std::uint64_t lineLength, const char* lineSeparator);
QELKIT_API std::uint64_t Base64Encode(const void* data, std::uint64_t size, wchar_t* out,
                                      std::uint64_t outSize, unsigned int flags,
                                      std::uint64_t lineLength, const wchar_t* lineSeparator);

// Writes the bytes that the text stands for into `out`, which has room for `outSize` bytes, and
// returns how many they are.
//   length  characters of `text`; 0: up to its terminator
//   flags   1 skips blanks, tabs, carriage returns and line feeds
//           2 skips every character that is not of the alphabet
//           4 takes a text that lacks its padding, and does not look at what follows the first "="
// A null `out`: returns the room that is needed, three bytes for every four characters begun, which
// may be more than the text turns out to hold.
// Less room than that: returns 0 and writes nothing.
// Throws 131 when the text has a character that is not skipped, does not end with a whole group or
// is padded wrongly; `out` then holds the bytes before that place. Null `text` throws 28.
// A character above 127 is no fault: it counts as "A".
QELKIT_API std::uint64_t Base64Decode(const char* text, std::uint64_t length, void* out,
                                      std::uint64_t outSize, unsigned int flags);
QELKIT_API std::uint64_t Base64Decode(const wchar_t* text, std::uint64_t length, void* out,
                                      std::uint64_t outSize, unsigned int flags);

}  // namespace QEL

// The Base64 of mail: one line, nothing checked, never failing.

// Writes the text of the `size` bytes at `data`, terminated, into `out`, which has room for
// 4 * ceil(size / 3) + 1 characters. Returns the characters written, the terminator not counted.
// Null `data`, or a size below 0 or above 1610612733 (its text has no int length): the empty text.
// Null `out`: 0.
QELKIT_API int QEL_MIMEBase64Encode(const char* data, char* out, int size);

// Writes the bytes of a text, whose length should be a multiple of 4, and a terminator behind them.
// Returns how many bytes they are. `out` has room for three bytes for every four characters begun
// and one more.
//   maxInput  0: up to the terminator. Otherwise at most so many characters count, but one more
//             group (see the source) is decoded, for which `out` has room too.
// Characters that are not of the alphabet count as "A", and so does what is missing of the last
// group. Text beyond 2^31 - 2 bytes of result is left alone. Null `text` is the empty text. Null
// `out`: 0.
QELKIT_API int QEL_MIMEBase64Decode(const char* text, char* out, unsigned int maxInput);

// Hexadecimal. Neither function fails.

// Writes two digits (0-9, A-F) for each of the `size` bytes at `data`, with one blank between bytes
// if `spaced`, and a terminator into `out`, which has room for `outSize` characters. What has no
// room is left out: there are only ever whole bytes. Returns the characters written, the terminator
// included; 0, and nothing written, when there is not even one byte. A null `out`: returns the room
// for all; 0 when it does not fit 32 bits. Null `data` has no bytes.
QELKIT_API ulong32 QELBin2Hex(const unsigned char* data, ulong32 size, char* out, ulong32 outSize,
                              bool spaced);

// Reads digits of either case, white space (isspace) before each of them skipped, up to the first
// other character or until `maxBytes` bytes are written into `out`. Returns the bytes written; the
// last one has 0 for its second digit if that is missing.
// A null `out`: returns the bytes that all the digits make. Null `text` has no digits.
QELKIT_API ulong32 QELHex2Bin(const char* text, unsigned char* out, ulong32 maxBytes);

// The bytes of a blob in hexadecimal, without blanks. Throws (char*)"MemoryError" when there is no
// memory to work in. (text/qel_string.h and blob/ident_obj.h have the classes.)
QELKIT_API CQELString DumpBlob2String(const IdentObj& blob);
