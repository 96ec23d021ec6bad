#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (ASan + UBSan) and runs each for a
# bounded time (default 60 s; FUZZ_SECONDS overrides). A crash, hang or leak
# fails the run and leaves the input in build-fuzz/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
seconds=${FUZZ_SECONDS:-60}
dir=build-fuzz
cmake -S . -B "$dir" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DTESK_FUZZ=ON -DTESK_SANITIZE=ON -DTESK_TESTS=OFF -DTESK_BENCH=OFF >/dev/null
ninja -C "$dir" markup_fuzzer
corpus=$(mktemp -d)
trap 'rm -rf "$corpus"' EXIT
(cd "$dir" && ./fuzz/markup_fuzzer -max_total_time="$seconds" -timeout=5 -print_final_stats=1 \
  "$corpus" ../fuzz/corpus/markup)
