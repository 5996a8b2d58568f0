// What every way of consuming the library is tried with: a plain function, classes, an exception
// that crosses the boundary. Prints "ok" and the version of the DLL that it runs with.

#include <cstdio>

#include <qelkit2.h>

namespace {

int StatusOfMissingFile() {
    try {
        CQELFile file("no such file", "rb", /*raise=*/true);
    } catch (const XQELStatus& failure) {
        return failure.Status();
    }
    return kStatusOk;
}

}  // namespace

int main() {
    ulong32 address = 0;
    if (CQELIpToLong("10.0.0.1", &address) != 0 || address != 0x0A000001) return 1;
    if (StatusOfMissingFile() != kStatusFileNotFound) return 2;
    const ulong32 version = QELUtils::GetVersionInfo("QELKIT2_64.dll");
    CQELString text;
    text.Format("ok %d.%d", static_cast<int>(version >> 16), static_cast<int>(version & 0xFFFF));
    std::puts(text);
    return 0;
}
