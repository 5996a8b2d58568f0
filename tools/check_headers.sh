#!/bin/sh
# check_headers.sh INCLUDE_DIR: compiles the installed headers without a warning
#   - each alone as C++17, in front of <windows.h> as C++20, behind it with UNICODE,
#   - all together in every order around <windows.h>, with and without UNICODE, NOMINMAX and
#     WIN32_LEAN_AND_MEAN, by the DLL's compiler and with the Microsoft ABI,
# and refuses macros that they leave behind without our prefix.
set -eu
gcc="${CXX:-x86_64-w64-mingw32-g++-posix} -Wall -Wextra -Wpedantic -Werror -I."
clang="$(dirname "$(readlink -f "$0")")/clang_msvc.sh /std:c++17 /WX /I."
cd "$1"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# unit HEADER...: names a source that includes the headers, each twice: that must be harmless.
unit() {
  name=$scratch/$(echo "$*" | tr -c 'a-z0-9\n' _).cpp
  for header; do printf '#include "%s"\n#include "%s"\n' "$header" "$header"; done >"$name"
  echo "$name"
}

# One command a line.
commands() {
  wide='-DUNICODE -D_UNICODE'
  for header in $(find . -name '*.h' | sed 's/^..//' | sort); do
    echo "$gcc -std=c++17 -fsyntax-only $(unit "$header")"
    echo "$gcc -std=c++20 -fsyntax-only $(unit "$header" windows.h)"
    echo "$gcc -std=c++17 $wide -fsyntax-only $(unit windows.h "$header")"
  done
  for unicode in '' "$wide"; do
    for limits in '' -DNOMINMAX; do
      for lean in '' -DWIN32_LEAN_AND_MEAN; do
        for source in $(unit qelkit2.h) $(unit windows.h qelkit2.h) $(unit qelkit2.h windows.h); do
          echo "$gcc -std=c++17 $unicode $limits $lean -fsyntax-only $source"
          echo "$clang $unicode $limits $lean /Zs $source"
        done
      done
    done
  done
}
commands >"$scratch/commands"
xargs -P "$(nproc)" -I{} sh -c '{} || { echo "check_headers: {}" >&2; exit 255; }' <"$scratch/commands"

# Names of ours are those that come from a relative path.
$gcc -std=c++17 -E -dD "$(unit qelkit2.h)" | awk '
  /^# [0-9]+ "/ { ours = $3 !~ /^"[\/<]/ }
  ours && $1 == "#define" { sub(/\(.*/, "", $2); left[$2] = 1 }
  ours && $1 == "#undef" { delete left[$2] }
  END {
    for (name in left) if (name !~ /^QEL/) { print "check_headers: macro " name " is left"; bad = 1 }
    exit bad
  }'
echo "headers: $(find . -name '*.h' | wc -l), $(wc -l <"$scratch/commands") ways to include them, no foreign macro"
