#!/usr/bin/env bash
# Compares the foundation's conversions and the reading of language files with well-known libraries, and the right-click of
# the built DLL under Wine with a handler of bare platform calls, in one run on one machine: bench.sh [OUTPUT.json].
# Installs what is missing (development packages, linked into nothing that ships), builds the presets host-release and
# win64, and prints tables of ratios. What their rows mean: docs/performance.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
output=${1:-build/bench.json}

scripts/install-packages.sh libicu-dev libssl-dev libglib2.0-dev pkg-config
cmake --preset host-release >/dev/null  # finds what has been installed since
cmake --build --preset host-release --target conversion_bench catalogue_bench -- --quiet
cmake --preset win64 >/dev/null
cmake --build --preset win64 --target nmshell langs bare_handler right_click_bench -- --quiet
python3 scripts/bench-table.py "$output" build/host-release/bench/{conversion,catalogue}_bench
echo
python3 bench/right_click_bench.py "$output"
