#!/usr/bin/env bash
# Builds Kestrum, writes the demo report when it is missing and opens it in the app. Without a
# display it prints the demo report's outline and exports its pages headless instead.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/build.sh
mkdir -p demo
report=demo/demo.kst
cli=./build/src/cli/kestrum-cli
if [ ! -f "$report" ]; then
  "$cli" demo "$report"
  echo "Wrote the demo report $report"
fi
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec ./build/src/app/kestrum "$report"
fi

echo "No display: the outline of $report (index, level, kind, page id, caption):"
"$cli" tree "$report"
out=demo/export
rm -rf "$out"
mkdir -p "$out"
# Text pages (kinds 0, 5, 6, 7) and table pages (kind 1) as HTML, tables also as Excel files.
while IFS=$'\t' read -r index level kind id caption; do
  name=$(printf '%02d-%s' "$index" "$caption" | tr -c 'A-Za-z0-9._-' '_')
  case "$kind" in
    0|5|6|7) "$cli" export-page "$report" "$id" "$out/$name.html" ;;
    1) "$cli" export-page "$report" "$id" "$out/$name.html"
       "$cli" export-page "$report" "$id" "$out/$name.xls" ;;
  esac
done < <("$cli" tree "$report")
echo "Exported the demo report's pages to $(cd "$out" && pwd):"
ls -1 "$out"
