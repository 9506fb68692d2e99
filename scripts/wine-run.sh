#!/usr/bin/env bash
# Runs a Windows program through Wine, in the prefix of this build: wine-run.sh PROGRAM.exe [ARGUMENT ...]
# CMake uses it as the emulator of the cross build. WINEPREFIX chooses another prefix; the default one is made on
# first use and lies in build/, so that nothing of the user's own Wine is touched.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX="${WINEPREFIX:-$root/build/wineprefix}"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}"
# Wine names files in the locale's charset; in the plain C locale it could not make one with an umlaut.
[ "$(locale charmap 2>/dev/null)" = UTF-8 ] || export LC_ALL=C.UTF-8
export WINESERVER="${WINESERVER:-/usr/lib/wine/wineserver64}"
wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=wine64
mkdir -p "$(dirname "$WINEPREFIX")"
if [ ! -e "$WINEPREFIX/.ready" ]; then
  (
    flock 9
    if [ ! -e "$WINEPREFIX/.ready" ]; then
      # Any program that is started sets a new prefix up. `wineboot --init` would be a second one at it: two service
      # managers, no lasting RPC service, and ten seconds of waiting in every program that uses COM.
      "$wine" cmd /c exit >/dev/null 2>&1
      touch "$WINEPREFIX/.ready"
    fi
  ) 9>"$WINEPREFIX.lock"
fi
exec "$wine" "$@"
