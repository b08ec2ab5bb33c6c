#!/usr/bin/env bash
# Builds and runs the diagram stream's fuzz target with clang's libFuzzer (kept out of the g++
# build). Usage: tests/fuzz/build-diagram-fuzz.sh [SECONDS]   (default 60)
set -euo pipefail

here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
out="${FUZZ_OUT:-$root/build-fuzz}"
seconds="${1:-60}"

command -v clang++ >/dev/null || { echo "clang++ is not installed (apt-get install clang)"; exit 1; }
mkdir -p "$out/diagram-corpus"
cp -n "$here"/corpus/diagram-stream/* "$out/diagram-corpus/" 2>/dev/null || true

sources=(
  "$here/DiagramStreamFuzz.cpp"
  "$root"/src/editors/diagram/{DiagramStream,DiagramDocument}.cpp
  "$root"/src/common/{ByteStream,Colour}.cpp
)
clang++ -std=c++20 -g -O1 -fPIC -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
  -I"$root/src" $(pkg-config --cflags Qt6Core Qt6Gui) \
  "${sources[@]}" $(pkg-config --libs Qt6Core Qt6Gui) -o "$out/diagram-stream-fuzz"

"$out/diagram-stream-fuzz" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
  -timeout=10 "$out/diagram-corpus"
