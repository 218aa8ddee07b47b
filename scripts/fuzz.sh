#!/usr/bin/env bash
# scripts/fuzz.sh [SECONDS [TARGET...]]: builds the fuzzers of tests/fuzz with clang and runs each of them
# for SECONDS (default 60), starting from the seeds in tests/fuzz/seeds/TARGET. A run with SECONDS 0 goes over the
# seeds and 20,000 inputs from a fixed start, for CI. Stops at the first failure; its input is kept in build/fuzz.
set -euo pipefail
root=$(readlink -f -- "${BASH_SOURCE[0]}")
root=${root%/scripts/*}
. "$root/scripts/prepare.sh"
seconds=${1:-60}
(($#)) && shift
export CC=clang CXX=clang++
prepare fuzz base fuzz
cd "$root/build/fuzz"
targets=("$@")
((${#targets[@]})) || mapfile -t targets < <(basename -s .cpp "$root"/tests/fuzz/*.cpp)
for target in "${targets[@]}"; do
  corpus=corpus/$target
  mkdir -p "$corpus"
  seeds=("$root/tests/fuzz/seeds/$target")
  [[ -d ${seeds[0]} ]] || seeds=()
  if ((seconds)); then
    limit=(-max_total_time="$seconds")
  else
    limit=(-runs=20000 -seed=20261122)
  fi
  "tests/fuzz/$target" "${limit[@]}" -timeout=10 -max_len=4096 -print_final_stats=1 \
    -artifact_prefix="$PWD/$target-" "$corpus" "${seeds[@]}" >"$target.log" 2>&1 ||
    give_up "$target found a fault." "$target.log"
  runs=$(sed -n 's/^stat::number_of_executed_units: //p' "$target.log")
  echo "fuzz: $target, $runs inputs, no fault"
done
