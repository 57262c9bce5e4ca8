#!/usr/bin/env bash
# Sets up, builds the release binary and runs a demonstration run on the
# embedded broker inside the process. Extra arguments go to vexload_c.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vexload_c

echo "=== build/release/vexload/vexload_c $* ==="
exec build/release/vexload/vexload_c "$@"
