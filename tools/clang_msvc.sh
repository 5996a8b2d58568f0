#!/bin/sh
# clang_msvc.sh ARGUMENT...: clang in the manner of cl, for Windows with the Microsoft ABI.
#
# The headers are Wine's for Windows and its C runtime, with what they lack in tools/msvc_headers, and
# libc++ for the standard library: enough to compile, not to link.
set -eu
root=$(dirname "$(readlink -f "$0")")/..
clang=$(dirname "$(clang -print-resource-dir)")/../..
wine=/usr/include/wine/wine
exec clang --driver-mode=cl --target=x86_64-pc-windows-msvc /nologo /W4 /utf-8 /permissive- /EHsc /X \
  -D_LIBCPP_NO_VCRUNTIME -DWINE_UNICODE_NATIVE \
  -imsvc "$clang/include/c++/v1" -imsvc "$(clang -print-resource-dir)/include" \
  -imsvc "$root/tools/msvc_headers" -imsvc $wine/msvcrt -imsvc $wine/windows "$@"
