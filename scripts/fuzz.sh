#!/usr/bin/env bash
# Builds one libFuzzer target with clang (address and undefined-behaviour sanitizers, coverage
# in all of the project's code) in build-fuzz/ and runs it on a copy of its stored corpus.
#   scripts/fuzz.sh TARGET [SECONDS]     TARGET: a folder of tests/fuzz/corpus; default 60 s
# New inputs the fuzzer finds go to build-fuzz/corpus/TARGET, crashes to build-fuzz/TARGET-*.
set -euo pipefail
cd "$(dirname "$0")/.."
usage() {
  echo "usage: scripts/fuzz.sh TARGET [SECONDS]; targets: $(ls tests/fuzz/corpus | tr '\n' ' ')" >&2
  exit 2
}
[ $# -ge 1 ] && [ $# -le 2 ] || usage
target="$1"
seconds="${2:-60}"
[ -d "tests/fuzz/corpus/$target" ] || usage
if ! command -v clang++ >/dev/null; then
  echo "clang++ is needed for fuzzing (apt-get install clang)" >&2
  exit 1
fi

cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
  -DKESTRUM_FUZZ=ON -DKESTRUM_SANITIZE=address,undefined \
  -DKESTRUM_BUILD_BENCH=OFF -DKESTRUM_BUILD_APP=OFF >/dev/null
cmake --build build-fuzz --target "$target"

corpus="build-fuzz/corpus/$target"
mkdir -p "$corpus"
cp -n "tests/fuzz/corpus/$target"/* "$corpus/"
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=0
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
"build-fuzz/tests/fuzz/$target" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
  -timeout=10 -artifact_prefix="build-fuzz/$target-" "$corpus"
