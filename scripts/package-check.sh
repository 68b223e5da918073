#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the two Debian packages, installs the service's alone and checks that it brought no
# Qt GUI or Widgets library, validates its units and manual pages, runs the installed service
# against the installed simulated server the way each user unit starts it (notifications,
# watchdog, a reload that takes up a banned name, the orderly stop), then installs the window's
# package beside it, validates the desktop entry and the metainfo, and removes both again.
# Needs root or sudo: it installs and removes the packages on this machine.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh packaging
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"

step() { printf '\n== %s\n' "$*"; }
fail() { echo "FAILED: $*" >&2; exit 1; }
apt_get() { $sudo env DEBIAN_FRONTEND=noninteractive apt-get -y -qq -o DPkg::Lock::Timeout=300 "$@" >/dev/null; }
installed_packages() { dpkg-query -W -f='${db:Status-Status} ${Package}\n' | sed -n 's/^installed //p' | sort; }
is_installed() { [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

work=$(mktemp -d)
chmod 755 "$work"
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    for package in quorvane quorvaned; do
        if is_installed "$package"; then apt_get remove "$package" 2>/dev/null || true; fi
    done
    rm -rf "$work"
}
trap cleanup EXIT

# Only what the window needs; a server has none of it.
gui_libraries='^(libqt6gui6|libqt6widgets6|libqt6opengl6|libqt6openglwidgets6|libx11-6|libxcb1|libxkbcommon0|libwayland-client0|libgl1|libegl1|libopengl0|libfontconfig1|libfreetype6)$'

step "Packages"
cmake -S . -B build-pkg -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr -DQUORVANE_SYSTEMD=ON \
      -DQUORVANE_BUILD_TESTS=OFF >/dev/null
cmake --build build-pkg -j "$(nproc)" >/dev/null
rm -f build-pkg/quorvane_*.deb build-pkg/quorvaned_*.deb
(cd build-pkg && cpack >/dev/null)
window_deb=$(echo "$PWD"/build-pkg/quorvane_*.deb)
service_deb=$(echo "$PWD"/build-pkg/quorvaned_*.deb)
for deb in "$window_deb" "$service_deb"; do
    [ -f "$deb" ] || fail "cpack made no $deb"
    echo "$(basename "$deb"): $(stat -c %s "$deb") bytes, installed size $(dpkg-deb --field "$deb" Installed-Size) KiB"
    echo "    Depends: $(dpkg-deb --field "$deb" Depends)"
    for field in Suggests Recommends Breaks Replaces; do
        value=$(dpkg-deb --field "$deb" "$field")
        [ -z "$value" ] || echo "    $field: $value"
    done
    dpkg-deb --fsys-tarfile "$deb" | tar -t | sed -n 's|^\./|/|; /[^/]$/p' | sort > "$work/$(basename "$deb" | cut -d_ -f1).contents"
done
depends_list() { dpkg-deb --field "$1" Depends | tr ',' '\n' | sed 's/^ *//; s/ .*//'; }
depends_list "$window_deb" | grep -qx libqt6widgets6 || fail "quorvane does not depend on Qt Widgets"
service_depends=$(depends_list "$service_deb")
for library in libqt6core6 libqt6network6 libsystemd0; do
    grep -qx "$library" <<<"$service_depends" \
        || fail "quorvaned does not depend on $library (for libsystemd0: was libsystemd-dev there at the build?)"
done
! grep -Ex "$gui_libraries" <<<"$service_depends" || fail "quorvaned depends on a graphical library"
both=$(comm -12 "$work/quorvane.contents" "$work/quorvaned.contents")
[ -z "$both" ] || fail "files in both packages: $both"
expect_files() { # <package> <file...>
    local package=$1
    shift
    for f in "$@"; do grep -qxF "$f" "$work/$package.contents" || fail "$package does not hold $f"; done
}
expect_files quorvane /usr/bin/quorvane /usr/share/man/man1/quorvane.1.gz \
    /usr/share/applications/org.quorvane.quorvane.desktop /usr/share/metainfo/org.quorvane.quorvane.metainfo.xml \
    /usr/share/icons/hicolor/scalable/apps/org.quorvane.quorvane.svg \
    /usr/share/icons/hicolor/48x48/apps/org.quorvane.quorvane.png
expect_files quorvaned /usr/bin/quorvaned /usr/bin/quorvane-sim /usr/share/quorvane/demo.script \
    /usr/lib/systemd/user/quorvane.service /usr/lib/systemd/user/quorvane@.service \
    /usr/share/man/man1/quorvaned.1.gz /usr/share/man/man1/quorvane-sim.1.gz
echo "quorvane holds $(grep -c . "$work/quorvane.contents") files, quorvaned $(grep -c . "$work/quorvaned.contents"); none is in both"

step "Install quorvaned alone"
for package in quorvane quorvaned; do
    if is_installed "$package"; then
        echo "removing the $package installed before"
        apt_get remove "$package"
    fi
done
installed_packages > "$work/before"
apt_get install "$service_deb"
installed_packages > "$work/after"
dpkg-query -W -f='${Package} ${Version} ${db:Status-Status}\n' quorvaned
is_installed quorvane && fail "installing quorvaned installed quorvane"
echo "apt installed: $(comm -13 "$work/before" "$work/after" | tr '\n' ' ')"
! comm -13 "$work/before" "$work/after" | grep -Ex "$gui_libraries" || fail "a graphical library came with quorvaned"
# What it would bring to a bare server: everything its dependencies reach, installed here or not.
apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces \
    --no-enhances quorvaned 2>/dev/null | grep -v '^ ' | grep -v '^<' | sort -u > "$work/closure"
grep -qx libqt6network6 "$work/closure" || fail "the dependency closure of quorvaned looks wrong: $(tr '\n' ' ' < "$work/closure")"
! grep -Ex "$gui_libraries" "$work/closure" || fail "a graphical library is among what quorvaned depends on"
echo "what quorvaned's dependencies reach, $(grep -c . "$work/closure") packages: no Qt GUI, Widgets or display library"
linked=$(ldd /usr/bin/quorvaned)
! grep -E 'libQt6(Gui|Widgets)|libX11|libxcb|libGL' <<<"$linked" || fail "/usr/bin/quorvaned links a graphical library"
grep -q 'not found' <<<"$linked" && fail "/usr/bin/quorvaned: $(grep 'not found' <<<"$linked")"
echo "/usr/bin/quorvaned links: $(awk '/=>/ { print $1 }' <<<"$linked" | grep -E '^lib(Qt6|systemd)' | tr '\n' ' ')"

step "Manual pages of quorvaned"
check_man() {
    local page warnings
    for page in "$@"; do
        warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z \
                   "/usr/share/man/man1/$page.1.gz" 2>&1 >/dev/null)
        [ -z "$warnings" ] || fail "man $page: $warnings"
        echo "$page(1): $(MANWIDTH=200 man -l "/usr/share/man/man1/$page.1.gz" 2>/dev/null | sed -n 4p | sed 's/^ *//')"
    done
}
check_man quorvaned quorvane-sim
for section in OPTIONS SIGNALS FILES ENVIRONMENT 'EXIT STATUS'; do
    man -l /usr/share/man/man1/quorvaned.1.gz 2>/dev/null | grep -qx "$section" || fail "quorvaned(1) has no $section"
done

step "User units: systemd-analyze verify"
units=/usr/lib/systemd/user
runtime=$work/runtime
mkdir -m 700 "$runtime"
for unit in quorvane.service quorvane@.service; do
    # shellcheck disable=SC2016 # $MAINPID is systemd's, not ours
    for line in Type=notify NotifyAccess=main WatchdogSec=30 'ExecReload=/bin/kill -HUP $MAINPID' \
                RestartPreventExitStatus=78 ExecStart=/usr/bin/quorvaned Documentation=man:quorvaned\(1\); do
        grep -qxF "$line" "$units/$unit" || fail "$unit has no $line"
    done
    ! grep -q QT_QPA_PLATFORM "$units/$unit" || fail "$unit still sets a Qt platform"
done
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

# As the user units would: an unprivileged user (the program's own folder /usr/bin is then
# not writable, so it works in the per-user data folder), the unit's environment, umask and
# command line, output to a file in place of the journal, and a notification socket in place
# of the manager's. The watchdog is asked for every 2 s rather than the unit's 30 s, so that
# its keep-alives show within the run.
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

# start_notify <name>: what the service manager hears, one line a datagram's line, each behind
# the sender's process id. Sets notify_socket.
start_notify() {
    local dir=$work/$1
    notify_socket=$dir/notify
    /usr/bin/python3 - "$notify_socket" "$dir/notifications" <<'PY' &
import os, socket, struct, sys
path, log = sys.argv[1], open(sys.argv[2], "a", buffering=1)
s = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
s.bind(path)
os.chmod(path, 0o666)
s.setsockopt(socket.SOL_SOCKET, socket.SO_PASSCRED, 1)
while True:
    data, ancillary, _, _ = s.recvmsg(4096, socket.CMSG_SPACE(12))
    pid = 0
    for level, kind, value in ancillary:
        if level == socket.SOL_SOCKET and kind == socket.SCM_CREDENTIALS:
            pid = struct.unpack("iII", value[:12])[0]
    for line in data.decode("utf-8", "replace").split("\n"):
        if line:
            log.write(f"{pid} {line}\n")
PY
    pids+=($!)
    wait_for 5 "notification socket ($1)" test -S "$notify_socket"
}

declare -A stop_signal reload_command
# start_unit <unit file> <instance> <home> <sim port> <password> <name> [settings file]: seeds
# the settings where the unit's environment puts them (unless a settings file is given: "none"
# leaves it out), then starts the unit's command line. Sets unit_pid, unit_config, and notes how
# the unit stops and reloads it.
start_unit() {
    local unit=$1 instance=$2 home=$3 simport=$4 pwd=$5 name=$6 settings=${7:-} line
    local umask=0022 command="" signal=SIGTERM reload="" type=simple watchdog=""
    local environment=(PATH=/usr/bin:/bin HOME="$home" LANG=C.UTF-8 XDG_RUNTIME_DIR="$runtime")
    unit_config=$home/.config
    while IFS= read -r line; do
        line=${line//%i/$instance}
        line=${line//%h/$home}
        case $line in
            Environment=XDG_CONFIG_HOME=*) unit_config=${line#Environment=XDG_CONFIG_HOME=} ;;
        esac
        case $line in
            Environment=*) environment+=("${line#Environment=}") ;;
            UMask=*) umask=${line#UMask=} ;;
            KillSignal=*) signal=${line#KillSignal=} ;;
            ExecStart=*) command=${line#ExecStart=} ;;
            ExecReload=*) reload=${line#ExecReload=} ;;
            Type=*) type=${line#Type=} ;;
            WatchdogSec=*) watchdog=${line#WatchdogSec=} ;;
        esac
    done < "$unit"
    if [ "$type" = notify ]; then
        start_notify "$name"
        environment+=(NOTIFY_SOCKET="$notify_socket")
        [ -z "$watchdog" ] || environment+=(WATCHDOG_USEC=2000000)
    fi
    if [ -z "$settings" ]; then
        mkdir -p "$unit_config/quorvane"
        printf '[Settings]\nHost=127.0.0.1\nPort=%s\nPwd=%s\nLocalPort=%s\nCheckInt=5000\nStatusInterval=1\nSaveLog=True\nRunBefore=1\n' \
            "$simport" "$pwd" "$(free_udp_port)" > "$unit_config/quorvane/quorvane12.ini"
    fi
    chown -R --reference="$runtime" "$home"
    # shellcheck disable=SC2086 # the unit's command line is split into words, as systemd does
    (umask "$umask" && exec "${runas[@]}" env -i "${environment[@]}" $command) \
        >> "$work/$name/journal" 2>&1 &
    unit_pid=$!
    pids+=("$unit_pid")
    stop_signal[$unit_pid]=$signal
    reload_command[$unit_pid]=${reload//\$MAINPID/$unit_pid}
}

notified() { grep -q "^$1 $2" "$work/$3/notifications"; } # <pid> <message start> <name>

# check_run <name> <pid> <working folder> <settings file> <password> <journal>
check_run() {
    local name=$1 pid=$2 dir=$3 ini=$4 pwd=$5 journal=$6 status=0
    wait_for 30 "READY=1 from the main process ($name)" notified "$pid" READY=1 "$name"
    wait_for 30 "status sent to the server ($name)" grep -qa "rcon $pwd status" "$work/$name/sim.rec"
    wait_for 30 "status reply in the log ($name)" grep -qa "num score ping" "$dir/servlog.txt"
    wait_for 30 "automatic start ($name)" grep -qa "Automatically starting TK check" "$dir/servlog.txt"
    wait_for 30 "STATUS= after a check ($name)" notified "$pid" "STATUS=obj/obj_team1, [0-9]* player" "$name"
    wait_for 10 "WATCHDOG=1 ($name)" notified "$pid" WATCHDOG=1 "$name"

    # Reload in place: a name put on banned.txt by hand is kicked at the check after the
    # reload, by the same process, and not before. Ironside is the demo's first player, slot 0.
    grep -qa "clientkick 0" "$work/$name/sim.rec" && fail "$name: Ironside kicked before he was banned"
    printf 'Ironside\r\n' >> "$dir/banned.txt"
    chown --reference="$runtime" "$dir/banned.txt"
    # shellcheck disable=SC2086 # as systemd splits ExecReload=
    "${runas[@]}" ${reload_command[$pid]}
    wait_for 10 "reload line in the journal ($name)" grep -q "^<6>Reloaded" "$journal"
    wait_for 15 "kick of the banned Ironside after the reload ($name)" grep -qa "clientkick 0" "$work/$name/sim.rec"
    wait_for 5 "journal line of the kick ($name)" grep -q "^<5>Kicked Ironside" "$journal"
    kill -0 "$pid" 2>/dev/null || fail "$name ended at the reload"

    kill -s "${stop_signal[$pid]}" "$pid"
    for _ in $(seq 300); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
    kill -0 "$pid" 2>/dev/null && fail "$name still running 30 s after SIGTERM"
    wait "$pid" || status=$?
    [ "$status" -eq 0 ] || fail "$name ended with status $status after ${stop_signal[$pid]}"
    notified "$pid" STOPPING=1 "$name" || fail "$name: no STOPPING=1"
    local others
    others=$(grep -v "^$pid " "$work/$name/notifications" || true)
    [ -z "$others" ] || fail "$name: notifications from another process than the main one: $others"
    local log
    log=$(tr -d '\r' < "$dir/servlog.txt")
    grep -q "^Shutting down and closing log.$" <<<"$log" || fail "$name: no closing record"
    grep -q "^Logging Completed on " <<<"$log" || fail "$name: no closing block"
    grep -q "^  - Closed while on [^ ].* map\.$" <<<"$log" || fail "$name: the reply's map is not in the block"
    [ "$(tail -n 1 <<<"$log")" = "$(printf -- '-%.0s' $(seq 52))" ] || fail "$name: log does not end with its block"
    grep -qxF "FileLoc=$dir/" "$ini" || fail "$name: settings not saved at the stop ($ini)"
    [ ! -e "$dir/ErrLog.txt" ] || fail "$name: $(cat "$dir/ErrLog.txt")"
    # Every line the journal gets carries its priority, and none the password.
    local unprefixed
    unprefixed=$(grep -v '^<[0-7]>' "$journal" || true)
    [ -z "$unprefixed" ] || fail "$name: journal lines without a priority: $unprefixed"
    ! grep -qF "$pwd" "$journal" || fail "$name: the password is in the journal"
    echo "$name: ready, a check told, watchdog kept, reloaded (Ironside kicked after it), ${stop_signal[$pid]} ended it with status 0; working folder $dir"
}

step "quorvaned without settings"
home=$work/bare/home
mkdir -p "$home"
start_unit "$units/quorvane@.service" bare "$home" 0 "" bare none
status=0
for _ in $(seq 100); do kill -0 "$unit_pid" 2>/dev/null || break; sleep 0.1; done
wait "$unit_pid" || status=$?
[ "$status" -eq 78 ] || fail "without settings quorvaned ended with status $status, not 78"
grep -qF "$home/.config/quorvane/bare/quorvane/quorvane12.ini" "$work/bare/journal" \
    || fail "without settings quorvaned did not name the file: $(cat "$work/bare/journal")"
echo "status 78; it printed:"
sed 's/^/    /' "$work/bare/journal"

step "quorvane.service: one server"
start_sim single
start_unit "$units/quorvane.service" "" "$work/single/home" "$sim_port" pw-single single
check_run single "$unit_pid" "$work/single/home/.local/share/quorvane" \
    "$work/single/home/.config/quorvane/quorvane12.ini" pw-single "$work/single/journal"
echo "The log's closing block:"
tr -d '\r' < "$work/single/home/.local/share/quorvane/servlog.txt" | tail -n 14 | sed 's/^/    /'
echo "What it printed (the journal under systemd):"
sed 's/^/    /' "$work/single/journal"
echo "What the service manager heard:"
sed 's/^[0-9]* /    /' "$work/single/notifications" | uniq -c | sed 's/^ *\([0-9]*\) \(.*\)/\2  (x\1)/'

step "quorvane@tdm1 and quorvane@obj2: two servers at once"
home=$work/many/home
declare -A started
for instance in tdm1 obj2; do
    start_sim "$instance"
    start_unit "$units/quorvane@.service" "$instance" "$home" "$sim_port" "pw-$instance" "$instance"
    started[$instance]=$unit_pid
done
for instance in tdm1 obj2; do
    check_run "$instance" "${started[$instance]}" "$home/.local/share/quorvane/$instance/quorvane" \
        "$home/.config/quorvane/$instance/quorvane/quorvane12.ini" "pw-$instance" "$work/$instance/journal"
done
! grep -qa "rcon pw-obj2" "$work/tdm1/sim.rec" || fail "obj2 talked to the server of tdm1"

step "Install quorvane beside it"
installed_packages > "$work/before"
apt_get install "$window_deb"
installed_packages > "$work/after"
dpkg-query -W -f='${Package} ${Version} ${db:Status-Status}\n' quorvane quorvaned
echo "apt installed: $(comm -13 "$work/before" "$work/after" | tr '\n' ' ')"
ldd /usr/bin/quorvane | grep -q 'not found' && fail "/usr/bin/quorvane: $(ldd /usr/bin/quorvane | grep 'not found')"

step "Desktop entry: desktop-file-validate"
# Hints too: one that says the entry has no main category means it lands in no menu.
hints=$(desktop-file-validate /usr/share/applications/org.quorvane.quorvane.desktop 2>&1) || fail "$hints"
[ -z "$hints" ] || fail "$hints"
echo "valid, without hints"

step "Metainfo: appstreamcli validate, offline"
appstreamcli validate --no-net /usr/share/metainfo/org.quorvane.quorvane.metainfo.xml
# The package's own tree: the metainfo together with its desktop entry and icon.
mkdir "$work/tree"
dpkg-deb -x "$window_deb" "$work/tree"
appstreamcli validate-tree --no-net "$work/tree/usr"

step "Manual page of quorvane"
check_man quorvane

step "Remove"
cat "$work/quorvane.contents" "$work/quorvaned.contents" > "$work/files"
apt_get remove quorvane quorvaned
for package in quorvane quorvaned; do
    if dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qv '^not-installed$'; then
        fail "$package is still known to dpkg: $(dpkg-query -W -f='${db:Status-Status}' "$package")"
    fi
done
left=()
while IFS= read -r f; do
    [ ! -e "$f" ] || left+=("$f")
done < "$work/files"
[ ${#left[@]} -eq 0 ] || fail "left behind: ${left[*]}"
[ ! -e /usr/share/quorvane ] || fail "left behind: /usr/share/quorvane"
echo "removed: none of their $(grep -c . "$work/files") files is left"
