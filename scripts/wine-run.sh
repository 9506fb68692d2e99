#!/usr/bin/env bash
# Runs a Windows program through Wine, in the prefix of this build: wine-run.sh PROGRAM.exe [ARGUMENT ...]
# CMake uses it as the emulator of the cross build. WINEPREFIX chooses another prefix; the default one lies in build/, so that
# nothing of the user's own Wine is touched. A prefix is made on first use, as a copy of a template that is made once.
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
template=$root/build/wine-template

# once DIR FUNCTION: lets FUNCTION make DIR, one process at a time and only the first time.
once() {
  [ -e "$1/.ready" ] && return
  mkdir -p "$(dirname "$1")"
  (
    flock 9
    [ -e "$1/.ready" ] && exit
    rm -rf "$1"
    "$2" "$1"
    touch "$1/.ready"
  ) 9>"$1.lock"
}

# Any program that is started sets a prefix up. `wineboot --init` would be a second one at it: two service managers, no
# lasting RPC service, and ten seconds of waiting in every program that uses COM. What Wine does behind that, and at the
# first restart, is waited for, so that all copies begin alike and stay so.
make_template() {
  local program
  for program in "cmd /c exit" wineboot; do
    # shellcheck disable=SC2086  # the words of a command
    WINEPREFIX=$1 "$wine" $program >/dev/null 2>&1
    WINEPREFIX=$1 "$WINESERVER" -w
  done
}

# The system's own 700 MB, which nobody writes to, become hard links where the file system has them.
make_prefix() {
  local part
  mkdir -p "$1"
  tar -C "$template" --exclude=./.ready --exclude=./drive_c/windows/{system32,winsxs} -cf - . | tar -C "$1" -xf -
  for part in drive_c/windows/{system32,winsxs}; do
    mkdir "$1/$part"
    cp -al "$template/$part/." "$1/$part" 2>/dev/null || cp -a "$template/$part/." "$1/$part"
  done
}

if [ ! -e "$WINEPREFIX/.ready" ]; then
  once "$template" make_template
  once "$WINEPREFIX" make_prefix
fi
# Wine's server ends three seconds after the last program, and a program that comes while it does so waits for services that are
# going, or ends without a word. So it stays for ten minutes, and who starts it starts the services too, with no output of ours that
# they would keep open. Should that fail, the program itself says why.
if "$WINESERVER" -p600 </dev/null >/dev/null 2>&1; then
  "$wine" cmd /c exit </dev/null >/dev/null 2>&1 || true
fi
exec "$wine" "$@"
