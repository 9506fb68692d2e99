#!/usr/bin/env bash
# The main job on real input: right-clicks in a real COM host under Wine, from the menu to the command line that nmark.exe
# received. Installs what is missing, builds, makes a throwaway Wine prefix, registers the extension, and leaves pictures
# of the menus in build/demo/: demo.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh
[ -e build/win64/build.ninja ] || cmake --preset win64 >/dev/null
cmake --build --preset win64 --target nmshell nmark rightclick nmshell-setup -- --quiet

bin=$PWD/build/win64/bin
demo=$PWD/build/demo
rm -rf "$demo"
mkdir -p "$demo/My documents"
export WINEPREFIX=$demo/prefix
printf 'draft\n' >"$demo/My documents/Übersicht – Entwurf.txt"
printf 'numbers\n' >"$demo/My documents/表計算 2026.ods"
mkdir "$demo/My documents/Старые письма"
# Something in the Recycle Bin: Wine shows the desktop's trash as it.
export XDG_DATA_HOME=$demo/xdg
mkdir -p "$XDG_DATA_HOME/Trash/info" "$XDG_DATA_HOME/Trash/files"
printf 'old\n' >"$XDG_DATA_HOME/Trash/files/old.txt"
printf '[Trash Info]\nPath=/old.txt\nDeletionDate=2026-01-01T00:00:00\n' >"$XDG_DATA_HOME/Trash/info/old.txt.trashinfo"

display=99
while [ -e "/tmp/.X11-unix/X$display" ]; do display=$((display + 1)); done
Xvfb ":$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
stop() {
  WINEPREFIX=$WINEPREFIX /usr/lib/wine/wineserver64 -k 2>/dev/null || true
  kill "$xvfb" 2>/dev/null || true
}
trap stop EXIT
export DISPLAY=":$display"

run() { scripts/wine-run.sh "$@"; }
windows() { printf 'Z:%s' "${1//\//\\}"; }
# Waits for what nmark.exe wrote, prints it, and clears it away for the next start.
received() {
  for _ in $(seq 200); do
    [ -s "$demo/report.json" ] && break
    sleep 0.1
  done
  python3 -c 'import json, sys
for line in open(sys.argv[1], encoding="utf-8"):
    request = json.loads(line)
    print("  nmark.exe received:", *request["arguments"])
    print("  which means:       ", request["commandName"], "|", ", ".join(request["paths"]) or "no selection")' \
    "$demo/report.json"
  rm -f "$demo/report.json"
}

# Menus in a font of 15 pixels, smoothed: with Wine's own small one icons and texts touch.
look='HKCU\Control Panel\Desktop'
font=$(python3 -c 'import struct
print(struct.pack("<5i8x64s", -15, 0, 0, 0, 400, "Liberation Sans".encode("utf-16-le")).hex())')  # LOGFONTW
run reg add "$look\WindowMetrics" /v MenuFont /t REG_BINARY /d "$font" /f >/dev/null
run reg add "$look" /v FontSmoothing /d 2 /f >/dev/null
run reg add "$look" /v FontSmoothingType /t REG_DWORD /d 1 /f >/dev/null
/usr/lib/wine/wineserver64 -k

echo "== Registering the extension in a fresh Wine prefix"
run "$bin/nmshell-setup.exe" register

export NMARK_REPORT
NMARK_REPORT=$(windows "$demo/report.json")
# Prints the menu and takes its picture.
rightclick() {
  local name=$1
  shift
  run "$bin/rightclick.exe" "$@"
  run "$bin/rightclick.exe" --shot "$(windows "$demo/$name.png")" "$@" >/dev/null
}
files=("$(windows "$demo/My documents/Übersicht – Entwurf.txt")" "$(windows "$demo/My documents/表計算 2026.ods")"
  "$(windows "$demo/My documents/Старые письма")")

echo; echo "== Right-click on two files and a folder; choosing the wipe entry"
rightclick files "${files[@]}"
run "$bin/rightclick.exe" --pick 0 "${files[@]}" >/dev/null
received

echo; echo "== Right-click on a drive; choosing to clean it"
rightclick drive --drive 'C:\'
run "$bin/rightclick.exe" --pick 2 --drive 'C:\' >/dev/null
received

echo; echo "== Right-click on the Recycle Bin; choosing the user's own, then about"
rightclick bin --open trash --bin
for offset in 4 14; do
  run "$bin/rightclick.exe" --pick "$offset" --bin >/dev/null
  received
done

echo; echo "Pictures of the menus:"; ls "$demo"/*.png
