#include "compress/lz_coder.h"

#include <memory>
#include <new>

#include "compress/detail/lz_decoder.h"
#include "compress/detail/lz_encoder.h"

namespace {

bool Encode(const unsigned char* src, unsigned int size, kit::lz::TokenWriter& writer) {
    using namespace kit::lz;
    if (size <= ShortEncoder::kLongest) return ShortEncoder(src, size, writer).Encode();
    const std::unique_ptr<BlockEncoder> encoder(new (std::nothrow) BlockEncoder(src, size, writer));
    return encoder && encoder->Encode();
}

}  // namespace

int LzCompress(unsigned char* src, unsigned int src_len, unsigned char* dst,
               unsigned int* dst_len) {
    if (src_len == 0) return 0;
    if (!src || !dst || !dst_len) return -1;
    kit::lz::TokenWriter writer(dst, *dst_len);
    if (!Encode(src, src_len, writer)) return -1;
    *dst_len = writer.written();
    return 0;
}

int LzDecompress(unsigned char* src, unsigned int src_len, unsigned char* dst,
                 unsigned int* dst_len) {
    if ((!src && src_len > 0) || !dst || !dst_len) return -1;
    const std::int64_t count = kit::lz::Decode(src, src_len, dst, *dst_len);
    if (count < 0) return -1;
    *dst_len = static_cast<unsigned int>(count);
    return 0;
}
