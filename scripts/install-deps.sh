#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what building and testing Quorvane needs on Debian 12.
set -euo pipefail
packages=(cmake ninja-build g++ clang libclang-rt-dev qt6-base-dev qt6-base-dev-tools libgl-dev
          libbenchmark-dev xvfb xauth)
missing=()
for p in "${packages[@]}"; do
    dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
