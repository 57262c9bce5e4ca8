# Helpers for command-line tests. Each test script sources this file, runs
# the binary in $VEXLOAD_BIN and compares what it printed and its status.
set -uo pipefail

: "${VEXLOAD_BIN:?VEXLOAD_BIN must name the vexload_c binary}"
WORK_DIR=$(mktemp -d)
trap 'rm -rf "$WORK_DIR"' EXIT
failures=0
checks=0

# run ARGS...: runs the tool; sets OUT, ERR (file paths) and STATUS.
run() {
  OUT="$WORK_DIR/out"
  ERR="$WORK_DIR/err"
  "$VEXLOAD_BIN" "$@" >"$OUT" 2>"$ERR" </dev/null
  STATUS=$?
}

fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}

expect_status() {
  checks=$((checks + 1))
  [[ "$STATUS" == "$1" ]] || fail "$2: exit status $STATUS, expected $1"
}

# expect_line FILE TEXT WHAT: FILE holds a line equal to TEXT.
expect_line() {
  checks=$((checks + 1))
  grep -qxF -- "$2" "$1" || { fail "$3: no line '$2' in:"; sed 's/^/    | /' "$1" >&2; }
}

# expect_no_line FILE TEXT WHAT
expect_no_line() {
  checks=$((checks + 1))
  if grep -qF -- "$2" "$1"; then fail "$3: unexpected '$2'"; fi
}

# expect_file FILE EXPECTED_TEXT WHAT: FILE is exactly EXPECTED_TEXT.
expect_file() {
  checks=$((checks + 1))
  if ! diff -u <(printf '%s' "$2") "$1" >"$WORK_DIR/diff"; then
    fail "$3: output differs:"
    cat "$WORK_DIR/diff" >&2
  fi
}

finish() {
  local passed=$((checks - failures))
  echo "$passed passed, $failures failed"
  ((failures == 0))
}
