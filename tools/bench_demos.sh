#!/bin/sh
# Measures the OpenGL 3/4 demos on this machine.
#  1. Harness overhead: the triangle demo's frame rate against a bare EGL loop that draws the same picture
#     (tests/bench/bare_triangle_loop.cpp), in the same run, headless and in a window under Xvfb. The two
#     alternate in A B B A order so that a drifting machine load hits both alike; the median and the best
#     round are compared, the best being the least disturbed by other work on a shared machine. The goal is
#     a gap within 5 %.
#  2. The three demos' frame rates at 600x600, headless, beside glmark2's scores of comparable scenes
#     (glmark2 --off-screen, Debian's glmark2-x11) measured in the same run, when glmark2 is installed.
#
# Usage: tools/bench_demos.sh [BUILD_DIR]     (BUILD_DIR defaults to build; build it first)
# Environment: SECONDS_PER_RUN (default 6), ROUNDS (default 4).
set -eu

build=${1:-build}
seconds=${SECONDS_PER_RUN:-6}
rounds=${ROUNDS:-4}
lumenscope=$(cd "$build" && pwd)/lumenscope
bare=$(cd "$build" && pwd)/tests/bench_bare_triangle_loop
for tool in "$lumenscope" "$bare"; do
    [ -x "$tool" ] || { echo "missing $tool: build the project first" >&2; exit 1; }
done
command -v xvfb-run >/dev/null || { echo "xvfb-run is needed for the windowed runs" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
screen="-screen 0 1280x1024x24"

# Average FPS of a demo run of $seconds (whole one-second samples), headless or in a window.
demo_fps() {  # option mode
    dir=$work/demo
    rm -rf "$dir" && mkdir "$dir"
    if [ "$2" = window ]; then
        (cd "$dir" && xvfb-run -a -s "$screen" "$lumenscope" "$1" "/bench_duration=$((seconds * 1000))" \
            /bench_log_results /no_online_check >/dev/null 2>&1)
    else
        (cd "$dir" && env -u DISPLAY "$lumenscope" "$1" "/bench_duration=$((seconds * 1000))" \
            /bench_log_results /no_online_check >/dev/null 2>&1)
    fi
    tail -n 1 "$dir/bench_result.csv" | cut -d, -f16
}

bare_fps() {  # mode
    if [ "$1" = window ]; then
        xvfb-run -a -s "$screen" "$bare" "$seconds" --window
    else
        env -u DISPLAY "$bare" "$seconds"
    fi
}

median() { sort -n | awk '{ v[n++] = $1 } END { if (!n) print "n.a."; else if (n % 2) printf "%.1f", v[(n - 1) / 2]; else printf "%.1f", (v[n / 2 - 1] + v[n / 2]) / 2 }'; }
best() { sort -n | tail -n 1; }
gap() { awk -v h="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%+.1f %%", (h - b) / b * 100; else print "n.a." }'; }

renderer=$(cd "$work" && env -u DISPLAY "$lumenscope" /exp_txt_report /no_online_check >/dev/null 2>&1 &&
    sed -n 's/^- OpenGL renderer: //p' report.txt | head -n 1)
cpu=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)
echo "Machine: $(hostname) - $cpu, $(nproc) processors - ${renderer:-unknown renderer}"
echo "Runs of ${seconds} s, ${rounds} rounds"
echo

echo "Harness overhead, triangle at 600x600 (FPS per round: harness / bare loop)"
for mode in headless window; do
    : > "$work/harness.$mode"
    : > "$work/bare.$mode"
    line=""
    for round in $(seq "$rounds"); do
        if [ $((round % 2)) -eq 1 ]; then
            h=$(demo_fps /start_demo_gl3_triangle "$mode")
            b=$(bare_fps "$mode")
        else
            b=$(bare_fps "$mode")
            h=$(demo_fps /start_demo_gl3_triangle "$mode")
        fi
        echo "$h" >> "$work/harness.$mode"
        echo "$b" >> "$work/bare.$mode"
        line="$line  $h / $b"
    done
    hm=$(median < "$work/harness.$mode")
    bm=$(median < "$work/bare.$mode")
    hb=$(best < "$work/harness.$mode")
    bb=$(best < "$work/bare.$mode")
    printf '  %-8s rounds:%s\n' "$mode" "$line"
    printf '  %-8s median: harness %s, bare %s (%s); best: harness %s, bare %s (%s)\n' \
        "" "$hm" "$bm" "$(gap "$hm" "$bm")" "$hb" "$bb" "$(gap "$hb" "$bb")"
done
echo

echo "Demos headless at 600x600 (FPS of ${rounds} runs: median, best)"
for demo in gl3_triangle gl3_torus gl4_tessellation; do
    : > "$work/fps"
    for round in $(seq "$rounds"); do demo_fps "/start_demo_$demo" headless >> "$work/fps"; done
    printf '  %-18s %s, %s\n' "$demo" "$(median < "$work/fps")" "$(best < "$work/fps")"
done
echo

if command -v glmark2 >/dev/null; then
    echo "glmark2 --off-screen at 600x600, same run (comparable scenes: clear ~ triangle,"
    echo "shading:phong ~ torus, build ~ tessellation)"
    xvfb-run -a -s "$screen" glmark2 --off-screen -s 600x600 \
        -b "clear:duration=$seconds" -b "shading:shading=phong:duration=$seconds" \
        -b "build:use-vbo=true:duration=$seconds" 2>/dev/null |
        sed -n 's/^\[\([a-z]*\)\] \(.*\): FPS: \([0-9]*\).*/  \1 (\2) \3/p'
else
    echo "glmark2 not installed (Debian package glmark2-x11): no comparison scores"
fi
