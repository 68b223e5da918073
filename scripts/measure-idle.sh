#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# CPU time used by Quorvane while Running against the simulated server, over a wall-clock
# window (default 60 s), with checks every 5 s. Build first (scripts/test.sh or demo.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
work=$(mktemp -d)
trap 'kill $sim $app 2>/dev/null; rm -rf "$work"' EXIT
mkdir -p "$work/config/quorvane"
printf '[Settings]\nHost=127.0.0.1\nPort=12299\nPwd=demo\nLocalPort=12298\nCheckInt=5000\nFileLoc=%s/\nRunBefore=1\n' \
    "$work" > "$work/config/quorvane/quorvane12.ini"
build/tools/sim/quorvane-sim --port 12299 --password demo --script tools/sim/demo.script >/dev/null &
sim=$!
XDG_CONFIG_HOME=$work/config QT_QPA_PLATFORM=offscreen build/src/quorvane -a 2>/dev/null &
app=$!
sleep 5 # start-up, splash and the first status exchange
ticks() { awk '{print $14 + $15}' /proc/$app/stat; }
before=$(ticks)
sleep "$seconds"
after=$(ticks)
hz=$(getconf CLK_TCK)
echo "CPU time over ${seconds} s while Running: $(( (after - before) * 1000 / hz )) ms"
