#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (ASan + UBSan) and runs each for a
# bounded time (default 60 s each; FUZZ_SECONDS overrides):
#   markup  layout and drawing of arbitrary markup into text areas (curses)
#   layout  the layout pass alone, thousands of inputs a second
#   keys    key storms into a form dialog and its item list, at several sizes
# A crash, hang or leak fails the run and leaves the input in build-fuzz/.
# Memory must stay flat: a target whose resident size grows by more than
# FUZZ_RSS_GROWTH_MB (default 32) from halfway through its run to its end
# fails the run too.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
seconds=${FUZZ_SECONDS:-60}
growth=${FUZZ_RSS_GROWTH_MB:-32}
dir=build-fuzz
targets=(markup layout keys)

cmake -S . -B "$dir" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DTESK_FUZZ=ON -DTESK_SANITIZE=ON -DTESK_TESTS=OFF -DTESK_BENCH=OFF >/dev/null
ninja -C "$dir" "${targets[@]/%/_fuzzer}"

# AddressSanitizer keeps freed memory in a quarantine to catch use after free:
# 256 MB by default, which alone grows a fuzzer's resident size by hundreds of
# megabytes over minutes. A small quarantine still catches it and lets a real
# leak or an unbounded cache show. Options set by the caller come after.
export ASAN_OPTIONS="quarantine_size_mb=16${ASAN_OPTIONS:+:$ASAN_OPTIONS}"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for target in "${targets[@]}"; do
  corpus="$work/$target"
  log="$work/$target.log"
  mkdir -p "$corpus"
  echo "== ${target}_fuzzer for ${seconds} s"
  status=0
  (cd "$dir" && "./fuzz/${target}_fuzzer" -max_total_time="$seconds" -timeout=5 \
    -rss_limit_mb=1024 -print_final_stats=1 "$corpus" "../fuzz/corpus/$target") \
    >"$log" 2>&1 || status=$?
  grep -E 'INITED|DONE|ERROR|SUMMARY|Test unit written|stat::(average_exec_per_sec|peak_rss_mb)' \
    "$log" || true
  if [ "$status" -ne 0 ]; then
    tail -n 40 "$log"
    echo "${target}_fuzzer failed (status $status)" >&2
    exit "$status"
  fi
  # The resident size halfway through (the last report at or before half of
  # the inputs run) and at the end: a leak or an unbounded cache keeps growing
  # there, while start-up, the quarantine and the corpus settle early.
  read -r middle last < <(awk '
    /rss: [0-9]+Mb/ {
      n = $1; sub(/^#/, "", n); match($0, /rss: [0-9]+/); r = substr($0, RSTART + 5, RLENGTH - 5)
      execs[++k] = n + 0; rss[k] = r + 0
      if ($2 == "DONE") done = k
    }
    END {
      if (!done) { print "- -"; exit }
      m = 1
      for (i = 1; i < done; ++i) if (execs[i] <= execs[done] / 2) m = i
      print rss[m], rss[done]
    }' "$log")
  if [ "$middle" != "-" ]; then
    echo "${target}_fuzzer: resident size ${middle} MB halfway, ${last} MB at the end"
    if [ $((last - middle)) -gt "$growth" ]; then
      echo "${target}_fuzzer: memory grew by $((last - middle)) MB in the second half" \
        "(more than $growth MB)" >&2
      exit 1
    fi
  fi
done
