#!/usr/bin/env bash
# Checks that clang-format would change nothing: check-format.sh. Reads only what was changed since it last passed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

passed=build/format-passed  # made when it last did
mkdir -p build
touch "$passed.new"
[ .clang-format -nt "$passed" ] && rm -f "$passed"
changed=()
while IFS= read -r -d '' file; do
  [ "$file" -nt "$passed" ] && changed+=("$file")
done < <(git ls-files -z --cached --others --exclude-standard -- '*.cpp' '*.h')
[ ${#changed[@]} -eq 0 ] || printf '%s\0' "${changed[@]}" | xargs -0 -n 20 -P 2 clang-format-14 --dry-run -Werror
mv "$passed.new" "$passed"
