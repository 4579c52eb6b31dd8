#!/bin/bash
# Ends the program while one of its demos runs, at a random moment, and checks that the end is clean: exit
# status 0, "Lumenscope shutdown ok." as the log's last line, and no report of the sanitizers the binary was
# built with. The moments are random but drawn from a given start number, so a failing run can be repeated.
#
#   tools/stop_demos_at_random.sh --binary build-asan/lumenscope [--runs 20] [--random-start 1]
#       [--preload build-asan/tests/libkeep_libraries_mapped.so]
#       [--family gl3|opencl|engine]... [--way sigterm|escape]...
#
# Each run starts the program with one demo from the command line, waits for the demo's window, waits a
# random 0.5 s to 5 s, then sends SIGTERM to the program or Escape to its main window. Without a display the
# script runs itself under xvfb-run. It prints one line per run and a table per family and way; it exits 1
# when any run failed, and keeps the failed runs' folders.
set -u

binary=""
preload=""
runs=20
random_start=1
families=()
ways=()
while [ $# -gt 0 ]; do
    case "$1" in
        --binary) binary="$2"; shift 2 ;;
        --preload) preload="$2"; shift 2 ;;
        --runs) runs="$2"; shift 2 ;;
        --random-start) random_start="$2"; shift 2 ;;
        --family) families+=("$2"); shift 2 ;;
        --way) ways+=("$2"); shift 2 ;;
        *) echo "stop_demos_at_random.sh: unknown argument $1" >&2; exit 2 ;;
    esac
done
[ ${#families[@]} -eq 0 ] && families=(gl3 opencl engine)
[ ${#ways[@]} -eq 0 ] && ways=(sigterm escape)
if [ -z "$binary" ] || [ ! -x "$binary" ]; then
    echo "stop_demos_at_random.sh: --binary must name the built program" >&2
    exit 2
fi
if ! command -v xdotool > /dev/null; then
    echo "stop_demos_at_random.sh: needs xdotool (make deps installs it)" >&2
    exit 2
fi
if [ -z "${DISPLAY:-}" ]; then
    # Without -noreset the server starts afresh whenever its last client leaves, and refuses connections while
    # it does: between two runs of the program there may be no client at all.
    exec xvfb-run -a -s "-screen 0 1024x768x24 -noreset" "$0" --binary "$binary" --preload "$preload" \
        --runs "$runs" --random-start "$random_start" \
        $(printf -- '--family %s ' "${families[@]}") $(printf -- '--way %s ' "${ways[@]}")
fi

root="$(cd "$(dirname "$0")/.." && pwd)"
binary="$(cd "$(dirname "$binary")" && pwd)/$(basename "$binary")"
work="$(mktemp -d "${TMPDIR:-/tmp}/stop_demos.XXXXXX")"
# The fast unwinder: the slow one, which whole allocation stacks need, deadlocks in libgcc's unwinder when
# several of Mesa's and Qt's threads allocate at once.
export ASAN_OPTIONS="detect_leaks=1"
# A preloaded library (tests/sanitizers/keep_libraries_mapped.c) stands before the sanitizer's runtime.
if [ -n "$preload" ]; then
    preload="$(cd "$(dirname "$preload")" && pwd)/$(basename "$preload")"
    ASAN_OPTIONS="$ASAN_OPTIONS:verify_asan_link_order=0"
fi
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp"
export UBSAN_OPTIONS="print_stacktrace=1"
unset QT_QPA_PLATFORM

demo_options() {
    case "$1" in
        gl3) echo "/start_demo_gl3_torus" ;;
        opencl) echo "/start_demo_cl_deformer /cl_cpu" ;;
        engine) echo "/start_demo_gl2_furry_cube" ;;
    esac
}

# The first visible window whose title matches, or nothing.
find_window() { xdotool search --onlyvisible --name "$1" 2> /dev/null | head -n 1; }

# Gives the main window the keyboard focus and checks that it has it. Keys then go through the server's input:
# sent to the window itself, a key's release could find the window already gone.
focus_main_window() {
    local main="" tries=0
    while [ $tries -lt 50 ]; do
        main="$(find_window '^Orbiscale Lumenscope')"
        if [ -n "$main" ] && xdotool windowfocus "$main" 2> /dev/null &&
            [ "$(xdotool getwindowfocus 2> /dev/null)" = "$main" ]; then
            return 0
        fi
        sleep 0.1
        tries=$((tries + 1))
    done
    return 1
}

# Random milliseconds between 500 and 5000 from bash's generator, started at --random-start, into $delay. Not in a
# subshell: bash gives a subshell's random generator a new start.
next_delay() { delay=$((500 + (RANDOM * 32768 + RANDOM) % 4501)); }

# One run; prints "delay status verdict" and returns 1 when the end was not clean.
run_once() {
    local family="$1" way="$2" dir="$3" delay="$4"
    mkdir -p "$dir"
    # shellcheck disable=SC2046
    (cd "$dir" && exec env ${preload:+LD_PRELOAD="$preload"} "$binary" /no_online_check $(demo_options "$family") \
        > stdout.txt 2> stderr.txt) &
    local pid=$!
    local demo="" waited=0
    while [ -z "$demo" ]; do
        demo="$(find_window '^Lumenscope - ')"
        [ -n "$demo" ] && break
        if ! kill -0 "$pid" 2> /dev/null || [ $waited -ge 1200 ]; then
            kill -KILL "$pid" 2> /dev/null
            wait "$pid" 2> /dev/null
            echo "$delay - no-demo-window"
            return 1
        fi
        sleep 0.1
        waited=$((waited + 1))
    done
    sleep "$(printf '%d.%03d' $((delay / 1000)) $((delay % 1000)))"
    if [ "$way" = sigterm ]; then
        kill -TERM "$pid"
    else
        if ! focus_main_window; then
            kill -KILL "$pid" 2> /dev/null
            wait "$pid" 2> /dev/null
            echo "$delay - no-focus"
            return 1
        fi
        xdotool key Escape
    fi
    local left=0
    while kill -0 "$pid" 2> /dev/null && [ $left -lt 600 ]; do
        sleep 0.1
        left=$((left + 1))
    done
    if kill -0 "$pid" 2> /dev/null; then
        kill -KILL "$pid" 2> /dev/null
        wait "$pid" 2> /dev/null
        echo "$delay - hang"
        return 1
    fi
    wait "$pid"
    local status=$?
    local last
    last="$(tail -n 1 "$dir/Lumenscope_log.txt" 2> /dev/null)"
    if grep -Eq 'Sanitizer|runtime error:' "$dir/stderr.txt"; then
        echo "$delay $status sanitizer-report"
        return 1
    fi
    if [ $status -ne 0 ]; then
        echo "$delay $status exit-status"
        return 1
    fi
    if [ "${last##*>> }" != "Lumenscope shutdown ok." ]; then
        echo "$delay $status last-log-line"
        return 1
    fi
    if grep -q "did not stop within" "$dir/Lumenscope_log.txt"; then
        echo "$delay $status ok-left-running"
    else
        echo "$delay $status ok-joined"
    fi
    return 0
}

RANDOM=$random_start
failed=0
summary=()
for family in "${families[@]}"; do
    for way in "${ways[@]}"; do
        passed=0 leftRunning=0 shortest=99999 longest=0
        for run in $(seq 1 "$runs"); do
            next_delay
            dir="$work/$family-$way-$run"
            result="$(run_once "$family" "$way" "$dir" "$delay")"
            verdict="${result##* }"
            printf '%-7s %-8s run %2d  after %4d ms  exit %-3s %s\n' "$family" "$way" "$run" "$delay" \
                "$(echo "$result" | cut -d' ' -f2)" "$verdict"
            case "$verdict" in
                ok-*)
                    passed=$((passed + 1))
                    [ "$verdict" = ok-left-running ] && leftRunning=$((leftRunning + 1))
                    rm -rf "$dir"
                    ;;
                *)
                    failed=1
                    echo "  kept $dir; stderr ends:"
                    tail -n 20 "$dir/stderr.txt" 2> /dev/null | sed 's/^/    /'
                    ;;
            esac
            [ "$delay" -lt "$shortest" ] && shortest=$delay
            [ "$delay" -gt "$longest" ] && longest=$delay
        done
        summary+=("$(printf '| %-7s | %-8s | %4d | %6d | %12d | %5d-%d ms |' "$family" "$way" "$runs" "$passed" \
            "$leftRunning" "$shortest" "$longest")")
    done
done

echo
echo "random start $random_start"
echo "| family  | way      | runs | clean  | left running | delays         |"
echo "|---------|----------|------|--------|--------------|----------------|"
printf '%s\n' "${summary[@]}"
[ $failed -eq 0 ] && rmdir "$work" 2> /dev/null
exit $failed
