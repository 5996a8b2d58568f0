#pragma once

#include "base/export.h"
#include "base/types.h"

namespace QEL {

// COM for the calling thread, for as long as this lives. Belongs to the thread that made it.
class QELKIT_API CCOMInitializer {
public:
    //   coinit  as CoInitializeEx takes it: 0 multithreaded, 2 apartment-threaded
    // When the thread is already in an apartment of the other kind, nothing happens, now and in
    // the end.
    explicit CCOMInitializer(ulong32 coinit);
    ~CCOMInitializer();
    CCOMInitializer(const CCOMInitializer&) = delete;
    CCOMInitializer& operator=(const CCOMInitializer&) = delete;

private:
    bool succeeded_;
};

}  // namespace QEL
