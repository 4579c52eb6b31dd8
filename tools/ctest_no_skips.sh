#!/bin/bash
# Runs ctest with the given arguments and fails when any test reports a skip as well as when one fails: on a
# machine the README's set-up has prepared, every test has what it needs, so a skip is a test that proved
# nothing. Tests that need hardware or a vendor library that set-up cannot install carry the label
# "needs_gpu" and are left out here.
set -u
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
ctest -LE needs_gpu "$@" 2>&1 | tee "$log"
status=${PIPESTATUS[0]}
if grep -Eq '\*\*\*Skipped|\(Skipped\)' "$log"; then
    echo "ctest_no_skips.sh: these tests were skipped:" >&2
    grep -E '\*\*\*Skipped' "$log" | sed 's/^/  /' >&2
    exit 1
fi
exit "$status"
