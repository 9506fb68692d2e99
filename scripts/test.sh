#!/usr/bin/env bash
# Passes all tests: the native build under the sanitizers, the test of threads under ThreadSanitizer, the Windows build under
# Wine, a build with clang and the fuzz targets. Installs what is missing, builds what has changed: test.sh [--fast]
#
#   --fast   Only the native build and its tests, without those with the label slow.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

presets=(host-debug host-tsan win64 host-clang fuzz)
case "${1:-}" in
  '') ;;
  --fast) presets=(host-debug) ;;
  *) echo "usage: test.sh [--fast]" >&2; exit 2 ;;
esac

scripts/install-packages.sh
for preset in "${presets[@]}"; do
  [ -e "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -- --quiet
done
if [ "${1:-}" = --fast ]; then
  exec ctest --test-dir build/host-debug --output-on-failure -j 2 -L fast
fi
scripts/wine-run.sh cmd /c exit  # makes the prefix before tests run side by side

# One run over all builds, so that its closing lines count everything.
mkdir -p build/all
printf 'subdirs("%s" "%s" "%s" "%s")\n' "$PWD/build/host-debug" "$PWD/build/host-tsan/tests/threads" "$PWD/build/win64" \
  "$PWD/build/fuzz/fuzz" >build/all/CTestTestfile.cmake
ctest --test-dir build/all --output-on-failure -j 2
