#pragma once

#include <cstddef>
#include <cstdint>

// The header in front of a compressed buffer: 24 bytes, every number little-endian. The payload
// follows; header and payload are the whole container.
//
//   offset  size  field
//        0     4  marker, FF FF FF FF
//        4     4  signature, "COMP"
//        8     4  original size: bytes of the data before compression
//       12     4  compressed size: bytes of the payload
//       16     1  method
//       17     3  reserved; written as zeros, ignored by readers
//       20     4  header size, 24: where the payload begins, counted from the header's beginning

namespace kit::container {

// Offsets of the fields.
inline constexpr std::size_t kMarkerAt = 0;
inline constexpr std::size_t kSignatureAt = 4;
inline constexpr std::size_t kOriginalSizeAt = 8;
inline constexpr std::size_t kCompressedSizeAt = 12;
inline constexpr std::size_t kMethodAt = 16;
inline constexpr std::size_t kReservedAt = 17;
inline constexpr std::size_t kHeaderSizeAt = 20;

// What stands in the fields of every container that is written.
inline constexpr std::uint32_t kHeaderSize = 24;
inline constexpr std::uint32_t kMarker = 0xFFFFFFFF;
inline constexpr std::uint32_t kSignature = 0x504D4F43;  // "COMP"

// Methods. Every other number belongs to a CAbstractCallbackCompress of the caller.
inline constexpr unsigned char kMethodLz = 1;      // the payload is a stream of LzCompress()
inline constexpr unsigned char kMethodPlaced = 2;  // the caller has placed the payload

}  // namespace kit::container
