#!/usr/bin/env bash
# Passes all tests: the native build under the sanitizers, the test of threads under ThreadSanitizer, and the Windows build
# under Wine. Installs what is missing, builds what has changed: test.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh
for preset in host-debug host-tsan win64; do
  [ -e "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -- --quiet
done
scripts/wine-run.sh cmd /c exit  # makes the prefix before tests run side by side

# One run over all builds, so that its closing lines count everything.
mkdir -p build/all
printf 'subdirs("%s" "%s" "%s")\n' "$PWD/build/host-debug" "$PWD/build/host-tsan/tests/threads" "$PWD/build/win64" >build/all/CTestTestfile.cmake
ctest --test-dir build/all --output-on-failure -j 2
