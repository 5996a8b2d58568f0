#!/bin/sh
# with_pkg_config.sh PKG_CONFIG FOLDER VERSION COMPILER ARGUMENT...: compiles with the flags of the
# package that lies at FOLDER, which must have that version.
set -eu
PKG_CONFIG_LIBDIR=$2
export PKG_CONFIG_LIBDIR
"$1" --exact-version="$3" qelkit2
# One word a flag; the flags of the package have no blanks unless its folder has.
set -- "$@" $("$1" --cflags --libs qelkit2)
shift 3
exec "$@"
