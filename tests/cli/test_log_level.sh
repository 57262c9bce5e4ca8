#!/usr/bin/env bash
# "-log=" takes the six level words in any case; any other word ends the
# process with status 1 and two lines on standard error.
source "$CLI_LIB"

run -log=loud
expect_status 1 "-log=loud"
expect_file "$ERR" $'ERROR: Unrecognized parameter for -log: loud\nValid values are (debug, info, warning, notice, error, critical)\n' "-log=loud"
expect_no_line "$OUT" "CPU mask" "-log=loud stops before the run"

run -v -log=Debug
expect_status 1 "-log=Debug with -v"
expect_line "$OUT" "Logging initialized to Debug (7)" "-log=Debug"

run -v -log=CRITICAL
expect_line "$OUT" "Logging initialized to CRITICAL (2)" "-log=CRITICAL"

# The library log goes to the file of -logf=; at debug level the start of the
# tool's threads is logged there, not on standard error.
logfile="$WORK_DIR/lib.log"
run -v -log=debug "-logf=$logfile"
checks=$((checks + 1))
[[ -f "$logfile" ]] || fail "-logf= did not create $logfile"
finish
