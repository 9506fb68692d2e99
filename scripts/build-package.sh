#!/usr/bin/env bash
# Builds the package that puts the extension on the first level of Windows 11's menu:
#   build-package.sh [-v VERSION] [--publisher NAME] [--sign COMMAND] [OUTPUT.msix]
# VERSION is the project's, OUTPUT build/nmcommand.msix unless given. NAME is the subject of the certificate that signs it, to the letter
# (CN=QuietOwl unless given): Windows registers no other. COMMAND is called with the name of the file behind it and signs it in place.
# The package holds no program: it is registered with the folder of nmcommand.dll (docs/deployment.md). The same sources give the
# same bytes; SOURCE_DATE_EPOCH is the time that they carry, that of the last commit unless set.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

fail() { echo "build-package: $2" >&2; exit "$1"; }

version=$(sed -n 's/^project(nmshell VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
publisher=CN=QuietOwl
sign=
output=
while [ $# -gt 0 ]; do
  case $1 in
    -v | --publisher | --sign) [ $# -gt 1 ] || fail 2 "$1 needs a value" ;;&
    -v) version=$2; shift 2 ;;
    --publisher) publisher=$2; shift 2 ;;
    --sign) sign=$2; shift 2 ;;
    -*) fail 2 "there is no option $1" ;;
    *) [ -z "$output" ] || fail 2 "one output, please: $1"; output=$1; shift ;;
  esac
done
number='(0|[1-9][0-9]{0,4})'
[[ $version =~ ^$number\.$number\.$number$ ]] && [ "${BASH_REMATCH[1]}" -le 65535 ] && [ "${BASH_REMATCH[2]}" -le 65535 ] &&
  [ "${BASH_REMATCH[3]}" -le 65535 ] || fail 2 "the version must be three numbers, at most 65535 each: $version"
class=$(sed -n 's/.*kCommandClassId = u"{\([0-9A-F-]*\)}".*/\1/p' "$root/comserver/identifiers.h")
[ -n "$class" ] || fail 1 "the class identifier cannot be found"
output=$(realpath -m "${output:-$root/build/nmcommand.msix}")
mkdir -p "$(dirname "$output")"

export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(git -C "$root" log -1 --format=%ct 2>/dev/null || date +%s)}"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$root/installer/package/make_package.py" --version "$version.0" --publisher "$publisher" --class-id "$class" \
  --logos "$root/resources/logos" "$scratch/nmcommand.msix"
[ -z "$sign" ] || bash -c "$sign \"\$1\"" sign "$scratch/nmcommand.msix" >&2 || fail 1 "not signed: $output"
mv "$scratch/nmcommand.msix" "$output"
echo "$output"
