#include "runtime/com_initializer.h"

#include "platform/windows.h"

static_assert(sizeof(QEL::CCOMInitializer) == 1, "part of the binary interface");

// "Already initialised" (1) is a success too, and has to be balanced.
QEL::CCOMInitializer::CCOMInitializer(ulong32 coinit)
    : succeeded_(SUCCEEDED(::CoInitializeEx(nullptr, coinit))) {}

QEL::CCOMInitializer::~CCOMInitializer() {
    if (succeeded_) ::CoUninitialize();
}
