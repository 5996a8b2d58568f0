#pragma once

// QELKIT_API marks what the DLL exports: classes and plain functions alike. Nothing else leaves it.
// Inline members of such a class are defined behind it, not in it: GCC exports them only then.
//   QELKIT_BUILD   set while the library itself is compiled
//   QELKIT_STATIC  set by programs that link the library's objects instead of the DLL
#if !defined(_WIN32) || defined(QELKIT_STATIC)
#define QELKIT_API
#elif defined(QELKIT_BUILD)
#define QELKIT_API __declspec(dllexport)
#else
#define QELKIT_API __declspec(dllimport)
#endif
