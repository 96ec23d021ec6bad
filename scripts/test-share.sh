#!/usr/bin/env bash
# Prints the lines of tests against the lines of code and their ratio: non-blank
# lines of .cpp, .h, .c and .py files that are not // comment lines, tests/
# against the production folders (bench/ and fuzz/ count for neither).
set -euo pipefail
cd "$(dirname "$0")/.."
count() {
  find "$@" -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.c' -o -name '*.py' \) -print0 2>/dev/null |
    xargs -0 -r cat | grep -v '^[[:space:]]*$' | grep -cv '^[[:space:]]*//' || true
}
production=()
for d in admin app host hostctl linuxhost network platform recovery session sim simhost store ui; do
  [ -d "$d" ] && production+=("$d")
done
tests=$(count tests)
code=$(count "${production[@]}")
awk -v t="$tests" -v c="$code" 'BEGIN { printf "test lines %d, code lines %d, ratio %.2f\n", t, c, (c ? t / c : 0) }'
