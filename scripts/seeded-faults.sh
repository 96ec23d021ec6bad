#!/usr/bin/env bash
# Seeded-fault check: applies the small faults of scripts/seeded-faults.list one
# at a time to a scratch copy of this tree, rebuilds it incrementally and runs
# the tests of the fault's area; prints which faults the tests caught and the
# names of the failing tests. It never touches the checkout it is run from.
#   scripts/seeded-faults.sh [--list FILE] [--rev COMMIT] [--out FILE] [NAME...]
#     NAME...      only the faults with these names
#     --rev COMMIT the tree of that commit instead of the checkout's files
#     --out FILE   also write the result table (markdown) to FILE
# SEEDED_FAULTS_DIR is the scratch copy (default /tmp/tesk-seeded-faults-<checkout>);
# its build/ is kept between runs so a rerun builds only what changed.
set -euo pipefail
cd "$(dirname "$0")/.."
tree=$(pwd)
list=scripts/seeded-faults.list
out=
rev=
only=()
while [ $# -gt 0 ]; do
  case "$1" in
    --list) list=$2; shift 2 ;;
    --out) out=$2; shift 2 ;;
    --rev) rev=$2; shift 2 ;;
    *) only+=("$1"); shift ;;
  esac
done
list=$(cd "$(dirname "$list")" && pwd)/$(basename "$list")
[ -z "$out" ] || out=$(cd "$(dirname "$out")" && echo "$(pwd)/$(basename "$out")")
scratch=${SEEDED_FAULTS_DIR:-/tmp/tesk-seeded-faults-$(basename "$tree")}
log=$scratch/build/seeded-faults.log

# The faults: "name :: file :: sed script :: ctest regex", comments and blank lines skipped.
names=() files=() scripts=() regexes=()
while IFS= read -r line; do
  case "$line" in '#'* | '') continue ;; esac
  rest=$line
  fields=()
  for _ in 1 2 3; do
    fields+=("${rest%% :: *}")
    rest=${rest#* :: }
  done
  fields+=("$rest")
  if [ ${#only[@]} -gt 0 ] && ! printf '%s\n' "${only[@]}" | grep -qxF "${fields[0]}"; then continue; fi
  names+=("${fields[0]}") files+=("${fields[1]}") scripts+=("${fields[2]}") regexes+=("${fields[3]}")
done <"$list"
[ ${#names[@]} -gt 0 ] || { echo "no faults selected from $list" >&2; exit 2; }

# The scratch copy takes the files of the tree (tracked and new, not ignored),
# or of the commit given with --rev; only files whose content differs are
# written, with a new time, so the kept build redoes just what changed. A file
# an earlier run left with a fault in place (it was stopped) is marked changed.
mkdir -p "$scratch/build"
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
if [ -n "$rev" ]; then
  git archive "$rev" | tar -xf - -C "$stage"
else
  git ls-files -z -co --exclude-standard | xargs -0 -r sh -c 'for f; do [ -e "$f" ] && printf "%s\0" "$f"; done; true' _ |
    tar --null -T - -cf - | tar -xf - -C "$stage"
fi
(cd "$scratch" && find . -path ./build -prune -o -type f -printf '%P\0' | sort -z) >"$scratch/build/old.list"
(cd "$stage" && find . -type f -printf '%P\0' | sort -z) >"$scratch/build/new.list"
comm -z -23 "$scratch/build/old.list" "$scratch/build/new.list" | (cd "$scratch" && xargs -0 -r rm -f)
(cd "$stage" && find . -type f -printf '%P\n') | while IFS= read -r f; do
  if ! cmp -s "$stage/$f" "$scratch/$f"; then
    mkdir -p "$(dirname "$scratch/$f")"
    cp "$stage/$f" "$scratch/$f"
  fi
done
if [ -f "$scratch/build/fault.in-place" ]; then
  touch "$scratch/$(cat "$scratch/build/fault.in-place")"
  rm -f "$scratch/build/fault.in-place"
fi

cd "$scratch"
# Paths relative to the tree and the build directory's own path left out of
# the hash, so the scratch build reuses what a checkout's build (made with the
# same setting) has compiled.
export CCACHE_BASEDIR=$scratch CCACHE_NOHASHDIR=1
launcher=()
if command -v ccache >/dev/null 2>&1; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
: >"$log"
echo "scratch copy: $scratch (log: $log)"
nice -n 10 cmake -S . -B build -G Ninja -DTESK_BENCH=OFF "${launcher[@]}" >>"$log"
if ! nice -n 10 ninja -C build >>"$log" 2>&1; then
  echo "the tree without faults does not build; see $log" >&2
  exit 2
fi

# What a fault's tests need: the programs (tesk-sim depends on the console and
# the PAM module) and the executables that run the selected tests, with what
# they depend on (their probes); no other test executable is relinked.
targets_for() {
  ctest --test-dir build -R "$1" --show-only=json-v1 2>/dev/null | python3 -c '
import json, os, sys
build = os.path.abspath("build")
programs = set()
for test in json.load(sys.stdin).get("tests", []):
    command = test.get("command") or []
    if command:
        programs.add(os.path.relpath(command[0], build))
print(" ".join(["tesk-sim"] + sorted(programs)))'
}

caught=0
results=()
if [ -n "$out" ]; then
  printf '| fault | file | result |\n|---|---|---|\n' >"$out"
fi
for i in "${!names[@]}"; do
  name=${names[$i]} file=${files[$i]} regex=${regexes[$i]}
  if [ ! -f "$file" ]; then
    results+=("| $name | \`$file\` | not applied: no such file |")
    echo "NOT APPLIED $name: no file $file"
    continue
  fi
  cp -p "$file" build/fault.orig
  echo "$file" >build/fault.in-place
  sed -i -e "${scripts[$i]}" "$file"
  verdict=
  if cmp -s "$file" build/fault.orig; then
    verdict="not applied: the sed script changed nothing"
  else
    echo "== $name" >>"$log"
    read -ra targets <<<"$(targets_for "$regex")"
    if ! nice -n 10 ninja -C build "${targets[@]}" >>"$log" 2>&1; then
      verdict="not applied: does not build"
    else
      ctest_out=$(nice -n 10 ctest --test-dir build -R "$regex" -j2 --timeout 120 --no-tests=error 2>&1) && status=0 || status=$?
      echo "$ctest_out" >>"$log"
      failed=$(echo "$ctest_out" | sed -n '/The following tests FAILED:/,$p' |
        sed -n 's/^[[:space:]]*[0-9]* - \(.*\) (.*)$/\1/p' | tr '\n' ' ' | sed 's/ $//')
      if [ "$status" -ne 0 ] && [ -n "$failed" ]; then
        verdict="caught by $failed"
        caught=$((caught + 1))
      elif [ "$status" -ne 0 ]; then
        verdict="not applied: ctest found no tests for $regex"
      else
        verdict="MISSED ($regex passed)"
      fi
    fi
  fi
  # The original back with a new time, so the next build takes it.
  cat build/fault.orig >"$file"
  touch "$file"
  rm -f build/fault.in-place
  echo "$name: $verdict"
  results+=("| $name | \`$file\` | $verdict |")
  [ -z "$out" ] || echo "${results[-1]}" >>"$out"
done

echo "caught $caught of ${#names[@]} faults"
[ -z "$out" ] || printf '\nCaught %d of %d faults.\n' "$caught" "${#names[@]}" >>"$out"
