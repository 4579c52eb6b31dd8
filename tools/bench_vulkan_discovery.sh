#!/bin/bash
# What Vulkan discovery costs the batch reports: the batch run (/exp_txt_report /exp_xml_report
# /exp_json_report) with the system's Vulkan loader and with none (LUMENSCOPE_VULKAN_LOADER naming a file
# that is not there), and `vulkaninfo --summary` beside them, in turns, in one run. Prints the wall time of
# each round and the medians; the goal is at most 30 ms added, and no more than vulkaninfo --summary takes.
#
#   tools/bench_vulkan_discovery.sh [--binary build/lumenscope] [--rounds 9]
#
# Needs vulkaninfo (Debian vulkan-tools) and a Vulkan driver (mesa-vulkan-drivers gives lavapipe).
set -eu

binary=build/lumenscope
rounds=9
while [ $# -gt 0 ]; do
    case "$1" in
        --binary) binary="$2"; shift 2 ;;
        --rounds) rounds="$2"; shift 2 ;;
        *) echo "bench_vulkan_discovery.sh: unknown argument $1" >&2; exit 2 ;;
    esac
done
if ! command -v vulkaninfo > /dev/null; then
    echo "bench_vulkan_discovery.sh: needs vulkaninfo (apt-get install vulkan-tools mesa-vulkan-drivers)" >&2
    exit 2
fi
binary="$(cd "$(dirname "$binary")" && pwd)/$(basename "$binary")"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
export XDG_RUNTIME_DIR="$work"  # vulkaninfo complains without one

# Milliseconds of one command, its output thrown away.
millis() {
    local start end
    start=$(date +%s%N)
    "$@" > /dev/null 2>&1 || true
    end=$(date +%s%N)
    echo $(( (end - start) / 1000000 ))
}

median() { sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

: > "$work/with"; : > "$work/without"; : > "$work/summary"
for round in $(seq 1 "$rounds"); do
    with=$(cd "$work" && millis "$binary" /exp_txt_report /exp_xml_report /exp_json_report)
    without=$(cd "$work" && LUMENSCOPE_VULKAN_LOADER=/nonexistent/libvulkan.so.1 \
        millis "$binary" /exp_txt_report /exp_xml_report /exp_json_report)
    summary=$(millis vulkaninfo --summary)
    echo "$with" >> "$work/with"; echo "$without" >> "$work/without"; echo "$summary" >> "$work/summary"
    printf 'round %d: reports with Vulkan %d ms, without %d ms; vulkaninfo --summary %d ms\n' \
        "$round" "$with" "$without" "$summary"
done
# The devices found, so that a run on a machine without a driver is not mistaken for a fast one.
(cd "$work" && "$binary" /exp_json_report > /dev/null 2>&1 || true)
devices=$(grep -o 'Found [0-9]* Vulkan device(s)' "$work/Lumenscope_log.txt" || echo "no Vulkan line in the log")

with=$(median < "$work/with"); without=$(median < "$work/without"); summary=$(median < "$work/summary")
echo
echo "medians of $rounds rounds ($devices)"
echo "batch reports with Vulkan discovery:    $with ms"
echo "batch reports without (no loader):      $without ms"
echo "Vulkan discovery adds:                  $((with - without)) ms (goal: at most 30)"
echo "vulkaninfo --summary:                   $summary ms (goal: discovery's share at most this)"
