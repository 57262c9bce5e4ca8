#!/usr/bin/env bash
# The command line as the user meets it: help, unknown words and faults all
# end the tool before it starts anything, with status 255.
source "$CLI_LIB"

# Until the entry point parses its options, there is nothing to check here.
run -h
if [[ "$STATUS" == 0 && ! -s "$OUT" ]]; then
  echo "SKIP: $VEXLOAD_BIN does not parse its options yet"
  exit 77
fi

for word in -h "-?"; do
  run -cc=2 "$word" -nosuch
  expect_status 255 "$word"
  expect_line "$OUT" "vexload_c [options] " "$word"
  expect_line "$OUT" "  General Flags:" "$word"
  expect_file "$ERR" "" "$word writes no error"
done
run -hm
expect_status 255 "-hm"
expect_line "$OUT" "  Advanced Options " "-hm"
run -he
expect_status 255 "-he"
expect_line "$OUT" "  CLI Examples (for basic options see -h | -?) " "-he"

for word in -nosuch -LP=1 -Cc=2; do
  run -cc=2 "$word"
  expect_status 255 "$word"
  expect_file "$ERR" "ERROR: Unknown option '$word'"$'\n\n'"type vexload_c -h for the option list"$'\n' "$word"
done

run -v stray
expect_status 255 "stray word"
expect_line "$ERR" "ERROR: Parameters must start with -" "stray word"
expect_line "$OUT" "vexload_c [options] " "stray word prints the help"

run -psv=51 -rci=0
expect_status 255 "-psv=51"
expect_file "$ERR" $'ERROR: Invalid send vector size. (0..50) is valid: 51\n\n' "-psv=51"

# A fault of the cross-checks wins over "-v".
run -v -psv=5 -rmo
expect_status 255 "-psv with -rmo"
expect_file "$ERR" $'ERROR: Cannot use publish send vectors with randomization. \nUse vexload_c -h to get all the options\n' "-psv with -rmo"
finish
