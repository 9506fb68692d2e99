#!/usr/bin/env bash
# One picture for each kind of selection and each language, from the real menus under Wine, and a sheet of them all:
# gallery.sh [LANGUAGE ...]. They go to build/gallery/; the sheet of all languages is build/gallery/sheet.png.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh fonts-noto-cjk imagemagick
[ -e build/win64/build.ninja ] || cmake --preset win64 >/dev/null
cmake --build --preset win64 --target nmshell rightclick nmshell-setup -- --quiet

gallery=$PWD/build/gallery
home=$gallery/home
rm -rf "$gallery"
mkdir -p "$home/data"
printf 'x' >"$home/document.txt"
. scripts/wine-desktop.sh

languages=("$@")
if [ ${#languages[@]} -eq 0 ]; then
  for file in langs/*.lang.txt; do languages+=("$(basename "$file" .lang.txt)"); done
fi

run "$bin/nmshell-setup.exe" register
ln -s "$home/data" "$WINEPREFIX/dosdevices/d:"
shot() { run "$bin/rightclick.exe" --no-shell --shot "$(windows "$gallery/$1.png")" "${@:2}" >/dev/null; }

font=
for language in "${languages[@]}"; do
  case $language in
    ja) wanted='Noto Sans CJK JP' ;;
    ko) wanted='Noto Sans CJK KR' ;;
    zh) wanted='Noto Sans CJK SC' ;;
    *) wanted='Liberation Sans' ;;
  esac
  [ "$font" = "$wanted" ] || menu_font "$wanted"
  font=$wanted
  run reg add 'HKCU\Software\NMark Shell' /v Language /d "$language" /f >/dev/null
  shot "$language-files" "$(windows "$home/document.txt")"
  shot "$language-drive" --drive 'D:\'
  shot "$language-bin" --open trash --bin
  echo "$language"
done

# The sheet: a row a language.
rows=()
for language in "${languages[@]}"; do
  rows+=("$home/$language.png")
  montage -font Liberation-Sans -background white -title "$language" -tile 3x1 -geometry '+12+4' -gravity northwest \
    "$gallery/$language-files.png" "$gallery/$language-drive.png" "$gallery/$language-bin.png" "$home/$language.png"
done
montage -background white -tile 1x -geometry '+0+0' -gravity west "${rows[@]}" "$gallery/sheet.png"
rm -r "$home/data" "$home"/??.png
echo "build/gallery/sheet.png"
