#!/bin/sh
# run-wine.sh PREFIX PROGRAM [ARGUMENT...]: runs a Windows program in that prefix, starting the
# server first when none runs. QELKIT_WINEPREFIX overrides the prefix; QELKIT_INPUT names a file that
# becomes the program's standard input, which is otherwise empty.
set -u
here=$(dirname "$(readlink -f "$0")")
. "$here/wine-env.sh"
wine_env "${QELKIT_WINEPREFIX:-$1}"
shift
if ! wineserver -k0 >/dev/null 2>&1; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    wineserver -k0 >/dev/null 2>&1 || "$here/wine-up.sh" "$WINEPREFIX" 9>&-
  ) 9>"$WINEPREFIX.lock"
fi
exec wine "$@" <"${QELKIT_INPUT:-/dev/null}"
