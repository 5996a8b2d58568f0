#!/bin/sh
# check_headers.sh INCLUDE_DIR: compiles every installed header alone, twice over, as C++17 and as
# C++20, before and after <windows.h> and with UNICODE, without a warning.
set -eu
cd "$1"
compiler=${CXX:-x86_64-w64-mingw32-g++-posix}
export compiler
find . -name '*.h' | sort | while read -r header; do
  for standard in c++17 c++20; do echo "-std=$standard $header"; done
  echo "-std=c++17 -DUNICODE -D_UNICODE -include windows.h $header"
done | xargs -P "$(nproc)" -I{} sh -c '
  set -- {}
  for header; do :; done
  last=$header
  printf "#include \"%s\"\n#include \"%s\"\n" "$last" "$last" |
    $compiler -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I. ${*%"$last"} -x c++ - ||
    { echo "check_headers: $last ($*)" >&2; exit 255; }
'
echo "headers: $(find . -name '*.h' | wc -l) compiled alone, three ways each"
