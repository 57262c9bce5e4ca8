#!/usr/bin/env bash
# End-to-end throughput of the tool on the embedded broker: runs vexload_c
# in a few shapes of traffic and prints one table row per run with what its
# report measured (messages sent and received, receive rate, losses).
#
#   bench/e2e.sh [--quick] [path/to/vexload_c]
#
# The binary defaults to the release build. --quick runs each shape with a
# tenth of the messages (a smoke test; its rates mean little).
set -euo pipefail
cd "$(dirname "$0")/.."

scale=1
if [[ "${1:-}" == "--quick" ]]; then
    scale=10
    shift
fi
bin=${1:-build/release/vexload/vexload_c}
if [[ ! -x "$bin" ]]; then
    echo "e2e: no binary at $bin (build it with: cmake --workflow --preset release)" >&2
    exit 2
fi

# Reads one figure out of a report: the text after "= " or ": " on the
# first line that starts with the label.
figure() {
    local label=$1 file=$2
    awk -v label="$label" 'index($0, label) == 1 {
        sub(/^[^=:]*[=:] */, ""); print $1; found = 1; exit
    } END { if (!found) print "-" }' "$file"
}

printf '%-44s %10s %10s %14s %8s %8s\n' "run" "sent" "received" "recv msg/s" "lost" "dup"
failed=0
run() {
    local name=$1
    shift
    local out
    out=$(mktemp)
    # -ped=1: one second for the last messages to arrive before the clients go down.
    # -log=error: a receiver that loses messages at full speed logs a warning line per
    # gap; the run would then measure its log writes, not its receive path. The report
    # still counts every lost message.
    if ! "$bin" -ped=1 -log=error "$@" >"$out" 2>&1; then
        failed=1
    fi
    if ! grep -q "^Aggregate Msgs Recv Stats" "$out"; then
        echo "e2e: '$name' printed no report; its output:" >&2
        tail -20 "$out" >&2
        failed=1
    fi
    printf '%-44s %10s %10s %14s %8s %8s\n' "$name" \
        "$(figure 'Total Messages transmitted' "$out")" \
        "$(figure 'Total Messages received across all clients' "$out")" \
        "$(figure 'Computed receive rate (msg/sec aggregate)' "$out")" \
        "$(figure 'Total Missing Msgs' "$out")" \
        "$(figure 'Total Duplicate Msgs' "$out")"
    rm -f "$out"
}

n=$((4000000 / scale))
run "1 -> 1, 100 B, full speed" -cc=1 -ptl=a -stl=a -msa=100 -mr=0 -mn=$n
run "1 -> 1, 100 B, full speed, latency + order" -cc=1 -ptl=a -stl=a -msa=100 -mr=0 -mn=$n -l -oc
run "1 -> 4, 100 B, full speed (+3 pubs to b)" -cc=4 -ptl="a;b;b;b" -stl=a -msa=100 -mr=0 \
    -mn=$((n / 2))
run "10 clients publishing, 10 -> 10 each" -cc=10 -ptl=a -stl=a -msa=100 -mr=0 -mn=$((n / 10))
exit $failed
