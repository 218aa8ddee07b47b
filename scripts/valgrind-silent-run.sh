#!/usr/bin/env bash
# scripts/valgrind-silent-run.sh [PROGRAM]: a silent run over a small tree under valgrind. Fails on
# any memory error or leak, a status other than 0 (one of the program's own means that it could not
# read or save something), a missing report, and a report that does not name what the tree holds.
set -euo pipefail
root=$(readlink -f -- "${BASH_SOURCE[0]}")
root=${root%/scripts/*}
program=${1:-$root/build/core/src/ombrelian}
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

# A tree with one of each kind of entry.
tree=$work/tree
mkdir -p "$tree/plain/deeper/deepest" "$tree/Straße ☂/写真" "$tree/empty" "$tree/"$'not\xffutf8'
for number in {1..200}; do
  printf '%*s' "$number" '' >"$tree/plain/file $number.txt"
done
truncate -s 5G "$tree/plain/deeper/sparse.bin"
ln "$tree/plain/file 1.txt" "$tree/plain/deeper/hardlink.txt"
ln -s ../plain "$tree/empty/link to a folder"
ln -s nowhere "$tree/empty/dangling"
mkfifo "$tree/empty/pipe"
: >"$tree/"$'not\xffutf8/name\xfe'

# The user's settings are neither read nor changed.
export XDG_CONFIG_HOME=$work/settings XDG_DATA_HOME=$work/settings XDG_RUNTIME_DIR=$work
report=$work/report.txt
status=0
leaks=definite,indirect,possible
valgrind --quiet --error-exitcode=99 --leak-check=full --show-leak-kinds="$leaks" \
  --errors-for-leak-kinds="$leaks" --num-callers=30 \
  "$program" -s "$report" "$tree" || status=$?
if ((status == 99)); then
  echo "valgrind found errors in the silent run." >&2
  exit 1
elif ((status != 0)); then
  echo "The silent run ended with status $status." >&2
  exit 1
elif [[ ! -s $report ]]; then
  echo "The silent run left no report." >&2
  exit 1
# A text report may be UTF-16: without its zero bytes an ASCII name reads the same.
elif ! tr -d '\0' <"$report" | grep -aq deepest; then
  echo "The report does not name the deepest folder." >&2
  exit 1
fi
echo "The silent run under valgrind is clean; the report has $(stat -c %s "$report") bytes."
