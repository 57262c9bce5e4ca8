#!/usr/bin/env bash
# Before the run the tool shows what client 1 will be called: its id in log
# lines, its user name, its VPN and its client name.
source "$CLI_LIB"

# Each run publishes a few messages so that it ends by itself.
run -cn=abc -cu=me@vpn1 -mn=1 -ptl=t -ped=0
expect_status 0 "-cn=abc -cu=me@vpn1"
expect_file <(sed -n '/^Client naming used:$/,/^$/p' "$OUT") $'Client naming used:\n\tlogging ID   = abc000001\n\tusername     = me\n\tvpn          = vpn1\n\tclient names = abc000001\n\n' "naming block"

run -mn=1 -ptl=t -ped=0
expect_file <(sed -n '/^Client naming used:$/,/^$/p' "$OUT") $'Client naming used:\n\tlogging ID   = 000001\n\tusername     = perf_client000001\n\tvpn          = \n\tclient names = sdk generated.\n\n' "default naming block"
finish
