#!/usr/bin/env bash
# Builds the RTF reader's libFuzzer target with clang (address sanitizer, coverage in the
# project's libraries) in build-fuzz/ and runs it on the stored corpus.
#   scripts/fuzz-rtf.sh [SECONDS]      default 60
# New inputs the fuzzer finds go to build-fuzz/rtf-corpus; crashes to build-fuzz/crash-*.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
if ! command -v clang++ >/dev/null; then
  echo "clang++ is needed for fuzzing (apt-get install clang)" >&2
  exit 1
fi
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link" \
  -DKESTRUM_SANITIZE=address -DKESTRUM_FUZZ=ON -DKESTRUM_BUILD_BENCH=OFF >/dev/null
ninja -C build-fuzz rtf_reader_fuzzer
mkdir -p build-fuzz/rtf-corpus
QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 \
  ./build-fuzz/tests/fuzz/rtf_reader_fuzzer -max_total_time="$seconds" -max_len=65536 -timeout=10 \
  -artifact_prefix=build-fuzz/ build-fuzz/rtf-corpus tests/fuzz/corpus/rtf
