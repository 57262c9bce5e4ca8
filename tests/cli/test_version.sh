#!/usr/bin/env bash
# "-v" prints the version block of the tool and the library and ends with 1.
source "$CLI_LIB"

for word in -v -V; do
  run "$word"
  expect_status 1 "$word"
  expect_line "$OUT" "vexload Version Information: " "$word"
  expect_line "$OUT" "Dependency Build Information:" "$word"
  expect_line "$OUT" "zorClient Version Information:" "$word"
  expect_line "$OUT" "==================================================" "$word"
  checks=$((checks + 1))
  grep -qE $'^\tVersion      : [0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+$' "$OUT" || fail "$word: tool version line"
  checks=$((checks + 1))
  [[ $(grep -c $'^\tBuild Date   : ' "$OUT") == 2 ]] || fail "$word: two build date lines"
  checks=$((checks + 1))
  grep -q $'^\tBuild Variant: .' "$OUT" || fail "$word: library build variant"
  expect_no_line "$OUT" "CPU Speed calculated" "$word stops before the run"
done
finish
