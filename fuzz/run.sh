#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the GetScores fuzzer with clang and runs it for a bounded time.
# Usage: fuzz/run.sh [seconds]   (default 60; build dir: $QUORVANE_FUZZ_BUILD or build-fuzz)
set -euo pipefail

seconds=${1:-60}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source_dir=$(dirname "$here")
build=${QUORVANE_FUZZ_BUILD:-$source_dir/build-fuzz}

generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
CXX=clang++ cmake -S "$source_dir" -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DQUORVANE_BUILD_FUZZ=ON -DQUORVANE_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --target quorvane_fuzz_getscores -j2

# New inputs go to a work corpus in the build dir; the seeds in the tree stay as they are.
mkdir -p "$build/fuzz-corpus" "$build/fuzz-artifacts"
"$build/fuzz/quorvane_fuzz_getscores" "$build/fuzz-corpus" "$here/corpus" \
    -max_total_time="$seconds" -max_len=16384 -timeout=10 -print_final_stats=1 \
    -artifact_prefix="$build/fuzz-artifacts/"
