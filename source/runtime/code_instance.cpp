#include "runtime/code_instance.h"

#ifdef _MSC_VER
#include <intrin.h>
#define QELKIT_NEVER_INLINE __declspec(noinline)
#define QELKIT_RETURN_ADDRESS() _ReturnAddress()
#else
#define QELKIT_NEVER_INLINE __attribute__((noinline))
#define QELKIT_RETURN_ADDRESS() __builtin_return_address(0)
#endif

QELKIT_NEVER_INLINE HINSTANCE QEL::GetCurrentCodeInstance() {
    const void* const caller = QELKIT_RETURN_ADDRESS();
    MEMORY_BASIC_INFORMATION region;
    if (::VirtualQuery(caller, &region, sizeof region) == 0) return nullptr;
    return static_cast<HINSTANCE>(region.AllocationBase);
}
