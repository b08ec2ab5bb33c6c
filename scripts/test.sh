#!/usr/bin/env bash
# Checks the sources' formatting, builds Kestrum and runs every test (headless); then builds the
# core with the address and undefined-behaviour sanitizers and runs the core tests again (the
# fuzz targets' corpus replays among them). Exits non-zero when any fails.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
./scripts/check-format.sh
./scripts/build.sh
(cd build && ctest --output-on-failure -j2)

# The sanitizer pass: only the core tests and what they need.
cmake -S . -B build-asan -G Ninja -DKESTRUM_SANITIZE=address,undefined \
  -DKESTRUM_BUILD_BENCH=OFF -DKESTRUM_BUILD_APP=OFF >/dev/null
core_tests=$(cd build-asan && ctest -N -L core | awk '/Test +#/ {print $3}')
cmake --build build-asan --target kestrum-cli $core_tests
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
(cd build-asan && ctest --output-on-failure -j2 -L core)
