#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs, builds and starts Quorvane against the bundled simulated server, with
# players coming and going. Quorvane gets a settings folder of its own under
# build/demo, so the demo never touches your real settings.
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
SaveLog=True
FileLoc=$demo/
RunBefore=1
intAnnouce=1
lngAnnounce=1
MsgRandom=False
INI
# One announcement a minute, in turn, with live values filled in.
printf '%s\r\n' \
    'Welcome to %map%: %players% players on now, %totalplayers% since %starttime%.' \
    'Pings above %pinglimit% ms for %pingtime% seconds are kicked. Average ping: %avgping% ms.' \
    'Quorvane has run %checks% checks in %uptime%.' > "$demo/servmsg.txt"

build/tools/sim/quorvane-sim --port 12203 --password demo --script tools/sim/demo.script &
sim=$!
trap 'kill $sim 2>/dev/null' EXIT

display=()
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "No display found: running under Xvfb (xvfb-run)." >&2
    display=(xvfb-run -a)
fi
XDG_CONFIG_HOME=$demo/config XDG_DATA_HOME=$demo/data "${display[@]}" build/src/quorvane -a
