#!/bin/sh
# Copies what the hardware library reads of this machine into a fixture directory with the kernel's own
# layout, so that the machine can be replayed:   lumenscope's tests, or  replay_machine FIXTURE_DIR
#
#   tools/capture_machine.sh OUT_DIR
#
# Device directories are copied where they really live (/sys/devices/pci.../) and the entries of
# /sys/bus/pci/devices stay links into them; driver links keep their targets. Only the attribute files the
# library reads are copied. A runtime-suspended device keeps only its identity: reading its driver's
# attributes would wake it up. Nothing is written outside OUT_DIR; run as a normal user.
set -u

if [ $# -ne 1 ]; then
    echo "usage: $0 OUT_DIR" >&2
    exit 2
fi
out=$1
mkdir -p "$out" || exit 1

# copy_file ABSOLUTE_PATH: the regular file, if it reads, at the same place under OUT_DIR.
copy_file() {
    [ -f "$1" ] || return 0
    mkdir -p "$out$(dirname "$1")"
    head -c 1048576 "$1" > "$out$1" 2>/dev/null || rm -f "$out$1"
}

# copy_link ABSOLUTE_PATH: the symbolic link itself, with its target text unchanged.
copy_link() {
    [ -L "$1" ] || return 0
    mkdir -p "$out$(dirname "$1")"
    rm -f "$out$1"
    ln -s "$(readlink "$1")" "$out$1"
}

identity="vendor device subsystem_vendor subsystem_device class revision boot_vga uevent power/runtime_status"
awake_only="vbios_version mem_info_vram_total mem_info_vram_vendor gpu_busy_percent pp_dpm_sclk pp_dpm_mclk"

drivers=""
for entry in /sys/bus/pci/devices/*; do
    [ -L "$entry" ] || continue
    copy_link "$entry"
    real=$(readlink -f "$entry")
    for name in $identity; do copy_file "$real/$name"; done
    if [ -L "$real/driver" ]; then
        copy_link "$real/driver"
        driver=$(basename "$(readlink "$real/driver")")
        mkdir -p "$out/sys/bus/pci/drivers/$driver"
        : > "$out/sys/bus/pci/drivers/$driver/uevent"
        case " $drivers " in *" $driver "*) ;; *) drivers="$drivers $driver" ;; esac
    fi
    class=$(cat "$real/class" 2>/dev/null)
    case "$class" in 0x03*) ;; *) continue ;; esac

    # DRM nodes and connectors: names only, their contents would ask the hardware.
    for node in "$real"/drm/card* "$real"/drm/renderD*; do
        [ -d "$node" ] || continue
        copy_file "$node/dev"
        for connector in "$node"/card*-*; do
            [ -d "$connector" ] && mkdir -p "$out$connector"
        done
    done
    status=$(cat "$real/power/runtime_status" 2>/dev/null)
    [ "$status" = "suspended" ] && continue
    for name in $awake_only; do copy_file "$real/$name"; done
    # amdgpu: the memory in use and the firmware's binary metrics table (a few hundred bytes).
    for name in mem_info_vram_used gpu_metrics; do copy_file "$real/$name"; done
    for connector in "$real"/drm/card*/card*-*; do copy_file "$connector/status"; done
    for hwmon in "$real"/hwmon/hwmon*; do
        [ -d "$hwmon" ] || continue
        for file in "$hwmon"/name "$hwmon"/temp*_* "$hwmon"/fan*_* "$hwmon"/pwm* "$hwmon"/in*_* "$hwmon"/power*_*; do
            copy_file "$file"
        done
        # amdgpu's engine and memory clocks and their labels.
        for file in "$hwmon"/freq*_*; do copy_file "$file"; done
    done

    # Intel (i915, xe): the energy counters, each GT's frequencies, idle residency and throttle reasons, and
    # the tiles' local memory.
    case "$(basename "$(readlink "$real/driver" 2>/dev/null)")" in
    i915|xe)
        for file in "$real"/hwmon/hwmon*/energy*_*; do copy_file "$file"; done
        for card in "$real"/drm/card*; do
            for file in "$card"/gt_*_freq_mhz "$card"/power/rc6_residency_ms "$card"/gt/gt*/rps_*_freq_mhz \
                        "$card"/gt/gt*/rc6_residency_ms "$card"/gt/gt*/throttle_reason_*; do
                copy_file "$file"
            done
        done
        for file in "$real"/tile*/physical_vram_size_bytes "$real"/tile*/gt*/freq0/*_freq \
                    "$real"/tile*/gt*/freq0/throttle/* "$real"/tile*/gt*/gtidle/idle_residency_ms; do
            copy_file "$file"
        done
        ;;
    esac
done

for driver in $drivers; do copy_file "/sys/module/$driver/version"; done
for file in /proc/cpuinfo /proc/meminfo /proc/sys/kernel/osrelease /proc/sys/kernel/version \
            /proc/sys/kernel/arch /proc/driver/nvidia/version /etc/os-release /usr/lib/os-release \
            /sys/devices/system/cpu/online /sys/devices/system/memory/block_size_bytes; do
    copy_file "$file"
done
for block in /sys/devices/system/memory/memory*; do copy_file "$block/online"; done

# The names of the devices found, cut from the PCI id list, so the replay names them as this machine does.
ids=""
for list in /usr/share/misc/pci.ids /usr/share/hwdata/pci.ids; do
    [ -f "$list" ] && ids=$list && break
done
if [ -n "$ids" ]; then
    wanted=$(cat "$out"/sys/devices/pci*/*/vendor "$out"/sys/devices/pci*/*/*/vendor 2>/dev/null | sort -u | sed 's/^0x//')
    pairs=$(for v in "$out"/sys/devices/pci*/*/vendor "$out"/sys/devices/pci*/*/*/vendor; do
                [ -f "$v" ] && printf '%s:%s\n' "$(sed 's/^0x//' "$v")" "$(sed 's/^0x//' "$(dirname "$v")/device")"
            done | sort -u)
    mkdir -p "$out/usr/share/misc"
    awk -v vendors="$wanted" -v pairs="$pairs" '
        BEGIN { n = split(vendors, v, " |\n"); for (i = 1; i <= n; i++) want[v[i]] = 1
                n = split(pairs, p, "\n"); for (i = 1; i <= n; i++) pair[p[i]] = 1 }
        /^C / { exit }
        /^[0-9a-f][0-9a-f][0-9a-f][0-9a-f] / { vendor = $1; if (want[vendor]) print; next }
        /^\t[0-9a-f][0-9a-f][0-9a-f][0-9a-f] / { if (pair[vendor ":" $1]) print }
    ' "$ids" > "$out/usr/share/misc/pci.ids"
fi
echo "captured into $out"
