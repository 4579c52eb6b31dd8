#!/bin/sh
# Benchmarks of the desktop window: the cost of one refresh tick (fake NVIDIA library and a fixture AMD
# machine, 1,000 ticks, then memory over 600 more), and the time from process start until the window is
# visible under Xvfb, with the idle window's memory over a minute.
#   tools/bench_window.sh [RUNS] [IDLE_SECONDS]
set -eu
root="$(cd "$(dirname "$0")/.." && pwd)"
runs="${1:-7}"
idle="${2:-60}"
cmake -S "$root" -B "$root/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$root/build" --target lumenscope bench_window_tick bench_window_startup -j2 >/dev/null
echo "== refresh tick"
"$root/build/tests/bench_window_tick"
echo "== window start-up under Xvfb"
xvfb-run -a -s "-screen 0 1024x768x24" "$root/build/tests/bench_window_startup" "$root/build/lumenscope" "$runs" "$idle"
