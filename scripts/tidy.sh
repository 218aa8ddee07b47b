#!/usr/bin/env bash
# scripts/tidy.sh [FILE...]: clang-tidy over the given sources, or over all that build/test compiles
# from src/ (build it first: ./test).
set -euo pipefail
root=$(readlink -f -- "${BASH_SOURCE[0]}")
root=${root%/scripts/*}
cd "$root"
database=build/test/compile_commands.json
if [[ ! -e $database ]]; then
  echo "There is no $database yet: run ./test first." >&2
  exit 3
fi
if (($#)); then
  files=("$@")
else
  mapfile -t files < <(sed -n 's|^ *"file": "'"$root"'/\(src/.*\.cpp\)",\{0,1\}$|\1|p' "$database")
fi
if ((!${#files[@]})); then
  echo "There is no source to look at." >&2
  exit 3
fi
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/test --quiet --extra-arg=-Wno-unknown-warning-option
echo "clang-tidy: ${#files[@]} files"
