#!/usr/bin/env bash
# Installs what is needed, builds, and runs every test.
#   scripts/test.sh              the normal build (build/)
#   scripts/test.sh --sanitize   AddressSanitizer + UndefinedBehaviorSanitizer (build-asan/)
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

if [ "${1:-}" = "--sanitize" ]; then
  dir=build-asan
  bash scripts/build.sh --sanitize "$dir"
  # pam_wrapper is preloaded into the console in screen tests; ASan must not
  # insist on coming first.
  export ASAN_OPTIONS=${ASAN_OPTIONS:-verify_asan_link_order=0}
  export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
else
  dir=build
  bash scripts/build.sh "$dir"
fi

# No retries: a test that fails under load is fixed in its waits or in the
# product (docs/testing.md).
status=0
ctest --test-dir "$dir" --output-on-failure --timeout 300 -j2 || status=$?
bash scripts/test-share.sh
exit "$status"
