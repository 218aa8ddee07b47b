#!/usr/bin/env bash
# Gets a build ready: installs the packages that are missing, configures and builds.
#
#   scripts/prepare.sh PRESET LIST...   builds build/PRESET with the package lists LIST...
#   . scripts/prepare.sh                gives the functions below to another script
#
# Nothing is printed on standard output, which belongs to the program that is started next. Standard
# error reports each step that is really taken. A failure ends the script with status 3, which the
# program never returns.

ombrelian_root=$(readlink -f -- "${BASH_SOURCE[0]}")
ombrelian_root=${ombrelian_root%/scripts/*}
. "$ombrelian_root/scripts/packages.sh"

# Lets clones and worktrees in other folders share the compiler cache.
export CCACHE_BASEDIR=$ombrelian_root

say() { printf '%s\n' "$*" >&2; }

# give_up MESSAGE [LOG]: ends the script and shows the end of LOG, which has the cause.
give_up() {
  if [[ -n ${2:-} ]]; then
    tail -n 100 -- "$2" >&2
    say "The whole log: $2"
  fi
  say "$1"
  exit 3
}

# missing_packages PACKAGE...: sets `missing` to those that are not installed. Asking dpkg takes some
# 20 ms, so the answer is never remembered and never stale.
missing_packages() {
  local package status installed=' '
  while read -r status package; do
    [[ $status == installed ]] && installed+="$package "
  done < <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null)
  missing=()
  for package; do
    [[ $installed == *" $package "* ]] || missing+=("$package")
  done
}

# ensure_packages LIST...: installs missing packages of the lists, or prints how to.
ensure_packages() {
  local list name missing wanted=()
  for list; do
    name="packages_$list[@]"
    wanted+=("${!name}")
  done
  if ! command -v dpkg-query >/dev/null; then
    return  # not a Debian system; the configuration reports what it does not find
  fi
  missing_packages "${wanted[@]}"
  ((${#missing[@]})) || return 0
  if ((EUID != 0)); then
    say "Some packages are missing. This installs them:"
    say "  sudo apt-get update && sudo apt-get install -y --no-install-recommends ${missing[*]}"
    exit 3
  fi
  say "Installing ${missing[*]} ..."
  local log=$ombrelian_root/build/install.log
  if ! { apt-get update -q && DEBIAN_FRONTEND=noninteractive apt-get install -q -y \
      --no-install-recommends -o DPkg::Lock::Timeout=600 "${missing[@]}"; } \
      >"$log" 2>&1 </dev/null {lock}>&-; then
    give_up "The packages could not be installed." "$log"
  fi
}

# configure PRESET: runs CMake if it has not run yet with these settings. The build itself notices
# changed CMakeLists.txt files.
configure() {
  local folder=$ombrelian_root/build/$1 werror=${OMBRELIAN_WERROR:-OFF}
  local stamp=$folder/configured settings log=$folder/configure.log
  settings="$ombrelian_root $werror $(<"$ombrelian_root/CMakePresets.json")"
  if [[ -e $folder/build.ninja && -e $stamp && $(<"$stamp") == "$settings" ]]; then
    return
  fi
  say "Configuring build/$1 ..."
  mkdir -p "$folder"
  rm -f "$stamp"
  if ! cmake -S "$ombrelian_root" --preset "$1" --fresh "-DOMBRELIAN_WERROR=$werror" \
      >"$log" 2>&1 </dev/null {lock}>&-; then
    give_up "The configuration failed." "$log"
  fi
  printf '%s\n' "$settings" >"$stamp"
}

# announce_build PRESET: copies ninja's lines from standard input to standard output, and announces
# the build once if there is more to do than looking for new source files.
announce_build() {
  local line announced=no
  while IFS= read -r line; do
    printf '%s\n' "$line"
    if [[ $announced == no && $line == '['* && $line != *'Re-checking globbed'* ]]; then
      announced=yes
      say "Building build/$1 (a few minutes the first time) ..."
    fi
  done
}

# build PRESET: brings build/PRESET up to date; prints nothing if it already is.
build() {
  local folder=$ombrelian_root/build/$1
  local log=$folder/build.log
  if ! NINJA_STATUS='[%f/%t] ' ninja -C "$folder" 2>&1 </dev/null {lock}>&- |
      announce_build "$1" >"$log" {lock}>&-; then
    give_up "The build failed." "$log"
  fi
}

# prepare PRESET LIST...: installs, configures and builds. Only one run in a clone does this at a
# time; the others wait for it.
prepare() {
  local preset=$1 lock
  shift
  mkdir -p "$ombrelian_root/build"
  exec {lock}>"$ombrelian_root/build/.lock"
  if ! flock -n "$lock"; then
    say "Waiting for another build in this folder ..."
    flock "$lock"
  fi
  ensure_packages "$@"
  configure "$preset"
  build "$preset"
  exec {lock}>&-
}

if [[ ${BASH_SOURCE[0]} == "$0" ]]; then
  set -euo pipefail
  prepare "$@"
fi
