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
INI

build/tools/sim/quorvane-sim --port 12203 --password demo --script tools/sim/demo.script &
sim=$!
trap 'kill $sim 2>/dev/null' EXIT

display=()
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "No display found: running under Xvfb (xvfb-run)." >&2
    display=(xvfb-run -a)
fi
XDG_CONFIG_HOME=$demo/config XDG_DATA_HOME=$demo/data "${display[@]}" build/src/quorvane -a
