#!/usr/bin/env bash
# Shows that a commit gives the same files wherever and whenever it is built: reproduce.sh [COMMIT]
# Builds what ships twice, in two folders with names of different length and without a compiler cache, makes a release of each, and
# compares every file. Takes some minutes, so it is no part of test.sh.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
commit=$(git -C "$root" rev-parse "${1:-HEAD}")
export SOURCE_DATE_EPOCH CCACHE_DISABLE=1
SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct "$commit")

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for folder in "$scratch/a" "$scratch/another place/with a longer name"; do
  mkdir -p "$folder"
  git -C "$root" archive "$commit" | tar -C "$folder" -xf -
  (
    cd "$folder"
    cmake --preset win64 >/dev/null
    cmake --build --preset win64 --target shipped -- --quiet
    scripts/release.sh -b build/win64/bin "$folder/release" >/dev/null
  )
done
cd "$scratch"
status=0
for file in a/release/* a/build/win64/bin/*.exe a/build/win64/bin/*.dll a/build/win64/bin/symbols/*; do
  cmp "$file" "another place/with a longer name/${file#a/}" || status=1
done
[ "$status" -ne 0 ] || { echo "The same, twice:"; sed 's/^/  /' a/release/SHA256SUMS; }
exit "$status"
