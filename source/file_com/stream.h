#pragma once

#include "base/export.h"
#include "file_com/qel_file.h"

// Byte streams over files and memory. CQELStream is a virtual base: a stream that reads and writes
// has one such part. Byte counts of 0 or below transfer nothing.
//
// Copies of a file stream share the open file; copies of a memory stream have a cursor each, at
// the same place. No stream may be used by two threads at once.
//
// The order of the virtual functions and of the fields is part of the binary interface: add only
// at the end.

// What every stream is. It says nothing of reading or writing.
class QELKIT_API CQELStream {
public:
    // Streams are made as what they read or write.
    CQELStream();
    CQELStream(const CQELStream&);
    CQELStream& operator=(const CQELStream&);
    virtual ~CQELStream();
};

inline CQELStream::CQELStream() = default;
inline CQELStream::CQELStream(const CQELStream&) = default;
inline CQELStream& CQELStream::operator=(const CQELStream&) = default;

// A stream that reads.
class QELKIT_API CQELIStream : public virtual CQELStream {
public:
    // Brings `n` bytes into `buf`, as the stream behind it can.
    virtual void Read(void* buf, int n) = 0;
};

// A stream that writes.
class QELKIT_API CQELOStream : public virtual CQELStream {
public:
    // Takes `n` bytes from `buf`, which stays as it is.
    virtual void Write(void* buf, int n) = 0;
};

// A stream that does both.
class QELKIT_API CQELIOStream : public CQELIStream, public CQELOStream {};

// A stream over a file. A failure is recorded in the file that the stream holds, and thrown as
// XQELFile if the file that it was made of raises; a read that the end of the file cuts short is
// none. Without the raise flag a failure is not seen from outside.
class QELKIT_API CQELFileStream : public CQELIOStream {
public:
    // Over a file that is not open and does not raise: transfers nothing.
    CQELFileStream();
    // Over a copy of `file`, which shares its open stream and position.
    CQELFileStream(const CQELFile& file);

    // CQELFile::Read and CQELFile::Write of `n` bytes at the position of the shared stream.
    void Read(void* buf, int n) override;
    void Write(void* buf, int n) override;

private:
    CQELFile file_;
};

inline CQELFileStream::CQELFileStream() : file_(nullptr, nullptr, false) {}
inline CQELFileStream::CQELFileStream(const CQELFile& file) : file_(file) {}

// A stream over the caller's memory: one cursor, moved by reading and writing alike. There is no
// length and no check: the caller owns the memory and guarantees room. A null cursor or buffer
// transfers nothing.
class QELKIT_API CQELMemStream : public CQELIOStream {
public:
    // Begins at `cursor`.
    CQELMemStream(void* cursor = nullptr);

    // Copy `n` bytes from the cursor to `buf`, or from `buf` to the cursor, which moves on by them.
    void Read(void* buf, int n) override;
    void Write(void* buf, int n) override;

private:
    unsigned char* cursor_;
};

inline CQELMemStream::CQELMemStream(void* cursor) : cursor_(static_cast<unsigned char*>(cursor)) {}
