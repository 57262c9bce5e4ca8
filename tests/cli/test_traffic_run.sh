#!/usr/bin/env bash
# Whole runs on the embedded broker: clients connect, subscribe, publish,
# drain and disconnect, and the end-of-run report adds up. The rates are
# kept low, so that a busy machine slows the run down without making the
# broker drop messages.
source "$CLI_LIB"

BUFFERS=(-ped=1)

# expect_count FILE LABEL VALUE WHAT: the report line "LABEL VALUE".
expect_count() {
  expect_line "$1" "$2$3" "$4"
}

# Four clients, each publishing to and subscribed to the same topic, with
# order, CRC and latency measurement. No duplicates and nothing missing also
# says that each publishing client numbers a stream of its own: four
# publishers on one stream would read as duplicates and gaps.
run -cc=4 -ptl=a -stl=a -mn=8000 -mr=1000 -msa=200 -l -oc -crc "${BUFFERS[@]}"
expect_status 0 "4 clients"
expect_count "$OUT" "Total Messages transmitted                 = " 8000 "4 clients sent"
expect_count "$OUT" "Total Messages received across all clients = " 32000 "4 clients received"
expect_count "$OUT" "Messages received with discard indication  = " 0 "4 clients discards"
expect_count "$OUT" "Total Msgs Order Checked        : " 32000 "4 clients order checked"
expect_count "$OUT" "Total Out of Order Msgs         : " 0 "4 clients out of order"
expect_count "$OUT" "Total Missing Msgs              : " 0 "4 clients missing"
expect_count "$OUT" "Total Duplicate Msgs            : " 0 "4 clients duplicates"
expect_count "$OUT" "Total Messages with OK          = " 32000 "4 clients CRC"
expect_count "$OUT" "Total Messages with ERRORS      = " 0 "4 clients CRC errors"
expect_line "$OUT" "Latency Stats: " "4 clients latency"
checks=$((checks + 1))
grep -qE '^Average latency for subs       = [0-9]+ us$' "$OUT" || fail "4 clients: average latency line"
checks=$((checks + 1))
grep -qE '^Computed publish rate \(msg/sec\)            = [0-9]+\.[0-9]{2}$' "$OUT" \
  || fail "4 clients: publish rate line"
checks=$((checks + 1))
grep -qE '^CPU usage = [0-9]+\.[0-9]{3}%$' "$OUT" || fail "4 clients: CPU usage line"
expect_line "$ERR" "Waiting for publishing to complete.  Ctrl-c to exit. " "4 clients publish wait"
expect_no_line "$ERR" "Receiving messages.  Ctrl-c to exit. " "publishing run skips the receive wait"
expect_no_line "$ERR" "Error caught while running traffic" "4 clients"
expect_no_line "$ERR" "Memory error detected." "4 clients"

# Fan-out: client 1 publishes on a, the others on b; clients 1 and 2
# subscribe to a and client 3 to z, so only client 1's messages arrive, twice.
run -cc=3 "-ptl=a;b;b" -stl=a,a,z -mn=3000 -mr=1000 -tps "${BUFFERS[@]}"
expect_status 0 "fan-out"
expect_count "$OUT" "Total Messages transmitted                 = " 3000 "fan-out sent"
expect_count "$OUT" "Total Messages received across all clients = " 2000 "fan-out received"
expect_line "$OUT" "Client,Msgs,Throughput:" "fan-out per-client block"
checks=$((checks + 1))
grep -qE '^000001,1000,[0-9]+\.[0-9]{2}$' "$OUT" || fail "fan-out: client 1 line"
checks=$((checks + 1))
grep -qE '^000002,1000,[0-9]+\.[0-9]{2}$' "$OUT" || fail "fan-out: client 2 line"
checks=$((checks + 1))
grep -qE '^000003,0,0\.00$' "$OUT" || fail "fan-out: client 3 line"

# Two publisher threads per client share the client's messages.
run -cc=2 -cpt=2 -ptl=a -stl=a -mn=4000 -mr=500 "${BUFFERS[@]}"
expect_status 0 "two publishers per client"
expect_count "$OUT" "Total Messages transmitted                 = " 4000 "two publishers sent"
expect_count "$OUT" "Total Messages received across all clients = " 8000 "two publishers received"

# Vectored sends: ten messages per call, every one checked.
run -cc=1 -psv=10 -ptl=a -stl=a -mn=2000 -mr=1000 -msa=100 -crc "${BUFFERS[@]}"
expect_status 0 "send vector"
expect_count "$OUT" "Total Messages transmitted                 = " 2000 "send vector sent"
expect_count "$OUT" "Total Messages received across all clients = " 2000 "send vector received"
expect_count "$OUT" "Total Messages with OK          = " 2000 "send vector CRC"

# Without -l no latency section; with -l and nothing received, the one line
# that says so.
run -cc=1 -ptl=a -stl=a -mn=200 -mr=1000 "${BUFFERS[@]}"
expect_status 0 "no latency"
expect_no_line "$OUT" "Latency" "no latency section without -l"
expect_no_line "$OUT" "No latency samples collected" "no latency section without -l"
run -cc=1 -ptl=a -stl=z -mn=200 -mr=1000 -l "${BUFFERS[@]}"
expect_count "$OUT" "Total Messages received across all clients = " 0 "nothing received"
expect_line "$OUT" "No latency samples collected" "latency without samples"
expect_no_line "$OUT" "Latency Stats: " "latency without samples"

# Refusals of the collection reach main, which reports them without a
# report and still ends with status 0.
run -cc=1 -ptl=a -mn=10 -psv=5 -ud
expect_status 0 "send vector with user data"
expect_line "$ERR" "Userdata not supported with vectored send." "send vector with user data"
expect_no_line "$OUT" "Aggregate Msgs Sent Stats" "no report after a refusal"
finish
