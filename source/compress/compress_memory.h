#pragma once

#include "base/export.h"
#include "base/types.h"

// A compressed buffer is a 24-byte header followed by its payload (layout: container_format.h).
//
// The functions keep no state and throw nothing of their own; any thread may call them on its own
// buffers. Buffers must not overlap. Every one of them returns 1 for success and 0 for failure, and
// a null pointer is a failure unless it says otherwise.

// A compression method of the caller's own, for CompressMemory2() and DecompressMemory2(). They
// call it on the caller's thread and let its exceptions pass. The caller owns the object.
//
// The order of the virtual functions is part of the binary interface: add only at the end.
class CAbstractCallbackCompress {
public:
    virtual ~CAbstractCallbackCompress() = default;

    // The method byte. 1 and 2 select the library's own methods, and the functions below are not
    // called; with any other value Compress() and Decompress() do the work.
    virtual unsigned char ChooseMethod() = 0;

    // Compresses src[0, src_len) into a whole container at dst, header included, with a method byte
    // other than 1 and 2 at offset 16. *dst_len is the room in dst on entry and should be the bytes
    // written on success. What it returns is what CompressMemory2() returns.
    virtual int Compress(const void* src, ulong32 src_len, void* dst, ulong32* dst_len) = 0;

    // Takes the whole container at src apart, into dst. The meaning of *dst_len on entry is between
    // the caller and this object. What it returns is what DecompressMemory2() returns.
    virtual int Decompress(const void* src, void* dst, ulong32* dst_len) = 0;
};

// Compresses src[0, src_len) into dst, header first.
//   dst_len  on entry the room in dst in bytes; on success the bytes written, header included
//   method   1 compresses; 2 writes only the header, in front of a payload that the caller has
//            already placed at dst + 24 (then *dst_len is 24 + its length, and src is not read and
//            may be null)
// Returns 1, or 0 when dst is too small, memory runs out, the method is unknown or nothing would be
// saved: the container must be shorter than src. On 0 *dst_len is unchanged and dst may hold part
// of a payload, but no header.
QELKIT_API int CompressMemory(const void* src, ulong32 src_len, void* dst, ulong32* dst_len,
                              unsigned char method);

// As CompressMemory(src, src_len, dst, dst_len, method) with the method that the callback chooses,
// or with method 1 without a callback. For methods other than 1 and 2 the result is that of
// callback->Compress().
QELKIT_API int CompressMemory2(const void* src, ulong32 src_len, void* dst, ulong32* dst_len,
                               CAbstractCallbackCompress* callback);

// Decompresses a container of method 1.
//   src      a whole container. Its sizes are trusted: check foreign bytes with
//            IsMemoryCompressed() first. It must be writable, in spite of the const: on success
//            the number of bytes produced replaces the original size at offset 8.
//   dst      has room for the original size (offset 8 of src) and one byte more, which a payload
//            that lies about its size may overwrite
//   dst_len  not read; on success the bytes produced
// Returns 1, or 0 when the method is not 1 or the payload yields more than the original size; then
// *dst_len and src are unchanged, and dst may hold the beginning of the data.
QELKIT_API int DecompressMemory(const void* src, void* dst, ulong32* dst_len);

// As DecompressMemory(src, dst, dst_len) for methods 1 and 2 (which thus fails). For any other
// method the result is that of callback->Decompress(), or 0 without a callback.
QELKIT_API int DecompressMemory2(const void* src, void* dst, ulong32* dst_len,
                                 CAbstractCallbackCompress* callback);

// 1 when data[0, length) is one container: marker, signature, a header size of 24 or more, and
// header size + compressed size equal to length. Method and original size are not checked. Null
// gives 0.
QELKIT_API int IsMemoryCompressed(const void* data, ulong32 length);
