# Checks for the lab's tests, sourced by each: a failed check names what it
# expected and the test goes on; finish fails the test when any check failed
# and then shows the end of the lab's logs.

failures=0
# Loaded machines get more time (docs/testing.md, "Environment knobs").
scale=${TESK_TEST_TIMEOUT_SCALE:-1}

failed() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
  return 1
}

# check WHAT CMD...: CMD succeeds now.
check() {
  local what=$1
  shift
  if "$@" >/dev/null 2>&1; then echo "ok: $what"; else failed "$what"; fi
}

# eventually WHAT SECONDS CMD...: CMD succeeds within SECONDS, asked again and
# again (a state to wait for, never a fixed pause).
eventually() {
  local what=$1 limit=$(($2 * scale))
  local end=$((SECONDS + limit))
  shift 2
  until "$@" >/dev/null 2>&1; do
    [ "$SECONDS" -lt "$end" ] || { failed "$what (within $limit s)"; return 1; }
    sleep 0.2
  done
  echo "ok: $what"
}

finish() {
  [ "$failures" -eq 0 ] && return 0
  if [ -n "${LAB_DIR:-}" ]; then
    for file in "$LAB_DIR"/log/*.log; do
      echo "--- ${file##*/}" >&2
      tail -n 15 "$file" >&2
    done
  fi
  echo "$failures checks failed" >&2
  exit 1
}
