#!/bin/sh
# Measures the eight engine demos on this machine, headless at 600x600:
#  1. each demo's frame rate as the program reports it in its result row (average, minimum and maximum of
#     the one-second samples of a run), with the triangles its figures count;
#  2. the engine's own CPU time a frame apart from OpenGL, against the frame's time
#     (tests/bench/engine_frame_cost.cpp); the goal is under 5 % on every demo.
#
# Usage: tools/bench_engine_demos.sh [BUILD_DIR]     (BUILD_DIR defaults to build; build it first)
# Environment: SECONDS_PER_RUN (default 6).
set -eu

build=${1:-build}
seconds=${SECONDS_PER_RUN:-6}
lumenscope=$(cd "$build" && pwd)/lumenscope
cost=$(cd "$build" && pwd)/tests/bench_engine_frame_cost
for tool in "$lumenscope" "$cost"; do
    [ -x "$tool" ] || { echo "missing $tool: build the project first" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

renderer=$(cd "$work" && env -u DISPLAY "$lumenscope" /exp_txt_report /no_online_check >/dev/null 2>&1 &&
    sed -n 's/^- OpenGL renderer: //p' report.txt | head -n 1)
cpu=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)
echo "Machine: $(hostname) - $cpu, $(nproc) processors - ${renderer:-unknown renderer}"
echo "Runs of ${seconds} s, headless, 600x600"
echo

"$cost" 3 > "$work/cost.txt"

printf '%-22s %-30s %8s %8s %8s %10s %12s %8s\n' "Demo" "Start option" "AVG FPS" "MIN FPS" "MAX FPS" "Triangles" \
    "engine us" "share"
for pair in gl2_furry_cube:GL_Furry_Cube gl2_hdr_dof:GL_HDR_DoF gl2_gi:GL_GeometryInstancing \
    gl2_soft_shadows:GL_SoftShadows gl2_point_sprite:GL_PointSprite gl2_vtf:GL_VertexTextureFetch \
    gl2_toon:GL_ToonShading gl2_simple_torus:GL_SimpleTorus; do
    option=/start_demo_${pair%%:*}
    name=${pair#*:}
    dir=$work/$name
    mkdir "$dir"
    (cd "$dir" && env -u DISPLAY "$lumenscope" "$option" "/bench_duration=$((seconds * 1000))" /bench_log_results \
        /no_online_check >/dev/null 2>&1) || true
    row=$(tail -n 1 "$dir/bench_result.csv" 2>/dev/null || true)
    avg=$(echo "$row" | cut -d, -f16)
    min=$(echo "$row" | cut -d, -f17)
    max=$(echo "$row" | cut -d, -f18)
    line=$(grep "^$name " "$work/cost.txt" || true)
    triangles=$(echo "$line" | awk '{ print ($2 == 0 ? "-" : $2) }')
    engine=$(echo "$line" | awk '{ print $4 }')
    share=$(echo "$line" | awk '{ print $5 }')
    printf '%-22s %-30s %8s %8s %8s %10s %12s %8s\n' "$name" "$option" "${avg:-n.a.}" "${min:-n.a.}" "${max:-n.a.}" \
        "${triangles:-n.a.}" "${engine:-n.a.}" "${share:-n.a.}"
done
