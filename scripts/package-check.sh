#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the Debian package, installs it with apt, validates what it installed, runs the
# installed program without a display against the installed simulated server the way each
# user unit starts it, stops it with SIGTERM, and removes the package again. Needs root or
# sudo: it installs and removes the package on this machine.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh packaging
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"

step() { printf '\n== %s\n' "$*"; }
fail() { echo "FAILED: $*" >&2; exit 1; }

work=$(mktemp -d)
chmod 755 "$work"
pids=()
installed=false
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    if $installed; then $sudo apt-get remove -y -qq quorvane >/dev/null 2>&1 || true; fi
    rm -rf "$work"
}
trap cleanup EXIT

step "Package"
cmake -S . -B build-pkg -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
      -DQUORVANE_BUILD_TESTS=OFF >/dev/null
cmake --build build-pkg -j "$(nproc)" >/dev/null
rm -f build-pkg/quorvane_*.deb
(cd build-pkg && cpack >/dev/null)
deb=$(echo "$PWD"/build-pkg/quorvane_*.deb)
echo "$(basename "$deb"): $(stat -c %s "$deb") bytes, installed size $(dpkg-deb --field "$deb" Installed-Size) KiB"
depends=$(dpkg-deb --field "$deb" Depends)
echo "Depends: $depends"
grep -q "libqt6widgets6" <<<"$depends" || fail "the dependencies miss the Qt libraries"

step "Install"
$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq -o DPkg::Lock::Timeout=300 "$deb" >/dev/null
installed=true
dpkg-query -W -f='${Package} ${Version} ${db:Status-Status}\n' quorvane
dpkg-query -L quorvane | sort > "$work/files"
for f in /usr/bin/quorvane /usr/bin/quorvane-sim /usr/share/quorvane/demo.script \
         /usr/share/man/man1/quorvane.1.gz /usr/share/man/man1/quorvane-sim.1.gz \
         /usr/share/icons/hicolor/scalable/apps/org.quorvane.quorvane.svg \
         /usr/share/icons/hicolor/48x48/apps/org.quorvane.quorvane.png; do
    [ -f "$f" ] || fail "$f is not installed"
done

step "Desktop entry: desktop-file-validate"
# Hints too: one that says the entry has no main category means it lands in no menu.
hints=$(desktop-file-validate /usr/share/applications/org.quorvane.quorvane.desktop 2>&1) || fail "$hints"
[ -z "$hints" ] || fail "$hints"
echo "valid, without hints"

step "Metainfo: appstreamcli validate, offline"
appstreamcli validate --no-net /usr/share/metainfo/org.quorvane.quorvane.metainfo.xml
# The package's own tree: the metainfo together with its desktop entry and icon.
mkdir "$work/tree"
dpkg-deb -x "$deb" "$work/tree"
appstreamcli validate-tree --no-net "$work/tree/usr"

step "Manual pages"
for page in quorvane quorvane-sim; do
    warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z \
               "/usr/share/man/man1/$page.1.gz" 2>&1 >/dev/null)
    [ -z "$warnings" ] || fail "man $page: $warnings"
    echo "$page(1): $(man -l "/usr/share/man/man1/$page.1.gz" 2>/dev/null | sed -n 4p | sed 's/^ *//')"
done

step "User units: systemd-analyze verify"
units=/usr/lib/systemd/user
runtime=$work/runtime
mkdir -m 700 "$runtime"
# systemd-analyze needs a manager it can set up in a scratch space; a trivial unit tells
# whether this machine gives it one.
printf '[Service]\nExecStart=/bin/true\n' > "$work/probe.service"
if ! command -v systemd-analyze >/dev/null; then
    echo "systemd-analyze is not installed here: units not verified"
elif ! probe=$(XDG_RUNTIME_DIR=$runtime systemd-analyze --user verify "$work/probe.service" 2>&1); then
    echo "systemd-analyze cannot run here ($probe): units not verified"
else
    XDG_RUNTIME_DIR=$runtime systemd-analyze --user verify "$units/quorvane.service" \
        "$units/quorvane@tdm1.service" "$units/quorvane@obj2.service"
    echo "quorvane.service, quorvane@tdm1.service, quorvane@obj2.service: verified"
fi

step "Run the installed program as the units start it"
# As the user units would: an unprivileged user (the program's own folder /usr/bin is then
# not writable, so it works in the per-user data folder), the unit's environment, umask and
# command line, output to a file in place of the journal.
runas=()
if [ "$(id -u)" -eq 0 ]; then
    runas=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
    chown nobody:nogroup "$runtime"
fi

free_udp_port() {
    local port
    while :; do
        port=$((20000 + RANDOM % 40000))
        grep -qi ":$(printf '%04X' "$port") " /proc/net/udp /proc/net/udp6 2>/dev/null || break
    done
    echo "$port"
}

wait_for() { # <seconds> <description> <command...>
    local seconds=$1 what=$2
    shift 2
    for _ in $(seq $((seconds * 10))); do
        "$@" 2>/dev/null && return 0
        sleep 0.1
    done
    fail "no $what within $seconds s"
}

# start_sim <name>: a simulated server on a free port, playing the demo script. Sets sim_port.
start_sim() {
    local dir=$work/$1
    mkdir -p "$dir"
    quorvane-sim --port 0 --password "pw-$1" --script /usr/share/quorvane/demo.script \
        --record "$dir/sim.rec" > "$dir/sim.out" &
    pids+=($!)
    wait_for 5 "simulated server ($1)" grep -q listening "$dir/sim.out"
    sim_port=$(sed -n 's/.*listening on 127.0.0.1:\([0-9]*\)$/\1/p' "$dir/sim.out")
}

declare -A stop_signal
# start_unit <unit file> <instance> <home> <sim port> <password>: seeds the settings where the
# unit's environment puts them, then starts the unit's command line. Sets unit_pid and notes
# the signal by which the unit stops it.
start_unit() {
    local unit=$1 instance=$2 home=$3 simport=$4 pwd=$5 line config umask=0022 command="" signal=SIGTERM
    local environment=(PATH=/usr/bin:/bin HOME="$home" LANG=C.UTF-8 XDG_RUNTIME_DIR="$runtime")
    config=$home/.config
    while IFS= read -r line; do
        line=${line//%i/$instance}
        line=${line//%h/$home}
        case $line in
            Environment=XDG_CONFIG_HOME=*) config=${line#Environment=XDG_CONFIG_HOME=} ;;
        esac
        case $line in
            Environment=*) environment+=("${line#Environment=}") ;;
            UMask=*) umask=${line#UMask=} ;;
            KillSignal=*) signal=${line#KillSignal=} ;;
            ExecStart=*) command=${line#ExecStart=} ;;
        esac
    done < "$unit"
    mkdir -p "$config/quorvane"
    printf '[Settings]\nHost=127.0.0.1\nPort=%s\nPwd=%s\nLocalPort=%s\nSaveLog=True\nRunBefore=1\n' \
        "$simport" "$pwd" "$(free_udp_port)" > "$config/quorvane/quorvane12.ini"
    chown -R --reference="$runtime" "$home"
    # shellcheck disable=SC2086 # the unit's command line is split into words, as systemd does
    (umask "$umask" && exec "${runas[@]}" env -i "${environment[@]}" $command) \
        >> "$home/journal" 2>&1 &
    unit_pid=$!
    pids+=("$unit_pid")
    stop_signal[$unit_pid]=$signal
}

# check_run <name> <pid> <working folder> <settings file> <password>
check_run() {
    local name=$1 pid=$2 dir=$3 ini=$4 pwd=$5 status=0
    wait_for 30 "status sent to the server ($name)" grep -qa "rcon $pwd status" "$work/$name/sim.rec"
    wait_for 30 "status reply in the log ($name)" grep -qa "num score ping" "$dir/servlog.txt"
    # The automatic start's record follows the whole exchange, the reply read into the table.
    wait_for 30 "automatic start ($name)" grep -qa "Automatically starting TK check" "$dir/servlog.txt"
    kill -s "${stop_signal[$pid]}" "$pid"
    for _ in $(seq 300); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
    kill -0 "$pid" 2>/dev/null && fail "$name still running 30 s after SIGTERM"
    wait "$pid" || status=$?
    [ "$status" -eq 0 ] || fail "$name ended with status $status after ${stop_signal[$pid]}"
    local log
    log=$(tr -d '\r' < "$dir/servlog.txt")
    grep -q "^Shutting down and closing log.$" <<<"$log" || fail "$name: no closing record"
    grep -q "^Logging Completed on " <<<"$log" || fail "$name: no closing block"
    grep -q "^  - Closed while on [^ ].* map\.$" <<<"$log" || fail "$name: the reply's map is not in the block"
    [ "$(tail -n 1 <<<"$log")" = "$(printf -- '-%.0s' $(seq 52))" ] || fail "$name: log does not end with its block"
    grep -qxF "FileLoc=$dir/" "$ini" || fail "$name: settings not saved at the stop ($ini)"
    [ ! -e "$dir/ErrLog.txt" ] || fail "$name: $(cat "$dir/ErrLog.txt")"
    echo "$name: status exchange seen, ${stop_signal[$pid]} ended it with status 0; working folder $dir"
}

step "quorvane.service: one server"
start_sim single
start_unit "$units/quorvane.service" "" "$work/single/home" "$sim_port" pw-single
check_run single "$unit_pid" "$work/single/home/.local/share/quorvane" \
    "$work/single/home/.config/quorvane/quorvane12.ini" pw-single
echo "The log's closing block:"
tr -d '\r' < "$work/single/home/.local/share/quorvane/servlog.txt" | tail -n 14 | sed 's/^/    /'
echo "What it printed (the journal under systemd):"
sed 's/^/    /' "$work/single/home/journal"
[ -s "$work/single/home/journal" ] || echo "    (nothing)"

step "quorvane@tdm1 and quorvane@obj2: two servers at once"
home=$work/many/home
declare -A started
for instance in tdm1 obj2; do
    start_sim "$instance"
    start_unit "$units/quorvane@.service" "$instance" "$home" "$sim_port" "pw-$instance"
    started[$instance]=$unit_pid
done
for instance in tdm1 obj2; do
    check_run "$instance" "${started[$instance]}" "$home/.local/share/quorvane/$instance/quorvane" \
        "$home/.config/quorvane/$instance/quorvane/quorvane12.ini" "pw-$instance"
done
! grep -qa "rcon pw-obj2" "$work/tdm1/sim.rec" || fail "obj2 talked to the server of tdm1"

step "Remove"
$sudo env DEBIAN_FRONTEND=noninteractive apt-get remove -y -qq -o DPkg::Lock::Timeout=300 quorvane >/dev/null
installed=false
if dpkg-query -W -f='${db:Status-Status}' quorvane 2>/dev/null | grep -qv '^not-installed$'; then
    fail "quorvane is still known to dpkg: $(dpkg-query -W -f='${db:Status-Status}' quorvane)"
fi
left=()
while IFS= read -r f; do
    [ -d "$f" ] || [ ! -e "$f" ] || left+=("$f")
done < "$work/files"
[ ${#left[@]} -eq 0 ] || fail "left behind: ${left[*]}"
[ ! -e /usr/share/quorvane ] || fail "left behind: /usr/share/quorvane"
echo "removed: none of its $(grep -c . "$work/files") paths is left but shared folders"
