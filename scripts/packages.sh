# The Debian packages that each task needs, beyond those that every Debian system has (bash,
# coreutils, findutils, grep, libc-bin, sed, tar, util-linux). Sourced by prepare.sh.
# shellcheck shell=bash disable=SC2034

# To build the program.
packages_base=(g++ cmake ninja-build ccache libicu-dev zlib1g-dev esbuild)

# To build the window too.
packages_window=(qt6-base-dev qt6-svg-dev qt6-translations-l10n)

# To build and run the tests.
packages_test=(libgtest-dev libgmock-dev python3 python3-openpyxl chromium desktop-file-utils
  libglib2.0-bin)

# To run the checks of .ci/run that are not tests.
packages_ci=(git python3 clang-format clang-tidy valgrind locales tzdata)

# To build and run the fuzzers.
packages_fuzz=(clang libclang-rt-14-dev)

# To build and run the benchmarks.
packages_bench=(python3 libbenchmark-dev)

# To compare with in bench/compare.
packages_peers=(ncdu gdu coreutils util-linux)
