#!/usr/bin/env bash
# Puts a release together: release.sh [-b BIN] [--sign COMMAND] [--publisher NAME] [FOLDER]
# FOLDER, build/release unless given, is emptied and gets the package, a zip with tools, policy template, documents and examples, a
# zip with the symbols, and SHA256SUMS. BIN holds a Windows build; without it, build/win64 is brought up to date from what is
# committed. COMMAND signs the file that is named behind it, in place; NAME and why the same commit gives the same files: see build-msi.sh.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/packaging.sh"
read_options "-b --sign --publisher" "$@"
folder=$(realpath -m "${output:-$root/build/release}")
cd "$root"
grep -q "^## $version\b" CHANGELOG.md || fail 1 "CHANGELOG.md says nothing about $version"

if [ -z "$bin" ]; then
  [ -z "$(git status --porcelain)" ] || fail 1 "there are changes that are not committed"
  scripts/install-packages.sh
  [ -e build/win64/build.ninja ] || cmake --preset win64 >/dev/null
  cmake --build --preset win64 --target shipped -- --quiet
  bin=$root/build/win64/bin
fi

rm -rf "$folder"
mkdir -p "$folder"
scripts/build-msi.sh -b "$bin" ${sign:+--sign "$sign"} ${publisher:+--publisher "$publisher"} "$folder/nmshell-$version.msi" >/dev/null

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
tools=$scratch/nmshell-$version-tools
mkdir -p "$tools" "$scratch/nmshell-$version-symbols"
cp "$bin/interlang.exe" "$bin/rightclick.exe" "$tools"
for program in "$tools"/*.exe; do sign_file "$program"; done
cp -r "$bin/langs" docs installer/admx CHANGELOG.md "$tools"
[ ! -d examples ] || cp -r examples "$tools"
for program in nm{shell,command,shell-actions}.dll nmshell-{setup,setupw}.exe {interlang,rightclick}.exe; do
  cp "$bin/symbols/$program.debug" "$scratch/nmshell-$version-symbols"  # not of what else was built there
done

# Names in order, the time of the commit, and no user's rights.
for name in tools symbols; do
  python3 - "$folder/nmshell-$version-$name.zip" "$scratch" "nmshell-$version-$name" <<'EOF'
import os, pathlib, sys, time, zipfile
output, root, folder = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
when = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))[:6]
with zipfile.ZipFile(output, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
    for path in sorted(path for path in (root / folder).rglob("*") if path.is_file() and "__pycache__" not in path.parts):
        entry = zipfile.ZipInfo(path.relative_to(root).as_posix(), when)
        entry.compress_type, entry.external_attr = zipfile.ZIP_DEFLATED, 0o100644 << 16
        archive.writestr(entry, path.read_bytes())
EOF
done
cd "$folder"
sha256sum -- * >"$scratch/sums"
mv "$scratch/sums" SHA256SUMS
ls -l "$folder"
