#!/usr/bin/env bash
# Configures and builds the libFuzzer targets (preset "fuzz", clang), then
# runs each for the given number of seconds (default 10).
#
#   scripts/fuzz.sh            10 seconds per target
#   scripts/fuzz.sh 3600       an hour per target
#
# Each target keeps what it learnt in fuzz/corpus-<target>/ (not versioned)
# and starts from the seeds in fuzz/seeds/<target>/. A crash, leak or time-out
# leaves its input as fuzz/crash-*, fuzz/leak-* or fuzz/timeout-*; replay it
# with build/fuzz/fuzz/<target> <file>. Extra libFuzzer flags can be passed
# in FUZZ_FLAGS, e.g. FUZZ_FLAGS="-jobs=2 -workers=2".
set -euo pipefail

seconds=${1:-10}
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

# The option words make the fuzzer's dictionary, so that it reaches the
# options instead of guessing their spelling.
dict="$root/build/fuzz/options.dict"
grep -ho 'Opt("-[^"]*"' common/CliOptionTable*.cpp | sed 's/^[a-zA-Z]*Opt(//' | sort -u >"$dict"

status=0
for target in build/fuzz/fuzz/*_fuzz; do
  name=$(basename "$target")
  corpus="$root/fuzz/corpus-$name"
  mkdir -p "$corpus"
  seeds=()
  [[ -d "fuzz/seeds/$name" ]] && seeds=("$root/fuzz/seeds/$name")
  echo "== $name for ${seconds}s"
  # Paths are absolute: the target works in a temporary directory of its
  # own. -close_fd_mask=2 silences the fault texts of the parser; libFuzzer and
  # the sanitizers still report on their own descriptor.
  # shellcheck disable=SC2086
  "$target" -max_total_time="$seconds" -max_len=512 -timeout=10 -rss_limit_mb=2048 \
    -close_fd_mask=2 -dict="$dict" -artifact_prefix="$root/fuzz/" ${FUZZ_FLAGS:-} \
    "$corpus" "${seeds[@]}" || status=$?
done
exit "$status"
