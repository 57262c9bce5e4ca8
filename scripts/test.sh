#!/usr/bin/env bash
# Sets up, builds and runs every test: for each preset given (default: the
# release build, the debug build with AddressSanitizer and
# UndefinedBehaviorSanitizer, and the ThreadSanitizer build), configure, build
# and run the whole CTest suite; then run each fuzz target briefly and check
# formatting. Stops at the first failure.
#
#   scripts/test.sh                 # release, debug and tsan
#   scripts/test.sh debug           # one preset
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh

presets=("$@")
if ((${#presets[@]} == 0)); then
  presets=(release debug tsan)
fi

for preset in "${presets[@]}"; do
  echo "=== ${preset}: configure, build, test ==="
  cmake --workflow --preset "$preset"
done

# A short fuzz run in every test run catches parser crashes early; longer
# runs are scripts/fuzz.sh SECONDS.
scripts/fuzz.sh "${VEXLOAD_FUZZ_SECONDS:-5}"
scripts/check-format.sh
echo "All tests passed for: ${presets[*]}"
