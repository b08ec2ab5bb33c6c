#!/usr/bin/env bash
# Installs every Debian 12 package that building, testing and running Kestrum need.
# Idempotent: packages already present are left alone, so a second run is a no-op.
set -euo pipefail

packages=(
  # toolchain
  g++ cmake ninja-build pkg-config clang-format ccache
  # Qt 6 stack
  qt6-base-dev qt6-base-private-dev qt6-svg-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
  qt6-image-formats-plugins libqt6svg6
  # storage and compression
  libsqlite3-dev zlib1g-dev
  # benchmarks
  libbenchmark-dev
  # fonts: Liberation is metric-compatible with Arial
  fontconfig fonts-liberation fonts-dejavu-core
  # running the GUI without a display, and looking at it
  xvfb xauth imagemagick
  # headless Writer and Calc: the tests open exported files in them (the app only looks for
  # them at run time, to convert Word files)
  libreoffice-writer-nogui libreoffice-calc-nogui
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

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y --no-install-recommends "${missing[@]}"
