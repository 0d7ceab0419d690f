#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests and the tools need.
# Only missing packages are installed; apt-get update runs once, and only when
# something must be installed. Works as root on a fresh Debian 12 machine.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    libgtest-dev libgmock-dev
    libcli11-dev
    clang libclang-rt-14-dev
    hamradio-files
    time
    libcurl4-openssl-dev libarchive-dev mdbtools-dev mdbtools
    libcpp-httplib-dev
    qt6-base-dev fonts-noto-cjk xvfb xauth
    lhasa jlha-utils zip unzip
    dpkg-dev
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
    sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
