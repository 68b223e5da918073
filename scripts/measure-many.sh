#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What many services cost together: N instances of quorvaned, each against a simulated server
# of its own with 64 players on loopback, a check every 5 s that reads the full table
# (StatusInterval=1), the activity log on. After all
# have started and a warm-up, over a window of wall time (default 60 s): the resident memory of
# each instance (VmRSS, its peak VmHWM, and PSS, which shares the libraries' pages among the
# instances that map them) and the CPU time of all of them together, from /proc/PID/stat.
# Then what the resident memory of the first instance is made of, mapping by mapping.
# Usage: scripts/measure-many.sh [N, default 10] [seconds, default 60]
# Build first (scripts/test.sh); QUORVANED and QUORVANE_SIM name other binaries, such as the
# installed /usr/bin/quorvaned and /usr/bin/quorvane-sim.
set -euo pipefail
cd "$(dirname "$0")/.."
count=${1:-10}
seconds=${2:-60}
quorvaned=${QUORVANED:-build/src/quorvaned}
sim=${QUORVANE_SIM:-build/tools/sim/quorvane-sim}
if [ ! -x "$quorvaned" ] || [ ! -x "$sim" ]; then
    echo "build first: $quorvaned, $sim" >&2
    exit 1
fi

work=$(mktemp -d)
pids=()
services=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# 64 players from the start, on a full server; every 5 s eight of them score and their pings
# move, and every 30 s one leaves and another joins, so that each check has changes to merge.
{
    echo "0 map obj/obj_team1"
    for i in $(seq 0 63); do
        printf '0 join "Player%02d" ping=%d ip=10.0.%d.%d port=27960 qport=%d rate=25000\n' \
            "$i" $((30 + i * 2)) $((i / 16)) $((i % 16 + 10)) $((1000 + i * 37))
    done
    for t in $(seq 5 5 3600); do
        for k in $(seq 0 7); do
            i=$(( (t * 8 / 5 + k) % 64 ))
            printf '%d score "Player%02d" %d\n' "$t" "$i" $(( (t / 5 + k) % 40 ))
            printf '%d ping "Player%02d" %d\n' "$t" "$i" $((30 + (t + i * 7) % 150))
        done
        if [ $((t % 30)) -eq 0 ]; then
            i=$(( t / 30 % 64 ))
            printf '%d leave "Player%02d"\n%d join "Player%02d" ping=60 ip=10.1.%d.%d port=27960 qport=%d rate=25000\n' \
                "$t" "$i" "$((t + 1))" "$i" $((t / 256 % 256)) $((t % 256)) $((2000 + t))
        fi
    done
} > "$work/full.script"

free_udp_port() {
    local port
    while :; do
        port=$((20000 + RANDOM % 40000))
        grep -qi ":$(printf '%04X' "$port") " /proc/net/udp /proc/net/udp6 2>/dev/null && continue
        grep -qx "$port" "$work/ports" 2>/dev/null && continue
        echo "$port" >> "$work/ports"
        echo "$port"
        return
    done
}

echo "Starting $count simulated servers and $count services ($quorvaned)"
for n in $(seq "$count"); do
    dir=$work/$n
    mkdir -p "$dir/config/quorvane" "$dir/data"
    "$sim" --port 0 --password "pw$n" --script "$work/full.script" > "$dir/sim.out" 2>&1 &
    pids+=($!)
    for _ in $(seq 50); do grep -qs listening "$dir/sim.out" && break; sleep 0.1; done
    port=$(sed -n 's/.*listening on 127.0.0.1:\([0-9]*\)$/\1/p' "$dir/sim.out")
    [ -n "$port" ] || { echo "simulated server $n did not start: $(cat "$dir/sim.out")" >&2; exit 1; }
    printf '[Settings]\nHost=127.0.0.1\nPort=%s\nPwd=pw%s\nLocalPort=%s\nCheckInt=5000\nStatusInterval=1\nSaveLog=True\nRunBefore=1\nFileLoc=%s/\n' \
        "$port" "$n" "$(free_udp_port)" "$dir" > "$dir/config/quorvane/quorvane12.ini"
    XDG_CONFIG_HOME=$dir/config XDG_DATA_HOME=$dir/data "$quorvaned" > "$dir/journal" 2>&1 &
    pids+=($!)
    services+=($!)
done

# Every instance has read a full table before the window opens.
for n in $(seq "$count"); do
    for _ in $(seq 300); do
        grep -qa "Automatically starting TK check" "$work/$n/servlog.txt" 2>/dev/null && break
        sleep 0.1
    done
    grep -qa "Automatically starting TK check" "$work/$n/servlog.txt" \
        || { echo "instance $n did not start: $(cat "$work/$n/journal")" >&2; exit 1; }
done
sleep 10 # a warm-up: a few checks each

ticks() { local total=0 pid; for pid in "$@"; do total=$((total + $(awk '{ print $14 + $15 }' "/proc/$pid/stat"))); done; echo "$total"; }
checks() { cat "$work"/*/servlog.txt | grep -ac "num score ping" || true; }
sims=()
for pid in "${pids[@]}"; do [[ " ${services[*]} " == *" $pid "* ]] || sims+=("$pid"); done

echo "Measuring over $seconds s"
t0=$(ticks "${services[@]}") s0=$(ticks "${sims[@]}") c0=$(checks) w0=$(date +%s.%N)
sleep "$seconds"
t1=$(ticks "${services[@]}") s1=$(ticks "${sims[@]}") c1=$(checks) w1=$(date +%s.%N)
for pid in "${services[@]}"; do
    kill -0 "$pid" 2>/dev/null || { echo "an instance ended during the window" >&2; exit 1; }
done

hz=$(getconf CLK_TCK)
for pid in "${services[@]}"; do
    printf '%s %s %s\n' "$(awk '/^VmRSS:/ { print $2 }' "/proc/$pid/status")" \
        "$(awk '/^VmHWM:/ { print $2 }' "/proc/$pid/status")" \
        "$(awk '/^Pss:/ { print $2 }' "/proc/$pid/smaps_rollup")"
done > "$work/memory"

awk -v n="$count" -v s="$seconds" -v wall="$(awk -v a="$w0" -v b="$w1" 'BEGIN { print b - a }')" \
    -v cpu="$(( (t1 - t0) * 1000 / hz ))" -v simcpu="$(( (s1 - s0) * 1000 / hz ))" -v checks="$((c1 - c0))" '
    function mb(kb) { return sprintf("%.1f MB", kb / 1024) }
    { rss[NR] = $1; hwm[NR] = $2; pss[NR] = $3; trss += $1; tpss += $3
      if (NR == 1 || $1 < minrss) minrss = $1; if ($1 > maxrss) maxrss = $1
      if ($2 > maxhwm) maxhwm = $2; if (NR == 1 || $3 < minpss) minpss = $3; if ($3 > maxpss) maxpss = $3 }
    END {
        printf "\n| %d instance%s, %d s | per instance: least | mean | most | all together |\n", n, n == 1 ? "" : "s", s
        printf "| --- | ---: | ---: | ---: | ---: |\n"
        printf "| resident (VmRSS) | %s | %s | %s | %s |\n", mb(minrss), mb(trss / n), mb(maxrss), mb(trss)
        printf "| proportional (PSS) | %s | %s | %s | %s |\n", mb(minpss), mb(tpss / n), mb(maxpss), mb(tpss)
        printf "| peak resident (VmHWM) | | | %s | |\n", mb(maxhwm)
        printf "| CPU time | | %.0f ms | | %d ms, %.2f %% of one core |\n", cpu / n, cpu, cpu / (wall * 10)
        printf "\nstatus tables read in the window: %d (%.1f per instance); the simulated servers used %d ms of CPU\n",
            checks, checks / n, simcpu
    }' "$work/memory"

echo
echo "What the resident memory of instance 1 is made of (kB):"
awk '
    /^[0-9a-f]+-[0-9a-f]+ / { name = $6; if (name == "") name = "[anonymous]"
                              sub(/.*\//, "", name); sub(/\.so.*/, ".so", name) }
    /^Rss:/ { rss[name] += $2; total += $2 }
    /^Pss:/ { pss[name] += $2 }
    END { for (m in rss) if (rss[m] > 0) printf "%8d %8d  %s\n", rss[m], pss[m], m
          printf "%8d          total\n", total }' "/proc/${services[0]}/smaps" \
    | sort -rn | awk 'BEGIN { print "     RSS      PSS  mapping" } NR <= 16'
