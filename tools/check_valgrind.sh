#!/bin/sh
# Runs the batch program on this machine under valgrind's memcheck, in a scratch directory, and fails on any
# memory error or definite or indirect leak that tools/valgrind.supp does not name, or when a report is
# missing. Prints memcheck's summary; after a failure the whole log stays in the scratch directory named.
#
# Usage: tools/check_valgrind.sh [PROGRAM]   (default: build/lumenscope)
set -eu

top=$(cd "$(dirname "$0")/.." && pwd)
program=$(realpath "${1:-$top/build/lumenscope}")
command -v valgrind >/dev/null || { echo "check_valgrind: valgrind is not installed (tools/install_deps.sh)"; exit 1; }
[ -x "$program" ] || { echo "check_valgrind: no program at $program (make build)"; exit 1; }

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscope-valgrind-XXXXXX")
cd "$work"
# --keep-debuginfo names the frames of libraries the program has already closed again (the OpenCL loader),
# which the suppressions match on.
status=0
valgrind --tool=memcheck --error-exitcode=99 --leak-check=full --show-leak-kinds=definite,indirect,possible \
    --errors-for-leak-kinds=definite,indirect --keep-debuginfo=yes --num-callers=40 \
    --suppressions="$top/tools/valgrind.supp" --log-file=valgrind.log \
    "$program" /exp_txt_report /exp_xml_report /exp_json_report >program.out 2>&1 || status=$?

sed -n 's/^==[0-9]*== //p' valgrind.log | sed -n '/HEAP SUMMARY/,$p'
for report in report.txt report.xml report.json; do
    if [ ! -s "$report" ]; then
        echo "check_valgrind: $report was not written"
        [ "$status" -ne 0 ] || status=1
    fi
done
if [ "$status" -eq 0 ]; then
    cd / && rm -rf "$work"
    echo "check_valgrind: no errors"
else
    echo "check_valgrind: failed with status $status; log in $work/valgrind.log"
fi
exit "$status"
