#!/usr/bin/env bash
# Writes the golden reports in tests/export/golden anew. Check the differences before you commit them.
set -euo pipefail
here=$(readlink -f -- "${BASH_SOURCE[0]}")
here=${here%/*}
. "$here/prepare.sh"
prepare test base test
OMBRELIAN_WRITE_GOLDEN=1 "$here/../build/test/tests/ombrelian_tests" --gtest_filter='Golden*'
git -C "$here/.." status --short -- tests/export/golden
