#!/usr/bin/env bash
# Builds and runs the grid readers' fuzz target with clang's libFuzzer (kept out of the g++
# build). Usage: tests/fuzz/build-grid-fuzz.sh [SECONDS]   (default 60)
set -euo pipefail

here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
out="${FUZZ_OUT:-$root/build-fuzz}"
seconds="${1:-60}"

command -v clang++ >/dev/null || { echo "clang++ is not installed (apt-get install clang)"; exit 1; }
mkdir -p "$out/corpus"
cp -n "$here"/corpus/grid-stream/* "$out/corpus/" 2>/dev/null || true

sources=(
  "$here/GridStreamFuzz.cpp"
  "$root"/src/editors/grid/{GridStream,GridDocument,GridCellFormat,WgfFile,GridFileIo,DelimitedTextReader,TextDecoder}.cpp
  "$root"/src/common/{ByteStream,Colour}.cpp
)
clang++ -std=c++20 -g -O1 -fPIC -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
  -I"$root/src" $(pkg-config --cflags Qt6Core Qt6Gui) \
  "${sources[@]}" $(pkg-config --libs Qt6Core Qt6Gui) -o "$out/grid-stream-fuzz"

# Fonts are not needed; the readers run without a display.
export QT_QPA_PLATFORM=offscreen
"$out/grid-stream-fuzz" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
  -timeout=10 "$out/corpus"
