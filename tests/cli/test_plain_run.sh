#!/usr/bin/env bash
# A short run starts the library, prints the CPU mask and the measured tick
# rate, ends cleanly with status 0 and reports no pool leak. (Without
# anything to publish a run waits for Ctrl-C, so the run publishes a few
# messages.)
source "$CLI_LIB"

run -mn=10 -ptl=t -ped=0
expect_status 0 "plain run"
checks=$((checks + 1))
grep -qE '^CPU mask currently set to: 0x[0-9a-f]{4,}\.  To modify use linux cmd: taskset$' "$OUT" \
  || fail "plain run: CPU mask line"
checks=$((checks + 1))
speed=$(sed -n 's/^CPU Speed calculated (Hz): \([0-9]*\)$/\1/p' "$OUT")
[[ -n "$speed" && "$speed" -gt 1000000 ]] || fail "plain run: CPU speed line '$speed'"
expect_no_line "$ERR" "Memory error detected." "plain run"
expect_no_line "$OUT" "Error in clock." "plain run"

run -badoption
expect_status 255 "unknown option"
expect_line "$ERR" "ERROR: Unknown option '-badoption'" "unknown option"
finish
