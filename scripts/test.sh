#!/usr/bin/env bash
# scripts/test.sh PRESET [ctest ARGS]: builds build/PRESET with the tests and runs them. The status
# is ctest's.
set -euo pipefail
scripts=$(readlink -f -- "${BASH_SOURCE[0]}")
scripts=${scripts%/*}
preset=${1:?which preset?}

# The thread sanitizer of this compiler cannot start where the kernel randomises addresses by more
# bits than it knows of. The build needs this too, as it runs the test program to list its tests.
if [[ $preset == tsan && -z ${OMBRELIAN_FIXED_ADDRESSES:-} ]] && setarch -R true 2>/dev/null; then
  OMBRELIAN_FIXED_ADDRESSES=1 exec setarch -R "$0" "$@"
fi
shift

# A finding of a sanitizer must fail the test in which it occurs.
ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:strict_string_checks=1
export ASAN_OPTIONS+=:check_initialization_order=1:strict_init_order=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
export TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1

. "$scripts/prepare.sh"
lists=(base test)
[[ $preset == core || $preset == tsan ]] || lists+=(window)
prepare "$preset" "${lists[@]}"
exec ctest --test-dir "$ombrelian_root/build/$preset" --output-on-failure --no-tests=error \
  -j "$(nproc)" "$@"
