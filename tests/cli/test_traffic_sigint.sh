#!/usr/bin/env bash
# A Ctrl-C during a long publishing run stops the publishers in order, skips
# the drain delay and still prints the report; the exit status is 0.
source "$CLI_LIB"

"$VEXLOAD_BIN" -cc=2 -ptl=a -stl=a -mn=10000000 -mr=200 -ped=30 \
  >"$WORK_DIR/out" 2>"$WORK_DIR/err" </dev/null &
PID=$!
# Publishing has begun once the publish wait is announced.
for _ in $(seq 1 300); do
  grep -q "Waiting for publishing to complete" "$WORK_DIR/err" && break
  sleep 0.05
done
sleep 1
kill -INT "$PID"
wait "$PID"
STATUS=$?
OUT="$WORK_DIR/out"
expect_status 0 "SIGINT while publishing"
expect_line "$OUT" "Aggregate Msgs Sent Stats (Total # clients: 2)" "report after SIGINT"
expect_no_line "$OUT" "Allow clients to finish receiving." "drain delay skipped after SIGINT"
checks=$((checks + 1))
sent=$(sed -n 's/^Total Messages transmitted *= \([0-9]*\)$/\1/p' "$OUT")
[[ -n "$sent" && "$sent" -gt 0 && "$sent" -lt 10000000 ]] || fail "SIGINT: sent count '$sent'"
finish
