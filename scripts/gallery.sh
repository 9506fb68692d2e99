#!/usr/bin/env bash
# One picture for each kind of selection and each language, from the real menus under Wine, and a sheet of them all:
# gallery.sh [LANGUAGE ...]. They go to build/gallery/; the sheet of all languages is build/gallery/sheet.png.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh imagemagick fonts-noto-cjk fonts-dejavu-core fonts-tlwg-loma-ttf fonts-lohit-deva
[ -e build/win64/build.ninja ] || cmake --preset win64 >/dev/null
cmake --build --preset win64 --target nmshell rightclick nmshell-setup langs -- --quiet

gallery=$PWD/build/gallery
home=$gallery/home
rm -rf "$gallery"
mkdir -p "$home/data"
printf 'x' >"$home/document.txt"
. scripts/wine-desktop.sh

languages=("$@")
if [ ${#languages[@]} -eq 0 ]; then
  mapfile -t languages < <(sed -n 's/^LANG: //p' langs/*.lang.txt)
fi

run "$bin/nmshell-setup.exe" register
ln -s "$home/data" "$WINEPREFIX/dosdevices/d:"
shot() { run "$bin/rightclick.exe" --no-shell --shot "$(windows "$gallery/$1.png")" "${@:2}" >/dev/null; }

# Wine borrows no letters from other fonts where a script is shaped: each font here has Latin ones, too.
font_of() {
  case $1 in
    ar | he | vi) echo 'DejaVu Sans' ;;
    hi) echo 'Lohit Devanagari' ;;
    ja) echo 'Noto Sans CJK JP' ;;
    ko) echo 'Noto Sans CJK KR' ;;
    th) echo 'Loma' ;;
    zh) echo 'Noto Sans CJK SC' ;;
    zh-Hant) echo 'Noto Sans CJK TC' ;;
    *) echo 'Liberation Sans' ;;
  esac
}

# Another font costs a new start of Wine.
mapfile -t fonts < <(for language in "${languages[@]}"; do font_of "$language"; done | sort -u)
for font in "${fonts[@]}"; do
  menu_font "$font"
  for language in "${languages[@]}"; do
    [ "$(font_of "$language")" = "$font" ] || continue
    run reg add 'HKCU\Software\NMark Shell' /v Language /d "$language" /f >/dev/null
    shot "$language-files" "$(windows "$home/document.txt")"
    shot "$language-drive" --drive 'D:\'
    shot "$language-bin" --open trash --bin
    echo "$language"
  done
done

# The sheet: a row a language, in few colours.
rows=()
for language in "${languages[@]}"; do
  rows+=("$home/$language.png")
  convert -background white -bordercolor white -font Liberation-Sans -pointsize 24 \
    \( label:"$language" -border 12x0 \) \
    \( \( "$gallery/$language-files.png" "$gallery/$language-bin.png" -border 12x8 -append \) \
    \( "$gallery/$language-drive.png" -border 12x8 \) +append \) \
    -append +repage "$home/$language.png"
done
convert -background white "${rows[@]}" -append +repage -dither None -colors 256 "PNG8:$gallery/sheet.png"
rm -r "$home/data" "$home"/*.png
echo "build/gallery/sheet.png"
