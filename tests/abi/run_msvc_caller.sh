#!/bin/sh
# run_msvc_caller.sh RUN_WINE PREFIX DLL SCRATCH: makes the import library for Visual C++, links a caller
# with the Microsoft ABI against it and lets it call the DLL.
set -eu
here=$(dirname "$(readlink -f "$0")")
source=$here/../../source
run_wine=$1 prefix=$2 dll=$3 scratch=$4
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"
llvm-dlltool -m i386:x86-64 -d "$source/report/table_builder_c.def" -l QELKIT2_64.lib
clang --target=x86_64-pc-windows-msvc -std=c99 -Wall -Wextra -Wpedantic -Werror -O2 -fno-builtin \
  -I"$source" -c "$here/msvc_caller.c" -o caller.obj
lld-link /nologo /nodefaultlib /subsystem:console /entry:Start /out:caller.exe caller.obj QELKIT2_64.lib
ln -s "$(dirname "$dll")"/*.dll .
"$run_wine" "$prefix" ./caller.exe || { echo "msvc_caller.c:$? is not as expected"; exit 1; }
grep -q '<td align=right>from another compiler' report.html
echo 'msvc caller: report.html written through the import library'
