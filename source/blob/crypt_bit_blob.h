#pragma once

#include "base/export.h"
#include "base/types.h"
#include "blob/ident_obj.h"
#include "platform/windows.h"

// A blob that also says how many of the lowest bits of its last byte do not belong to the value, as
// the platform's CRYPT_BIT_BLOB does. The number is kept as it is given, whatever the bytes are;
// the inherited operations that change the bytes leave it alone.
//
// Serial form: that of IdentObj, then the unused-bit count (4 bytes, little-endian).
// GetObjectSize() is without these four.
//
// The order of the virtual functions (those of IdentObj; none is added) and of the fields is part
// of the binary interface: add only at the end.
class QELKIT_API CQELCryptBitBlob : public IdentObj {
public:
    ulong32 cUnusedBits = 0;  // the bits of the last byte that do not belong to the value

    // No bytes, no unused bits.
    CQELCryptBitBlob();
    // Copies of the bytes of `other`, which stay its own, and its unused-bit count.
    CQELCryptBitBlob(const CRYPT_BIT_BLOB& other);
    CQELCryptBitBlob(const CQELCryptBitBlob& other);
    ~CQELCryptBitBlob() override;

    // Copies the bytes and the unused-bit count.
    CQELCryptBitBlob& operator=(const CRYPT_BIT_BLOB& other);
    CQELCryptBitBlob& operator=(const CQELCryptBitBlob& other);

    // Bytes and unused-bit counts are equal.
    bool operator==(const CQELCryptBitBlob& other) const;
    bool operator!=(const CQELCryptBitBlob& other) const;
    // The bytes are less (greater), as those of IdentObj, and the unused-bit count is, too. So two
    // may be neither less, equal nor greater: no order to sort by.
    bool operator<(const CQELCryptBitBlob& other) const;
    bool operator>(const CQELCryptBitBlob& other) const;

    // As those of IdentObj on a `file` or on a `buffer` of `size` bytes; the results are 8 + byte
    // count. Two things differ: an `offset` equal to the length of the file is no reason to refuse,
    // and when an open file has no whole record at a place within it, the blob is empty afterwards
    // and its unused-bit count 0. (So it is when the length of the file cannot be had.)
    ulong32 ReadData(const CQELFile& file, ulong32 offset);
    ulong32 ReadData(const void* buffer, ulong32 size);
    ulong32 WriteData(CQELFile& file, ulong32 offset) const;
    ulong32 WriteData(void* buffer, ulong32 size) const;

private:
    ulong32 Take(void* block, ulong32 size, ulong32 unused_bits);
};
