#!/usr/bin/env bash
# The main job on real input: right-clicks in a real COM host under Wine, from the menu to the command line that nmark.exe
# received. Installs what is missing, builds, makes a throwaway Wine prefix, registers the extension, and leaves pictures
# of the menus in build/demo/: demo.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh
[ -e build/win64/build.ninja ] || cmake --preset win64 >/dev/null
cmake --build --preset win64 --target nmshell nmark rightclick nmshell-setup -- --quiet

home=$PWD/build/demo
rm -rf "$home"
mkdir -p "$home/My documents"
printf 'draft\n' >"$home/My documents/Übersicht – Entwurf.txt"
printf 'numbers\n' >"$home/My documents/表計算 2026.ods"
mkdir "$home/My documents/Старые письма"
. scripts/wine-desktop.sh

# Waits for what nmark.exe wrote, prints it, and clears it away for the next start.
received() {
  for _ in $(seq 200); do
    [ -s "$home/report.json" ] && break
    sleep 0.1
  done
  python3 -c 'import json, sys
for line in open(sys.argv[1], encoding="utf-8"):
    request = json.loads(line)
    print("  nmark.exe received:", *request["arguments"])
    print("  which means:       ", request["commandName"], "|", ", ".join(request["paths"]) or "no selection")' \
    "$home/report.json"
  rm -f "$home/report.json"
}

menu_font "Liberation Sans"
echo "== Registering the extension in a fresh Wine prefix"
run "$bin/nmshell-setup.exe" register

export NMARK_REPORT
NMARK_REPORT=$(windows "$home/report.json")
# Prints the menu and takes its picture.
rightclick() {
  local name=$1
  shift
  run "$bin/rightclick.exe" "$@"
  run "$bin/rightclick.exe" --shot "$(windows "$home/$name.png")" "$@" >/dev/null
}
files=("$(windows "$home/My documents/Übersicht – Entwurf.txt")" "$(windows "$home/My documents/表計算 2026.ods")"
  "$(windows "$home/My documents/Старые письма")")

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

echo; echo "Pictures of the menus:"; ls "$home"/*.png
