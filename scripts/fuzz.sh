#!/usr/bin/env bash
# Fuzzes what comes from outside: fuzz.sh [[--quick] [--runs N] | --coverage] [SECONDS] [TARGET ...]
#
#   fuzz.sh 600 stream number    SECONDS (60 unless given) a target, of all targets when none is named, two at a time or as many
#                                as there are processors. The inputs that reached something new are kept in build/fuzz/corpus
#                                and are where the next run begins.
#   fuzz.sh --runs 20000         N inputs a target, the same ones each time: it begins at the checked-in corpus. What it keeps
#                                is in build/fuzz/found until the next run of this kind. A target that has passed so and is
#                                as it was is not run again.
#   fuzz.sh --quick --runs 10000000
#                                Without the sanitizers, several times as many inputs a second: finds what breaks a target's own
#                                checks. Keeps inputs as a run by SECONDS does; the next run under the sanitizers begins with them.
#   fuzz.sh --coverage           No search: runs all inputs that are kept through a build that counts, and prints how many lines
#                                of each parser were reached, and those that were not.
#
# Fails when a target does. The input that made it is then in build/fuzz/crashes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=60
runs=
coverage=
quick=
targets=()
usage() { echo "usage: fuzz.sh [[--quick] [--runs N] | --coverage] [SECONDS] [TARGET ...]" >&2; exit 2; }
while [ $# -gt 0 ]; do
  case "$1" in
    --runs) [ $# -gt 1 ] || usage; runs=$2; shift ;;
    --coverage) coverage=yes ;;
    --quick) quick=yes ;;
    [0-9]*) seconds=$1 ;;
    -*) usage ;;
    *) targets+=("${1#fuzz_}") ;;
  esac
  shift
done

[ -z "$coverage" ] || [ -z "$quick$runs" ] || usage

preset=fuzz${quick:+-quick}${coverage:+-coverage}
scripts/install-packages.sh
[ -e "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
cmake --build "build/$preset" --target fuzz_targets -- --quiet
programs=build/$preset/fuzz
repeatable=
[ -z "$runs" ] || [ -n "$quick" ] || repeatable=yes
if [ ${#targets[@]} -eq 0 ]; then
  for file in "$programs"/fuzz_*.covers; do
    name=$(basename "$file" .covers)
    targets+=("${name#fuzz_}")
  done
fi

# Small rooms for freed memory and short traces of where memory came from: several times as many inputs a second.
export ASAN_OPTIONS=quarantine_size_mb=8:malloc_context_size=4:${ASAN_OPTIONS:-}

# The checked-in inputs of a target, and those found by runs of a given time and of a given number.
inputs() {
  find "build/fuzz/corpus/$1" "build/fuzz/found/$1" "fuzz/corpus/$1" -maxdepth 0 2>/dev/null || true
}

# What a run of a number of inputs depends on.
fingerprint() {
  cat "$programs/fuzz_$1" $(find "fuzz/$1.dict" "fuzz/corpus/$1" -type f 2>/dev/null | sort) <(echo "$runs") | sha256sum
}

fuzz_one() {
  local target=$1 log=build/fuzz/logs/$1.log result=ok last passed=build/fuzz/passed/$1
  if [ -n "$repeatable" ] && [ "$(cat "$passed" 2>/dev/null)" = "$(fingerprint "$target")" ]; then
    printf '%-16s %12s %10s %8s %9s  %s\n' "$target" "" "" "" "" "as it passed before"
    return
  fi
  local arguments=(-print_final_stats=1 -timeout=10 -artifact_prefix="build/fuzz/crashes/$target-")
  [ -e "fuzz/$target.dict" ] && arguments+=(-dict="fuzz/$target.dict")
  if [ -n "$repeatable" ]; then
    rm -rf "build/fuzz/found/$target"
    mkdir -p "build/fuzz/found/$target"
    arguments+=(-seed=1 -runs="$runs" "build/fuzz/found/$target")
    [ -d "fuzz/corpus/$target" ] && arguments+=("fuzz/corpus/$target")
  else
    mkdir -p "build/fuzz/corpus/$target"
    arguments+=($(inputs "$target"))
    if [ -n "$runs" ]; then arguments+=(-runs="$runs"); else arguments+=(-max_total_time="$seconds"); fi
  fi
  "$programs/fuzz_$target" "${arguments[@]}" >"$log" 2>&1 || result="FAILED, see $log"
  last=$(grep -E '^#[0-9]+.* cov: ' "$log" | tail -1 || true)
  printf '%-16s %12s %10s %8s %9s  %s\n' "$target" "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" \
    "$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")" "$(sed -E 's/.* cov: ([0-9]+) .*/\1/' <<<"$last")" \
    "$(sed -E 's/.* ft: ([0-9]+) .*/\1/' <<<"$last")" "$result"
  [ "$result" = ok ] || { tail -40 "$log"; return 1; }
  [ -z "$repeatable" ] || fingerprint "$target" >"$passed"
}

fuzz_all() {
  mkdir -p build/fuzz/logs build/fuzz/crashes build/fuzz/passed
  export programs seconds runs repeatable
  export -f fuzz_one inputs fingerprint
  printf '%-16s %12s %10s %8s %9s  %s\n' target inputs inputs/s edges features result
  printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -euo pipefail -c 'fuzz_one {}'
}

measure_coverage() {
  local data=build/$preset/profiles objects=() file lines reached missed line
  rm -rf "$data"
  mkdir -p "$data"
  for target in "${targets[@]}"; do
    LLVM_PROFILE_FILE="$data/$target.profraw" "$programs/fuzz_$target" -runs=0 $(inputs "$target") >"$data/log" 2>&1 ||
      { cat "$data/log"; echo "$target fails on an input that is kept" >&2; exit 1; }
    objects+=(-object "$programs/fuzz_$target")
  done
  llvm-profdata merge -o "$data/all.profdata" "$data"/*.profraw
  for target in "${targets[@]}"; do cat "$programs/fuzz_$target.covers"; done | sort -u >"$data/sources"
  llvm-cov export -format=lcov -instr-profile="$data/all.profdata" "${objects[@]:1}" |
    awk -F'[:,]' '
      /^SF:/ { file = $2; lines = reached = 0; missed = "" }
      /^DA:/ { lines++; if ($3 > 0) reached++; else missed = missed " " $2 }
      /^end_of_record/ { print file, lines, reached missed }' |
    while read -r file lines reached missed; do
      file=$(realpath --relative-to=. "$file")
      grep -qxF "$file" "$data/sources" || continue
      printf '%-48s %4d of %4d lines\n' "$file" "$reached" "$lines"
      for line in $missed; do printf '%8d: %s\n' "$line" "$(sed -n "${line}p" "$file")"; done
    done
}

if [ -n "$coverage" ]; then measure_coverage; else fuzz_all; fi
