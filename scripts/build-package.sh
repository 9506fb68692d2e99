#!/usr/bin/env bash
# Builds the package that puts the extension on the first level of Windows 11's menu:
#   build-package.sh [-v VERSION] [--publisher NAME] [--sign COMMAND] [OUTPUT.msix]
# VERSION is the project's, OUTPUT build/nmcommand.msix unless given. NAME is the subject of the certificate that signs it, to the letter
# (CN=QuietOwl unless given): Windows registers no other. COMMAND is called with the name of the file behind it and signs it in place.
# The package holds no program: it is registered with the folder of nmcommand.dll (docs/deployment.md). The same sources give the
# same bytes.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/packaging.sh"

read_options "-v --publisher --sign" "$@"
check_version 65535 65535 65535
class=$(sed -n 's/.*kCommandClassId = u"{\([0-9A-F-]*\)}".*/\1/p' "$root/comserver/identifiers.h")
[ -n "$class" ] || fail 1 "the class identifier cannot be found"
output=$(realpath -m "${output:-$root/build/nmcommand.msix}")
mkdir -p "$(dirname "$output")"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$root/installer/package/make_package.py" --version "$version.0" --publisher "${publisher:-CN=QuietOwl}" --class-id "$class" \
  --logos "$root/resources/logos" "$scratch/nmcommand.msix"
sign_file "$scratch/nmcommand.msix"
mv "$scratch/nmcommand.msix" "$output"
echo "$output"
