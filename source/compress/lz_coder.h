#pragma once

#include "base/export.h"

// LZSS coding of whole buffers with a window of 4096 bytes and matches of 3 to 16 bytes. The stream
// has no header and no end mark; it ends where its bytes end. compress_memory.h puts a header in
// front that says the rest.
//
// The functions keep no state and throw nothing; any thread may call them on its own buffers.
// Buffers must not overlap. Equal input gives equal output, byte for byte, in every version.

// Compresses src[0, src_len) into dst.
//   src      not changed; may be null when src_len is 0
//   dst_len  on entry the room in dst in bytes; on success the bytes written. The worst case is
//            src_len + (src_len + 7) / 8.
// Returns 0, or -1 when the room does not suffice, memory (up to half a MiB) runs out or a pointer
// is null. On -1 *dst_len is unchanged and dst may hold a part of the stream, never more than the
// room. An empty input succeeds without looking at dst and dst_len: nothing is written and *dst_len
// stays.
QELKIT_API int LzCompress(unsigned char* src, unsigned int src_len, unsigned char* dst,
                          unsigned int* dst_len);

// Decompresses the stream src[0, src_len) into dst. Any bytes are a valid stream; an incomplete
// token at the end is dropped.
//   src      not changed; may be null when src_len is 0
//   dst      has room for one byte more than *dst_len says: an output that does not fit is noticed
//            only after its first byte too many has been stored
//   dst_len  on entry the bytes that the output may have; on success those that it has
// Returns 0, or -1 when the output is longer than that or a pointer is null; then *dst_len is
// unchanged, and dst[0, *dst_len] holds the beginning of the output, spare byte included. On
// success nothing behind the output is touched.
QELKIT_API int LzDecompress(unsigned char* src, unsigned int src_len, unsigned char* dst,
                            unsigned int* dst_len);
