#!/usr/bin/env bash
# Checks that every tracked C++ source is formatted as .clang-format says. Lists the files that
# differ and exits 1 when there are any; `clang-format -i FILE...` (or `ninja -C build format`)
# fixes them.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v clang-format >/dev/null; then
  echo "clang-format is not installed (scripts/install-deps.sh installs it)" >&2
  exit 1
fi
mapfile -d '' files < <(git ls-files -z '*.cpp' '*.h')
[ ${#files[@]} -gt 0 ] || exit 0
report=$(clang-format --dry-run -Werror "${files[@]}" 2>&1 >/dev/null || true)
differ=$(printf '%s\n' "$report" | sed -n 's/^\(.*\):[0-9]*:[0-9]*: error: .*/\1/p' | sort -u)
if [ -n "$differ" ]; then
  echo "Not formatted as .clang-format says ($(printf '%s\n' "$differ" | wc -l) files):" >&2
  printf '%s\n' "$differ" | sed 's/^/  /' >&2
  exit 1
fi
if [ -n "$report" ]; then
  # clang-format failed for another reason (e.g. a bad .clang-format): show it.
  printf '%s\n' "$report" >&2
  exit 1
fi
echo "All ${#files[@]} C++ sources are formatted."
