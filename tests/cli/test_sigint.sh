#!/usr/bin/env bash
# A Ctrl-C during the run asks for an orderly end: the run goes on to a clean
# exit with status 0 instead of dying by the signal.
source "$CLI_LIB"

# Waits until the process has its SIGINT handler (bit 1 of SigCgt).
wait_for_handler() {
  local caught
  for _ in $(seq 1 200); do
    caught=$(awk '/^SigCgt:/ {print $2}' "/proc/$PID/status" 2>/dev/null)
    if [[ -n "$caught" ]] && (((16#$caught >> 1) & 1)); then return 0; fi
    sleep 0.01
  done
  return 1
}

"$VEXLOAD_BIN" >"$WORK_DIR/out" 2>"$WORK_DIR/err" </dev/null &
PID=$!
checks=$((checks + 1))
wait_for_handler || fail "no SIGINT handler installed"
kill -INT "$PID"
wait "$PID"
STATUS=$?
expect_status 0 "SIGINT during the run"
checks=$((checks + 1))
grep -q '^CPU Speed calculated (Hz): [0-9]' "$WORK_DIR/out" || fail "the run did not go on after SIGINT"
finish
