#!/bin/sh
# wine-up.sh PREFIX: makes the Wine prefix when it is missing and starts one server that goes away
# by itself 300 s after its last client.
#
# Every descriptor is detached: the prefix's system processes would keep a caller's pipe open, and
# whoever reads that pipe would wait for ever. The server gives up root's power to override access
# rights, so that a read-only file is read-only in the tests too.
set -u
. "$(dirname "$(readlink -f "$0")")/wine-env.sh"
wine_env "$1"

quietly() { "$@" </dev/null >/dev/null 2>&1; }
setting() { quietly wine reg add "$1" /v "$2" /t "$3" /d "$4" /f; }

without_override=
if [ "$(id -u)" = 0 ]; then
  rights=-dac_override,-dac_read_search
  without_override="setpriv --bounding-set=$rights --inh-caps=$rights"
fi

if ! [ -f "$WINEPREFIX/ready" ]; then
  mkdir -p "$WINEPREFIX"
  quietly wine wineboot -i
  # Windows without a display; a crash prints its backtrace instead of opening a dialogue; heap
  # blocks are filled on allocation and release, so that stale data is seen (benchmarks turn that
  # off with QELKIT_HEAP_CHECKS=0).
  setting 'HKCU\Software\Wine\Drivers' Graphics REG_SZ null
  setting 'HKCU\Software\Wine\WineDbg' ShowCrashDialog REG_DWORD 0
  [ "${QELKIT_HEAP_CHECKS:-1}" = 0 ] ||
    setting 'HKLM\System\CurrentControlSet\Control\Session Manager' GlobalFlag REG_DWORD 0x70
  quietly wineserver -k
  quietly wineserver -w
  touch "$WINEPREFIX/ready"
fi
quietly $without_override wineserver -p300
quietly $without_override wine wineboot
