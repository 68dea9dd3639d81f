#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, if any is missing.
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config ccache
    qtbase5-dev libqt5svg5-dev libqt5sql5-sqlite qttools5-dev qttools5-dev-tools
    fonts-dejavu-core libssl-dev libssh-dev libzstd-dev
    xvfb xauth
    openssh-server openssh-client openssl procps
    mount e2fsprogs
    rsync
    libcurl4-openssl-dev libblkid-dev libmount-dev libext2fs-dev lvm2
    swift-proxy swift-object swift-container swift-account memcached python3-swiftclient rclone
    python3-aiosmtpd python3-cryptography curl
    libmicrohttpd-dev chromium restic
)
# Node for npm test servers (Azurite); a Node from elsewhere brings its own
# npm, which Debian's npm package would conflict with.
command -v npm >/dev/null || packages+=(nodejs npm)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -eq 0 ]; then
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    # Tests start their own servers on 127.0.0.1; keep the packages' system
    # services from starting while they are installed.
    policy=/usr/sbin/policy-rc.d
    if [ ! -e "$policy" ]; then
        printf '#!/bin/sh\nexit 101\n' > "$policy"
        chmod +x "$policy"
        trap 'rm -f "$policy"' EXIT
    fi
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
else
    echo "Missing packages. Install them with:" >&2
    echo "  sudo apt-get install -y --no-install-recommends ${missing[*]}" >&2
    exit 1
fi
