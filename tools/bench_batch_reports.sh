#!/bin/bash
# The batch run (/exp_txt_report /exp_xml_report /exp_json_report) beside what a user would otherwise run for
# the same facts, `glxinfo -l` and then `clinfo`, in turns on the machine at hand: wall time and peak resident
# memory of each, and our figures as ratios of theirs (time against the two run back to back, memory against
# the larger of the two).
#
#   tools/bench_batch_reports.sh [--binary build/lumenscope] [--rounds 5]
#
# Needs glxinfo (Debian mesa-utils), clinfo and GNU time; without a display it runs itself under xvfb-run,
# which glxinfo needs.
set -eu

binary=build/lumenscope
rounds=5
while [ $# -gt 0 ]; do
    case "$1" in
        --binary) binary="$2"; shift 2 ;;
        --rounds) rounds="$2"; shift 2 ;;
        *) echo "bench_batch_reports.sh: unknown argument $1" >&2; exit 2 ;;
    esac
done
for tool in glxinfo clinfo /usr/bin/time; do
    if ! command -v "$tool" > /dev/null; then
        echo "bench_batch_reports.sh: needs $tool (apt-get install mesa-utils clinfo time)" >&2
        exit 2
    fi
done
binary="$(cd "$(dirname "$binary")" && pwd)/$(basename "$binary")"
if [ -z "${DISPLAY:-}" ]; then
    exec xvfb-run -a -s "-screen 0 1024x768x24" "$0" --binary "$binary" --rounds "$rounds"
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# "seconds kilobytes" of one command, its output thrown away.
measure() {
    /usr/bin/time -f "%e %M" -o "$work/time.txt" "$@" > /dev/null 2>&1 || true
    cat "$work/time.txt"
}

median() { sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

: > "$work/ours"
: > "$work/theirs"
for round in $(seq 1 "$rounds"); do
    ours="$(cd "$work" && measure "$binary" /exp_txt_report /exp_xml_report /exp_json_report)"
    glx="$(measure glxinfo -l)"
    cl="$(measure clinfo)"
    echo "$ours" >> "$work/ours"
    echo "$glx $cl" | awk '{ printf "%.2f %d\n", $1 + $3, ($2 > $4 ? $2 : $4) }' >> "$work/theirs"
    printf 'round %d: ours %s s %s KB; glxinfo %s s %s KB; clinfo %s s %s KB\n' "$round" $ours $glx $cl
done

ourTime="$(cut -d' ' -f1 "$work/ours" | median)"
ourPeak="$(cut -d' ' -f2 "$work/ours" | median)"
theirTime="$(cut -d' ' -f1 "$work/theirs" | median)"
theirPeak="$(cut -d' ' -f2 "$work/theirs" | median)"
echo
echo "medians of $rounds rounds"
printf 'batch reports:        %6.2f s  %7d KB peak\n' "$ourTime" "$ourPeak"
printf 'glxinfo -l + clinfo:  %6.2f s  %7d KB peak (the larger)\n' "$theirTime" "$theirPeak"
awk -v a="$ourTime" -v b="$theirTime" -v c="$ourPeak" -v d="$theirPeak" \
    'BEGIN { printf "ratios: time %.2f, peak memory %.2f\n", a / b, c / d }'
