#!/usr/bin/env bash
# Builds Kestrum and runs every test (headless). Exits non-zero when any test fails.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/build.sh
cd build
ctest --output-on-failure -j2
