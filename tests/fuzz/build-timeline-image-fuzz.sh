#!/usr/bin/env bash
# Builds and runs the timeline text and image content fuzz targets with clang's libFuzzer (kept
# out of the g++ build). Usage: tests/fuzz/build-timeline-image-fuzz.sh [SECONDS]  (default 60
# for each target)
set -euo pipefail

here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
out="${FUZZ_OUT:-$root/build-fuzz}"
seconds="${1:-60}"

command -v clang++ >/dev/null || { echo "clang++ is not installed (apt-get install clang)"; exit 1; }
flags=(-std=c++20 -g -O1 -fPIC -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined
       -I"$root/src" $(pkg-config --cflags Qt6Core Qt6Gui))
libs=$(pkg-config --libs Qt6Core Qt6Gui)
common=("$root"/src/common/{Colour,TabFields,DayCount,ByteStream}.cpp)

mkdir -p "$out/timeline-corpus" "$out/image-corpus"
cp -n "$here"/corpus/timeline-text/* "$out/timeline-corpus/" 2>/dev/null || true
cp -n "$here"/corpus/image-content/* "$out/image-corpus/" 2>/dev/null || true
cd "$out" # crash and timeout files land here, not in the source tree

clang++ "${flags[@]}" "$here/TimelineTextFuzz.cpp" \
  "$root"/src/editors/timeline/{TimelineText,TimelineModel,TimelineNavigation,TimelineEvents,TimelineRenderer,DateFormat,GifWriter}.cpp \
  "${common[@]}" $libs -o "$out/timeline-text-fuzz"
clang++ "${flags[@]}" "$here/ImageContentFuzz.cpp" "$root"/src/editors/image/BmpFile.cpp \
  "${common[@]}" $libs -o "$out/image-content-fuzz"

export QT_QPA_PLATFORM=offscreen
# Fontconfig keeps its caches until exit; those are not leaks of ours.
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=0}"
"$out/timeline-text-fuzz" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
  -timeout=10 "$out/timeline-corpus"
"$out/image-content-fuzz" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
  -timeout=10 "$out/image-corpus"
