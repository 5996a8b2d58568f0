#include "compress/compress_memory.h"

#include <cstdint>
#include <cstring>

#include "base/byte_order.h"
#include "compress/container_format.h"
#include "compress/lz_coder.h"

using namespace kit::container;

namespace {

unsigned char Method(const void* container) {
    return static_cast<const unsigned char*>(container)[kMethodAt];
}

// Makes the payload, unless the caller has placed it, and sets its length from the room for it.
bool MakePayload(const void* src, ulong32 src_len, unsigned char* dst, unsigned int* length,
                 unsigned char method) {
    // Quirk: method 2 takes all of the room for a payload that is already there and copies nothing;
    // callers who pack by themselves use it to have the header written. Pinned by
    // CompressMemory.MethodTwoWritesOnlyTheHeader.
    if (method == kMethodPlaced) return true;
    if (method != kMethodLz) return false;
    // The coder takes a pointer to bytes that it could change, but does not.
    auto* const bytes = static_cast<unsigned char*>(const_cast<void*>(src));
    return LzCompress(bytes, src_len, dst, length) == 0;
}

void WriteHeader(unsigned char* dst, std::uint32_t original_size, std::uint32_t compressed_size,
                 unsigned char method) {
    kit::StoreLe32(dst + kMarkerAt, kMarker);
    kit::StoreLe32(dst + kSignatureAt, kSignature);
    kit::StoreLe32(dst + kOriginalSizeAt, original_size);
    kit::StoreLe32(dst + kCompressedSizeAt, compressed_size);
    dst[kMethodAt] = method;
    std::memset(dst + kReservedAt, 0, kHeaderSizeAt - kReservedAt);
    kit::StoreLe32(dst + kHeaderSizeAt, kHeaderSize);
}

}  // namespace

int CompressMemory(const void* src, ulong32 src_len, void* dst, ulong32* dst_len,
                   unsigned char method) {
    if (!dst || !dst_len || *dst_len < kHeaderSize) return 0;
    auto* const container = static_cast<unsigned char*>(dst);
    unsigned int length = *dst_len - kHeaderSize;
    if (!MakePayload(src, src_len, container + kHeaderSize, &length, method)) return 0;
    const std::uint64_t size = std::uint64_t{length} + kHeaderSize;
    if (src_len <= size) return 0;
    WriteHeader(container, src_len, length, method);
    *dst_len = static_cast<ulong32>(size);
    return 1;
}

int CompressMemory2(const void* src, ulong32 src_len, void* dst, ulong32* dst_len,
                    CAbstractCallbackCompress* callback) {
    const unsigned char method = callback ? callback->ChooseMethod() : kMethodLz;
    if (method == kMethodLz || method == kMethodPlaced) {
        return CompressMemory(src, src_len, dst, dst_len, method);
    }
    return callback->Compress(src, src_len, dst, dst_len);
}

int DecompressMemory(const void* src, void* dst, ulong32* dst_len) {
    if (!src || !dst || !dst_len || Method(src) != kMethodLz) return 0;
    auto* const container = static_cast<unsigned char*>(const_cast<void*>(src));
    unsigned char* const payload = container + kit::LoadLe32(container + kHeaderSizeAt);
    const unsigned int compressed_size = kit::LoadLe32(container + kCompressedSizeAt);
    unsigned int count = kit::LoadLe32(container + kOriginalSizeAt);
    if (LzDecompress(payload, compressed_size, static_cast<unsigned char*>(dst), &count) != 0) {
        return 0;
    }
    // Quirk: the number of bytes produced goes into the header of the const source. Callers read it
    // there afterwards. Pinned by DecompressMemory.PutsTheBytesProducedIntoTheSource.
    kit::StoreLe32(container + kOriginalSizeAt, count);
    *dst_len = count;
    return 1;
}

int DecompressMemory2(const void* src, void* dst, ulong32* dst_len,
                      CAbstractCallbackCompress* callback) {
    if (!src) return 0;
    const unsigned char method = Method(src);
    if (method == kMethodLz || method == kMethodPlaced) return DecompressMemory(src, dst, dst_len);
    return callback ? callback->Decompress(src, dst, dst_len) : 0;
}

int IsMemoryCompressed(const void* data, ulong32 length) {
    kit::ByteReader header(data, data ? length : 0);
    const bool marked = header.U32() == kMarker && header.U32() == kSignature;
    header.U32();  // the original size may be anything
    const std::uint64_t compressed_size = header.U32();
    header.U32();  // so may the method and the reserved bytes
    const std::uint32_t header_size = header.U32();
    return header.ok() && marked && header_size >= kHeaderSize &&
           header_size + compressed_size == length;
}
