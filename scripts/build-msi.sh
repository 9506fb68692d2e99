#!/usr/bin/env bash
# Builds the installer from a Windows build: build-msi.sh [-b BIN] [-v VERSION] [--sign COMMAND] [--publisher NAME] [OUTPUT.msi]
# BIN is build/win64/bin, VERSION the project's, OUTPUT build/nmshell-VERSION.msi unless given. All language files in BIN/langs are
# taken. COMMAND is called with the name of a file behind it and signs that file in place: the DLLs, the programs, the package.
# The package of Windows 11's menu, nmcommand.msix, is signed too when NAME, the subject of the certificate, is given (build-package.sh).
# The same files give the same package, byte for byte; SOURCE_DATE_EPOCH is the time that it carries, that of the last commit unless
# set. wixl and msitools come with scripts/install-packages.sh.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/packaging.sh"
umask 022

read_options "-b -v --sign --publisher" "$@"
: "${bin:=$root/build/win64/bin}"
check_version 255 255 65535  # the installer has no room for more
output=$(realpath -m "${output:-$root/build/nmshell-$version.msi}")

# The DLLs first, then the programs, in the order in which they are signed.
files=(nmshell.dll nmcommand.dll nmshell-actions.dll nmshell-setup.exe nmshell-setupw.exe)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/files/langs"
for file in "${files[@]}"; do
  [ -f "$bin/$file" ] || fail 1 "there is no $bin/$file"
  cp "$bin/$file" "$scratch/files/$file"
done
cp "$bin"/langs/*.lang.txt "$scratch/files/langs/"
cd "$scratch/files"  # wixl looks for the files from here

for file in "${files[@]}"; do sign_file "$PWD/$file"; done
package_options=()
[ -z "$publisher" ] || package_options=(--publisher "$publisher" ${sign:+--sign "$sign"})
"$root/scripts/build-package.sh" -v "$version" "${package_options[@]}" nmcommand.msix >/dev/null
find . -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +

facts=$root/installer/facts.py
file_version=$("$facts" version "${files[@]}")
mapfile -t languages < <("$facts" languages langs)
[[ " ${languages[*]} " == *" en "* ]] || fail 1 "there is no English among the language files"
web_host=$(sed -n 's/^NMSHELL_WEB_HOST:STRING=//p' "$bin/../CMakeCache.txt" 2>/dev/null || true)
: "${web_host:=$(sed -n 's/^set(NMSHELL_WEB_HOST "\(.*\)" CACHE.*/\1/p' "$root/CMakeLists.txt")}"

# Product and package are the same as long as version and content are. A package that carries another time is another package.
mapfile -t content < <(find . -type f | sort)
cp "$root/installer/nmshell.wxs" "$root/installer/nmshell.sql" "$root/resources/nullmark.ico" "$scratch"
content+=(../nmshell.wxs ../nmshell.sql ../nullmark.ico)
product=$("$facts" code "product $version" "${content[@]}")
package=$("$facts" code "package $version $SOURCE_DATE_EPOCH" "${content[@]}")

find langs -name '*.lang.txt' | sort |
  wixl-heat -p langs/ --component-group LanguageFiles --directory-ref LANGSDIR --var var.Langs --win64 |
  sed 's/dir[0-9A-F]\{32\}/LanguageFolder/' >"$scratch/langs.wxs"  # it makes that name up anew each time
G_DEBUG=fatal-warnings wixl -a x64 -o "$scratch/nmshell.msi" -D Version="$version" -D CommaVersion="${version//./,}" \
  -D ProductCode="{$product}" -D Langs=langs -D Win64=yes -D WebHost="$web_host" \
  -D Languages="$(printf ';%s' "${languages[@]}");" -D LanguageList="${languages[*]}" "$scratch/nmshell.wxs" "$scratch/langs.wxs"

queries=()
while IFS= read -r line; do
  case $line in
    "" | --*) ;;
    *) line=${line//FILEVERSION/$file_version}; queries+=(-q "${line//VERSION/$version}") ;;
  esac
done <"$scratch/nmshell.sql"
msibuild "$scratch/nmshell.msi" "${queries[@]}"
# Package code (9), made (12) and last saved (13).
when=$(date -d "@$SOURCE_DATE_EPOCH" '+%Y/%m/%d %H:%M:%S')
msiinfo export "$scratch/nmshell.msi" _SummaryInformation |
  sed "s/^9\t[^\r]*/9\t{$package}/; s|^\(1[23]\)\t[^\r]*|\1\t$when|" >"$scratch/_SummaryInformation.idt"
msibuild "$scratch/nmshell.msi" -i "$scratch/_SummaryInformation.idt"
sign_file "$scratch/nmshell.msi"
mv "$scratch/nmshell.msi" "$output"
echo "$output"
