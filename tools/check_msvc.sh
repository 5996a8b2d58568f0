#!/bin/sh
# check_msvc.sh: compiles every source of the library as Visual C++ would see it, without a warning.
set -eu
cd "$(dirname "$(readlink -f "$0")")/.."
scratch=build/check_msvc
mkdir -p "$scratch"
ln -sfn "${BOOST_HEADERS:-/usr/include/boost}" "$scratch/boost"
# Two warnings are left out: of __uuidof, which is what one writes there, and of the destructor of
# CQELString, which has virtual functions and, by contract, none for its destructor: lists of the
# standard library destroy its objects, never one that derives from it.
git ls-files 'source/*.cpp' | xargs -P "$(nproc)" -I{} tools/clang_msvc.sh /std:c++20 /WX \
  -Wpedantic -Wno-language-extension-token -Wno-delete-non-abstract-non-virtual-dtor \
  -DQELKIT_BUILD /Isource -imsvc "$scratch" /c {} /Fo/dev/null
echo "msvc: $(git ls-files 'source/*.cpp' | wc -l) sources compiled without a warning"
