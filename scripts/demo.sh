#!/usr/bin/env bash
# Sets up, builds the release binary and runs a demonstration on the broker
# embedded in the process: four clients publish 400000 messages of 200 bytes
# at 50000 messages per second each on topic "a", all four subscribe to it,
# and the report shows what arrived, in what order, intact or not, and how
# late. Arguments given replace the demonstration's options.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vexload_c

if [[ $# -eq 0 ]]; then
    set -- -cc=4 -ptl=a -stl=a -mn=400000 -mr=50000 -msa=200 -l -oc -crc
fi
echo "=== build/release/vexload/vexload_c $* ==="
exec build/release/vexload/vexload_c "$@"
