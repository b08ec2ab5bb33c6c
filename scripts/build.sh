#!/usr/bin/env bash
# Installs what is missing, then configures and builds Kestrum into ./build.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
cmake -S . -B build -G Ninja -DKESTRUM_WERROR=ON "$@" >/dev/null
cmake --build build
