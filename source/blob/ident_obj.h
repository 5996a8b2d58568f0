#pragma once

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"

class CQELFile;
class CQELString;

// The platform's structure of a byte count and a pointer. <wincrypt.h> names it after its uses and
// leaves out the name that they share.
using CRYPTOAPI_BLOB = struct _CRYPTOAPI_BLOB;

// A block of bytes that the object owns: identifiers, keys, certificate fields. The platform's
// structure is its base, so that an IdentObj* converts to the CRYPTOAPI_BLOB* (DATA_BLOB*,
// CERT_NAME_BLOB* ..) of the platform's cryptographic functions. (Not by way of void*: the
// structure does not lie at the beginning of the object.)
//
//     IdentObj secret("key", 3), sealed;
//     DATA_BLOB out;
//     if (CryptProtectData(&secret, nullptr, nullptr, nullptr, nullptr, 0, &out)) {
//         sealed = out;
//         LocalFree(out.pbData);
//     }
//
// - `cbData` is the byte count, `pbData` the bytes: null exactly when the count is 0. They may be
//   read, and the bytes changed; memory that is put into pbData must come from malloc, and is freed.
// - Sources of bytes may lie inside the object's own; null with a count stands for no bytes.
// - Memory that cannot be had is thrown as XQELStatus 16 with its raise flag set; so is a size beyond
//   32 bits. The content is then as it was (Alloc says otherwise of itself).
// - An object belongs to one thread at a time.
//
// Serial form, little-endian: the byte count (4 bytes), then the bytes.
//
// The order of the virtual functions (destructor, Realloc, Empty) and of the fields is part of the
// binary interface: add only at the end.
class QELKIT_API IdentObj : public CRYPTOAPI_BLOB {
public:
    // No bytes.
    IdentObj();
    // `size` bytes: those at `data`, or zeros when it is null.
    IdentObj(const void* data, ulong32 size);
    // A copy of the bytes of `other`, which stay its own.
    IdentObj(const CRYPTOAPI_BLOB& other);
    IdentObj(const IdentObj& other);
    virtual ~IdentObj();

    // Copies the bytes.
    IdentObj& operator=(const IdentObj& other);
    IdentObj& operator=(const CRYPTOAPI_BLOB& other);
    // The bytes of a text without its terminator; null and "" make the blob empty.
    IdentObj& operator=(const char* text);

    // --- Content ---------------------------------------------------------------------------------

    // `size` new bytes that are not initialised. The old ones are gone, also when memory runs out.
    void Alloc(ulong32 size);
    // The `size` bytes at `data`; null makes the blob empty.
    void Assign(const void* data, ulong32 size);
    // Changes the size and keeps the bytes that fit; further ones are not initialised.
    virtual void Realloc(ulong32 size);
    // Appends the `size` bytes at `data`, or as many that are not initialised when it is null.
    void AddData(const void* data, ulong32 size);
    // Frees the bytes.
    virtual void Empty();
    // Whether there are no bytes.
    bool IsEmpty() const;

    // The bytes of a blob in reverse order.
    static IdentObj Reverse(const IdentObj& blob);

    // Becomes what QELHex2Bin reads from `hex`. Returns the byte count; 0 for null or no digits.
    ulong32 SetByHexString(const char* hex);

    // --- Comparison ------------------------------------------------------------------------------
    // Equal: the same count and bytes. Less: the shorter one; of equal length, by the first byte
    // that differs, unsigned.

    bool operator==(const IdentObj& other) const;
    bool operator!=(const IdentObj& other) const;
    bool operator==(const CRYPTOAPI_BLOB& other) const;
    bool operator!=(const CRYPTOAPI_BLOB& other) const;
    bool operator<(const IdentObj& other) const;
    bool operator>(const IdentObj& other) const;
    // The bytes up to the first zero, compared as a text; an empty blob equals an empty string.
    bool operator==(const CQELString& text) const;
    bool operator!=(const CQELString& text) const;

    // --- Serial form -----------------------------------------------------------------------------

    // 4 + byte count.
    ulong32 GetObjectSize() const;

    // Reads the serial form at `offset` of an open file, or at its position when `offset` is
    // 0xFFFFFFFF. Returns the bytes read, 4 + byte count. Returns 0 and leaves the content alone
    // when the file ends at or before `offset`, its length or position cannot be had, the count is
    // not all there or is greater than the length from `offset` (without one: of the whole file).
    // Returns 0 and leaves the blob empty when fewer bytes follow than the count says. A file that
    // raises its errors throws XQELFile; the content is then as it was.
    ulong32 ReadData(const CQELFile& file, ulong32 offset);
    // Reads the serial form from a buffer of `size` bytes. Returns the bytes read, 4 + byte count;
    // 0 for a null buffer or one that does not hold all, and the content is then as it was.
    ulong32 ReadData(const void* buffer, ulong32 size);

    // Writes the serial form at `offset` of an open file, or at its position when `offset` is
    // 0xFFFFFFFF. Returns the bytes written, 4 + byte count. Returns 0 and writes nothing when the
    // file is shorter than `offset`, or its length or position cannot be had. When not all can be
    // written the file is cut where the record would have begun, what came behind included, and the
    // result is 0; a file that raises its errors throws XQELFile then.
    ulong32 WriteData(CQELFile& file, ulong32 offset) const;
    // Writes the serial form into a buffer with room for `size` bytes. Returns the bytes written; 0
    // for a null buffer or too little room, and nothing is written.
    ulong32 WriteData(void* buffer, ulong32 size) const;

protected:
    // Takes over a block of malloc, null for no bytes, in the place of the old one.
    void Own(void* block, ulong32 size);

private:
    void Resize(ulong32 size);
};
