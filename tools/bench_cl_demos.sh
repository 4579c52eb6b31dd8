#!/bin/sh
# Measures the OpenCL demos' compute on one OpenCL device of this machine (the CPU device by default):
#  1. The particle step of 1,000,000 particles (32 bytes each): particles a second and the memory traffic
#     that implies, beside the device's bandwidth measured in the same run by a copy kernel; the goal is at
#     least half of that bandwidth.
#  2. The deformer at 512x512 vertices with no extra load: the compute step alone, with the read-back of its
#     results that every frame does, and the demo's full frame (headless, 600x600) from its average FPS, so
#     that what the copy path and the drawing add is visible.
# The compute figures come from tests/bench/cl_compute_bench.cpp, the frames from the program itself.
#
# Usage: tools/bench_cl_demos.sh [BUILD_DIR] [cpu|gpu]     (BUILD_DIR defaults to build; build it first)
# Environment: ROUNDS (default 40, the fastest of them counts), SECONDS_PER_RUN (default 6).
set -eu

build=${1:-build}
device=${2:-cpu}
rounds=${ROUNDS:-40}
seconds=${SECONDS_PER_RUN:-6}
lumenscope=$(cd "$build" && pwd)/lumenscope
bench=$(cd "$build" && pwd)/tests/bench_cl_compute
for tool in "$lumenscope" "$bench"; do
    [ -x "$tool" ] || { echo "missing $tool: build the project first" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$bench" "$device" "$rounds" > "$work/figures" || { echo "the compute benchmark failed" >&2; exit 1; }
figure() { sed -n "s/^$1 //p" "$work/figures"; }

# Average FPS of a headless demo run of $seconds (whole one-second samples).
demo_fps() {  # option [option]
    dir=$work/demo
    rm -rf "$dir" && mkdir "$dir"
    (cd "$dir" && env -u DISPLAY "$lumenscope" "$@" "/cl_$device" "/bench_duration=$((seconds * 1000))" \
        /bench_log_results /no_online_check >/dev/null 2>&1) || true
    tail -n 1 "$dir/bench_result.csv" 2>/dev/null | cut -d, -f16
}

cpu=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)
echo "Machine: $(hostname) - $cpu, $(nproc) processors"
echo "OpenCL device: $(figure device) ($device); fastest of $rounds rounds"
echo

copy=$(figure copy_bandwidth_gb_s)
traffic=$(figure particle_traffic_gb_s)
echo "Particle step, $(figure particles) particles ($(figure particle_global_items) work items)"
echo "  step:                      $(figure particle_step_ms) ms"
echo "  particles a second:        $(figure particles_per_second)"
echo "  memory traffic:            $traffic GB/s (80 bytes a particle: the record read and written back,"
echo "                             the position read and written)"
echo "  copy kernel bandwidth:     $copy GB/s"
awk -v t="$traffic" -v c="$copy" 'BEGIN { if (c > 0) printf "  fraction of bandwidth:     %.0f %% (goal: 50 %% or more)\n", t / c * 100 }'
echo "  step and position read-back, as a frame does: $(figure particle_step_with_read_back_ms) ms"
echo

fps=$(demo_fps /start_demo_cl_deformer)
bare=$(demo_fps /start_demo_cl_deformer /disable_gl_render_in_cl_demos)
frame_ms() { awk -v f="${1:-0}" 'BEGIN { if (f > 0) printf "%.1f ms (%d FPS)", 1000 / f, f; else print "n.a. (the demo did not run)" }'; }
echo "Deformer, 512x512 vertices, no extra load"
echo "  compute step alone:        $(figure deformer_step_ms) ms"
echo "  step and read-back:        $(figure deformer_step_with_read_back_ms) ms (positions and normals, 8 MB)"
echo "  full frame, headless:      $(frame_ms "$fps"): step, copy into the vertex buffers, drawing"
echo "  frame without the copy and the drawing (/disable_gl_render_in_cl_demos): $(frame_ms "$bare")"
