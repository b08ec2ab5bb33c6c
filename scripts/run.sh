#!/usr/bin/env bash
# Builds Kestrum, writes the demo report when it is missing and opens it in the app. Without a
# display it prints the demo report's outline instead.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/build.sh
mkdir -p demo
report=demo/demo.kst
if [ ! -f "$report" ]; then
  ./build/src/cli/kestrum-cli demo "$report"
  echo "Wrote the demo report $report"
fi
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec ./build/src/app/kestrum "$report"
fi
echo "No display: the outline of $report (index, level, kind, page id, caption):"
./build/src/cli/kestrum-cli tree "$report"
