#!/usr/bin/env bash
# Builds and runs the store readers' fuzz target with clang's libFuzzer (kept out of the g++
# build). Usage: tests/fuzz/build-store-fuzz.sh [SECONDS]   (default 60)
set -euo pipefail

here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
out="${FUZZ_OUT:-$root/build-fuzz}"
seconds="${1:-60}"

command -v clang++ >/dev/null || { echo "clang++ is not installed (apt-get install clang)"; exit 1; }
mkdir -p "$out/store-corpus"
cp -n "$here"/corpus/store/* "$out/store-corpus/" 2>/dev/null || true

sources=(
  "$here/StoreReadersFuzz.cpp"
  "$root"/src/store/{ColumnCodec,OutlineNode,OutlineStream,PageTable,ProjectReader,SqliteDatabase}.cpp
  "$root"/src/common/ByteStream.cpp
)
clang++ -std=c++20 -g -O1 -fPIC -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
  -I"$root/src" $(pkg-config --cflags Qt6Core Qt6Gui) \
  "${sources[@]}" $(pkg-config --libs Qt6Core Qt6Gui) -lsqlite3 -o "$out/store-readers-fuzz"

"$out/store-readers-fuzz" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
  -timeout=10 "$out/store-corpus"
