# To be sourced: a throwaway Wine prefix on a display of its own, for pictures of real menus. The caller sets `home`, an
# empty folder that the prefix goes into, and has changed to the repository's root.

export WINEPREFIX=$home/prefix
bin=$PWD/build/win64/bin

# The Recycle Bin holds something: Wine shows the desktop's trash as it.
export XDG_DATA_HOME=$home/xdg
mkdir -p "$XDG_DATA_HOME/Trash/info" "$XDG_DATA_HOME/Trash/files"
printf 'old\n' >"$XDG_DATA_HOME/Trash/files/old.txt"
printf '[Trash Info]\nPath=/old.txt\nDeletionDate=2026-01-01T00:00:00\n' >"$XDG_DATA_HOME/Trash/info/old.txt.trashinfo"

display=99
while [ -e "/tmp/.X11-unix/X$display" ]; do display=$((display + 1)); done
Xvfb ":$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
export DISPLAY=":$display"
stop_desktop() {
  /usr/lib/wine/wineserver64 -k 2>/dev/null || true
  kill "$xvfb" 2>/dev/null || true
}
trap stop_desktop EXIT

run() { scripts/wine-run.sh "$@"; }
windows() { printf 'Z:%s' "${1//\//\\}"; }

# menu_font NAME: menus in this font at 15 pixels, smoothed; with Wine's own small one icons and texts touch.
menu_font() {
  local look='HKCU\Control Panel\Desktop' font
  font=$(python3 -c 'import struct, sys
print(struct.pack("<5i8x64s", -15, 0, 0, 0, 400, sys.argv[1].encode("utf-16-le")).hex())' "$1")  # LOGFONTW
  run reg add "$look\WindowMetrics" /v MenuFont /t REG_BINARY /d "$font" /f >/dev/null
  run reg add "$look" /v FontSmoothing /d 2 /f >/dev/null
  run reg add "$look" /v FontSmoothingType /t REG_DWORD /d 1 /f >/dev/null
  /usr/lib/wine/wineserver64 -k  # the next program reads it
}
