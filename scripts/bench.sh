#!/usr/bin/env bash
# Compares the foundation's conversions and the reading of language files with well-known libraries, in one run on one
# machine: bench.sh [OUTPUT.json]. Installs what is missing (development packages, linked into nothing that ships), builds
# the preset host-release, and prints a table of ratios. What its rows mean: docs/performance.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh libicu-dev libssl-dev libglib2.0-dev pkg-config
cmake --preset host-release >/dev/null  # finds what has been installed since
cmake --build --preset host-release --target conversion_bench catalogue_bench -- --quiet
exec python3 scripts/bench-table.py "${1:-build/bench.json}" build/host-release/bench/conversion_bench \
  build/host-release/bench/catalogue_bench
