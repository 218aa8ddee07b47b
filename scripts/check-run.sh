#!/usr/bin/env bash
# scripts/check-run.sh: ./run as people call it: through a link, from another folder, from a path
# with blanks, twice at once, and again when nothing is to be done.
set -euo pipefail
root=$(readlink -f -- "${BASH_SOURCE[0]}")
root=${root%/scripts/*}
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

failures=0
expect() {
  local what=$1
  shift
  if ! "$@"; then
    echo "FAILED: $what" >&2
    failures=$((failures + 1))
  fi
}

house="$work/a house with blanks"
mkdir "$house"
git -C "$root" ls-files -z | tar -C "$root" --null -T - -c | tar -C "$house" -x
mkdir "$work/bin" "$work/here"
ln -s "$house/run" "$work/bin/start"
cd "$work/here"

# Status 3 and above 125 come from ./run and from the shell, never from the program.
started() { (($1 != 3 && $1 < 126)); }

# Two at once on a fresh clone: both must reach the program.
"$work/bin/start" --version >first.out 2>first.err &
first=$!
second_status=0
"$work/bin/start" --version >second.out 2>second.err || second_status=$?
first_status=0
wait "$first" || first_status=$?
expect "the first of two at once reaches the program ($first_status)" started "$first_status"
expect "the second of two at once reaches the program ($second_status)" started "$second_status"
expect "both say the same on standard output" cmp first.out second.out
expect "one of them tells about the build" grep -q Building first.err second.err

# A second run prints nothing else and starts at once.
begin=$EPOCHREALTIME
status=0
"$work/bin/start" --version >again.out 2>again.err || status=$?
end=$EPOCHREALTIME
milliseconds=$(((${end/[.,]/} - ${begin/[.,]/}) / 1000))
expect "it starts again ($status)" started "$status"
expect "with the same standard output" cmp first.out again.out
expect "and no word about the build" bash -c '! grep -E "Building|Configuring|Installing" again.err'
expect "in a moment ($milliseconds ms)" test "$milliseconds" -lt 2000
echo "The second start took $milliseconds ms."
if ((failures)); then
  head -n 60 first.err second.err again.err >&2
  exit 1
fi

# Paths keep their meaning: the report appears in the caller's folder.
if [[ ${1:-} == --scan ]]; then
  mkdir tree
  echo content >tree/file
  XDG_CONFIG_HOME=$work/settings "$work/bin/start" -s report.txt tree </dev/null
  expect "a relative target lies in the caller's folder" test -s report.txt
fi
exit $((failures > 0))
