#!/bin/sh
# Runs fuzz targets of the fuzz tree for as long as asked, one after another, and prints for each its
# executions per second, total executions, coverage and corpus size. The test run gives every target 30 s;
# this is for the longer runs before a release or after a parser changed.
#
# Usage: tools/run_fuzzers.sh SECONDS [NAME...]   NAME as registered (command_line, pci_scan, ...); default all
# Environment: BUILD_DIR (default build-fuzz, built with `make build-fuzz` when missing).
# Inputs that add coverage collect in $BUILD_DIR/fuzz-corpus/NAME, failing inputs in $BUILD_DIR/fuzz-crashes,
# each run's full output in $BUILD_DIR/fuzz-logs/NAME.log. Exits 1 when a target failed.
set -eu

top=$(cd "$(dirname "$0")/.." && pwd)
if [ $# -lt 1 ] || ! [ "$1" -gt 0 ] 2>/dev/null; then
    echo "usage: $0 SECONDS [NAME...]" >&2
    exit 2
fi
seconds=$1
shift
build=${BUILD_DIR:-$top/build-fuzz}
[ -d "$build/fuzz" ] || make -C "$top" build-fuzz
mkdir -p "$build/fuzz-crashes" "$build/fuzz-logs"

if [ $# -eq 0 ]; then
    set -- $(ls "$build/fuzz" | sed -n 's/_fuzz$//p')
fi

status=0
printf '%-18s %10s %14s %8s %8s  %s\n' target execs/s "total execs" cov corpus result
for name in "$@"; do
    target="$build/fuzz/${name}_fuzz"
    if [ ! -x "$target" ]; then
        printf '%-18s %s\n' "$name" "no such target in $build/fuzz"
        status=1
        continue
    fi
    found="$build/fuzz-corpus/$name"
    mkdir -p "$found"
    committed="$top/tests/fuzz/corpus/$name"
    [ -d "$committed" ] || committed=""
    log="$build/fuzz-logs/$name.log"
    result=ok
    # shellcheck disable=SC2086
    "$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$build/fuzz-crashes/$name-" "$found" $committed >"$log" 2>&1 || result=FAILED
    stat() { sed -n "s/^stat::$1: *//p" "$log" | tail -n 1; }
    done_line=$(grep -E '^#[0-9]+[[:space:]]+DONE' "$log" | tail -n 1 || true)
    cov=$(echo "$done_line" | sed -n 's/.* cov: \([0-9]*\).*/\1/p')
    corpus=$(echo "$done_line" | sed -n 's/.* corp: \([0-9]*\).*/\1/p')
    if [ "$result" = FAILED ]; then
        result="FAILED: $(grep -o "Test unit written to .*" "$log" | tail -n 1 | sed 's/Test unit written to //') (see $log)"
        status=1
    fi
    printf '%-18s %10s %14s %8s %8s  %s\n' "$name" "$(stat average_exec_per_sec)" \
        "$(stat number_of_executed_units)" "${cov:--}" "${corpus:--}" "$result"
done
exit $status
