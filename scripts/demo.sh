#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs, builds and starts Quorvane against the bundled simulated server, with
# players coming and going and every policy given something to do. Quorvane gets a
# settings and working folder of its own under build/demo, so the demo never touches
# your real settings; its lists are seeded afresh at every run.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$(nproc)" --target quorvane quorvane-sim

demo=$PWD/build/demo
mkdir -p "$demo/config/quorvane" "$demo/data"
cat > "$demo/config/quorvane/quorvane12.ini" <<INI
[Settings]
Host=127.0.0.1
Port=12203
Pwd=demo
LocalPort=12247
CheckInt=5000
StatusInterval=1
SaveLog=True
FileLoc=$demo/
RunBefore=1
KickTK=True
TKLimit=-3
NameCheck=True
MaxPing=400
PingPasses=3
QPort=True
QPortMin=1000
QPortMax=65535
Rate=True
RateMin=2500
RateMax=25000
Ban=True
BanFor=100
BanType=3
intAnnouce=1
lngAnnounce=1
MsgRandom=False
INI

# The lists, one entry a line, CR LF as the program writes them.
list() { local file=$1; shift; printf '%s\r\n' "$@" > "$demo/$file"; }
list banned.txt Griefer
list bannedIP.txt 198.51.100.66
list badnames.txt cheat
list immuneIP.txt 192.0.2.18
list highping.txt "%name%, your ping stayed above %pinglimit% ms for %pingtime% s. Come back on a better line."
# One announcement a minute, in turn, with live values filled in.
list servmsg.txt "Welcome to %serverip%:%serverport%, on %map% for %uptime%." \
    "%players% players on now, %totalplayers% since %starttime%. Average ping: %avgping% ms." \
    "Pings above %pinglimit% ms for %pingtime% seconds are kicked. %checks% checks so far."
rm -f "$demo/ReasonBanned.txt"

cat <<'GUIDE'
The demo server's script (tools/sim/demo.script), with a check every 5 seconds:
  ~15 s   Griefer, a banned name: kicked, and his address banned too
  ~20 s   Flooder, rate 90000 above the permitted 25000: kicked and banned
  ~25 s   Spammer, from a banned address: kicked
  ~30 s   xXCheaterXx, a bad word in the name: kicked and banned
  ~45 s   a second "kestrel" is warned at every check, and kicked after a minute
  ~50 s   Quillon, three checks above 400 ms: kicked (a high ping is never banned)
  ~60 s   Gr1efer, Griefer again from his banned address: kicked
  ~80 s   Tarn lags, but his address is immune: "Immune (Tarn / high ping)"
  ~90 s   Mossfoot's score falls to -4: kicked for TKing
  ~140 s  the Red Baron takes Ironside's name: kicked at once, his address banned
Every minute one of the three announcements goes out in turn, with its figures filled in.
The lists, servlog.txt and ReasonBanned.txt are in build/demo/.
GUIDE

build/tools/sim/quorvane-sim --port 12203 --password demo --script tools/sim/demo.script &
sim=$!
trap 'kill $sim 2>/dev/null' EXIT

display=()
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "No display found: running under Xvfb (xvfb-run)." >&2
    display=(xvfb-run -a)
fi
XDG_CONFIG_HOME=$demo/config XDG_DATA_HOME=$demo/data "${display[@]}" build/src/quorvane -a
