#include "file_com/stream.h"

#include <cstring>

#ifdef _MSC_VER
static_assert(sizeof(CQELIStream) == 24 && sizeof(CQELOStream) == 24, "binary interface");
static_assert(sizeof(CQELIOStream) == 40, "binary interface");
static_assert(sizeof(CQELFileStream) == 112 && sizeof(CQELMemStream) == 48, "binary interface");
#else
static_assert(sizeof(CQELIStream) == 8 && sizeof(CQELOStream) == 8, "binary interface");
static_assert(sizeof(CQELIOStream) == 16, "binary interface");
static_assert(sizeof(CQELFileStream) == 80 && sizeof(CQELMemStream) == 24, "binary interface");
#endif

CQELStream::~CQELStream() = default;

void CQELFileStream::Read(void* buf, int n) {
    if (n > 0) file_.Read(buf, static_cast<ulong32>(n));
}

void CQELFileStream::Write(void* buf, int n) {
    if (n > 0) file_.Write(buf, static_cast<ulong32>(n));
}

void CQELMemStream::Read(void* buf, int n) {
    if (n <= 0 || !buf || !cursor_) return;
    std::memmove(buf, cursor_, static_cast<std::size_t>(n));
    cursor_ += n;
}

void CQELMemStream::Write(void* buf, int n) {
    if (n <= 0 || !buf || !cursor_) return;
    std::memmove(cursor_, buf, static_cast<std::size_t>(n));
    cursor_ += n;
}
