#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs, builds and runs the whole test suite: the layer check, a plain build, then again under
# AddressSanitizer and UndefinedBehaviorSanitizer, then the fuzz target for a bounded time.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
jobs=$(nproc)

# No include goes up the layers of src/LAYERS.
bash scripts/check-layers.sh

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUORVANE_WERROR=ON -DQUORVANE_BUILD_BENCH=ON >/dev/null
cmake --build build -j "$jobs"
ctest --test-dir build -j "$jobs" --output-on-failure

cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUORVANE_WERROR=ON -DQUORVANE_SANITIZE=ON >/dev/null
cmake --build build-asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
LSAN_OPTIONS=suppressions=$PWD/tests/lsan.supp:print_suppressions=0 \
UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-asan -j "$jobs" --output-on-failure

if [ -x fuzz/run.sh ]; then
    bash fuzz/run.sh "${QUORVANE_FUZZ_SECONDS:-60}"
fi
