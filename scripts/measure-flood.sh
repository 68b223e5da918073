#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What a flood from a stranger costs Quorvane. The program runs against the simulated server
# (150 ms away, checks every 5 s, verbose log) for a quiet window, then for a window of the
# same length while a stranger sends forged status replies to its LocalPort at a steady rate.
# For each window: the checks that reached the server, the program's CPU time and the growth
# of servlog.txt; at the end, the datagrams the program absorbed (its own count).
# Usage: scripts/measure-flood.sh [seconds per window, default 30] [datagrams a second, default 4000]
# With SERVER_ONLY=False in the environment the program takes every datagram, as before the
# sender rule, for comparison.
# Build first (scripts/test.sh or demo.sh). Needs python3 for the stranger.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
rate=${2:-4000}
work=$(mktemp -d)
sim='' app='' stranger=''
trap 'kill $sim $app $stranger 2>/dev/null || true; rm -rf "$work"' EXIT
mkdir -p "$work/config/quorvane"
printf '[Settings]\nHost=127.0.0.1\nPort=12299\nPwd=demo\nLocalPort=12298\nCheckInt=5000\nSaveLog=True\nFileLoc=%s/\nRunBefore=1\nServerOnly=%s\n' \
    "$work" "${SERVER_ONLY:-True}" > "$work/config/quorvane/quorvane12.ini"
build/tools/sim/quorvane-sim --port 12299 --password demo --delay 150 --script tools/sim/demo.script \
    --record "$work/wire.txt" >/dev/null &
sim=$!
XDG_CONFIG_HOME=$work/config QT_QPA_PLATFORM=offscreen build/src/quorvane -a 2>/dev/null &
app=$!
sleep 5 # start-up, splash and the first status exchange

ticks() { awk '{print $14 + $15}' /proc/$app/stat; }
checks() { grep -ci 'status$' "$work/wire.txt" || true; }
logsize() { stat -c %s "$work/servlog.txt"; }
hz=$(getconf CLK_TCK)

window() { # label: runs one window and prints its figures
    local t0 c0 l0
    t0=$(ticks) c0=$(checks) l0=$(logsize)
    sleep "$seconds"
    local cpu=$(( ($(ticks) - t0) * 1000 / hz ))
    printf '%-22s checks %3d   CPU %6d ms (%s %% of a core)   log +%d bytes\n' "$1" $(( $(checks) - c0 )) "$cpu" \
        "$(awk -v c="$cpu" -v s="$seconds" 'BEGIN { printf "%.2f", c / (s * 10) }')" $(( $(logsize) - l0 ))
}

window "quiet ${seconds} s:"
python3 - "$rate" "$seconds" > "$work/sent.txt" <<'EOF' &
import socket, sys, time
rate, seconds = int(sys.argv[1]), float(sys.argv[2])
forged = b"\xff\xff\xff\xff\x01print\nmap: x\n" + b"  2     0   50 evil one       0 203.0.113.99:12203   1500  9000\n" * 4 + b"\n"
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
sent, start = 0, time.monotonic()
while (now := time.monotonic() - start) < seconds:
    due = int(now * rate)
    while sent < due:
        try:
            s.sendto(forged, ("127.0.0.1", 12298))
        except OSError:
            pass
        sent += 1
    time.sleep(0.002)
print(sent)
EOF
stranger=$!
window "flood ${rate}/s ${seconds} s:"
wait $stranger
stranger=''
if ! kill -TERM $app 2>/dev/null; then
    status=0
    wait $app || status=$?
    echo "the program ended during the flood, exit status $status: $(grep -a 'AppMsg' "$work/ErrLog.txt" | tail -1)"
fi
wait $app 2>/dev/null || true
app=''
sent=$(cat "$work/sent.txt")
absorbed=$( { grep -a '^Ignored ' "$work/servlog.txt" || true; } | awk '{ n += $2 } END { print n + 0 }')
echo "stranger sent $sent datagrams; the program absorbed $absorbed ($(( absorbed / seconds ))/s)," \
     "told in $(grep -ac '^Ignored ' "$work/servlog.txt") log lines; lines of the stranger's text in the log:" \
     "$(grep -ac 'evil one' "$work/servlog.txt" || true)"
