#!/usr/bin/env bash
# Builds the installer from a Windows build: build-msi.sh [-b BIN] [-v VERSION] [OUTPUT.msi]
# BIN is build/win64/bin, VERSION the project's, OUTPUT build/nmshell-VERSION.msi unless given. All language files
# in BIN/langs are taken. wixl and msitools come with scripts/install-packages.sh.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

bin=$root/build/win64/bin
version=$(sed -n 's/^project(nmshell VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
while getopts b:v: option; do
  case $option in
    b) bin=$(cd "$OPTARG" && pwd) ;;
    v) version=$OPTARG ;;
    *) exit 2 ;;
  esac
done
shift $((OPTIND - 1))
output=$(realpath -m "${1:-$root/build/nmshell-$version.msi}")

for file in nmshell.dll nmshell-setup.exe langs/00-en.lang.txt; do
  [ -f "$bin/$file" ] || { echo "build-msi: there is no $bin/$file" >&2; exit 1; }
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$bin"  # wixl looks for the files from here
find langs -name '*.lang.txt' | LC_ALL=C sort |
  wixl-heat -p langs/ --component-group LanguageFiles --directory-ref LANGSDIR --var var.Langs --win64 \
    >"$scratch/langs.wxs"
G_DEBUG=fatal-warnings wixl -a x64 -o "$scratch/nmshell.msi" -D Version="$version" -D CommaVersion="${version//./,}" \
  -D ProductCode='*' -D Langs=langs -D Win64=yes "$root/installer/nmshell.wxs" "$scratch/langs.wxs"

queries=()
while IFS= read -r line; do
  case $line in "" | --*) ;; *) queries+=(-q "${line//VERSION/$version}") ;; esac
done <"$root/installer/nmshell.sql"
msibuild "$scratch/nmshell.msi" "${queries[@]}"
mv "$scratch/nmshell.msi" "$output"
echo "$output"
