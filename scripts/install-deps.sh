#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what building and testing Quorvane needs on Debian 12; with the argument
# "packaging", also what building, checking and installing its Debian package needs.
set -euo pipefail
packages=(cmake ninja-build g++ clang libclang-rt-dev qt6-base-dev qt6-base-dev-tools libgl-dev
          librsvg2-bin libbenchmark-dev libsystemd-dev xvfb xauth)
if [ "${1:-}" = packaging ]; then
    packages+=(dpkg-dev file desktop-file-utils appstream systemd man-db python3)
fi
missing=()
for p in "${packages[@]}"; do
    dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
# A fresh machine may be updating itself at first: wait for the package lock.
$sudo apt-get update -qq -o DPkg::Lock::Timeout=300
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq -o DPkg::Lock::Timeout=300 "${missing[@]}" >/dev/null
