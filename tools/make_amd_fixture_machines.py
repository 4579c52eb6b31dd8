#!/usr/bin/env python3
"""Writes the AMD fixture machines of the live readings under tests/fixtures/sysfs, in the kernel's layout,
and the binary gpu_metrics files of those machines (amdgpu-rx6800's included) and of the fuzz corpus, so that
every byte of them can be written again from this file. Run it after a deliberate change, then read the diff before committing.

The gpu_metrics tables follow the kernel's gpu_metrics_v<format>_<content> structures (natural alignment,
little-endian); a field not set here holds all ones, as the firmware leaves a value it does not give."""
import os
import shutil
import struct
import sys

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "fixtures", "sysfs")

# (format, content) -> structure size and the offset and struct code of each field written here.
METRICS_LAYOUTS = {
    (1, 3): (120, {
        "temperature_edge": (4, "<H"), "temperature_hotspot": (6, "<H"), "temperature_mem": (8, "<H"),
        "temperature_vrgfx": (10, "<H"), "temperature_vrsoc": (12, "<H"), "temperature_vrmem": (14, "<H"),
        "average_socket_power": (22, "<H"), "current_fan_speed": (72, "<H"),
        "indep_throttle_status": (112, "<Q"),
    }),
    (2, 2): (128, {
        "temperature_gfx": (16, "<H"), "temperature_soc": (18, "<H"), "average_socket_power": (44, "<H"),
        "indep_throttle_status": (120, "<Q"),
    }),
}


def gpu_metrics(fmt, content, fields):
    size, layout = METRICS_LAYOUTS[(fmt, content)]
    data = bytearray(b"\xff" * size)
    struct.pack_into("<HBB", data, 0, size, fmt, content)
    for name, value in fields.items():
        offset, code = layout[name]
        struct.pack_into(code, data, offset, value)
    return bytes(data)


def write(path, content):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(content if isinstance(content, bytes) else content.encode())


def link(path, target):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    os.symlink(target, path)


def pci_device(machine, bridge, address, ids, driver, cls, extra):
    """A PCI device below a root-port bridge (or on the root bus when bridge is None), its bus entry and its
    driver link."""
    parent = "sys/devices/pci0000:00" + ("/" + bridge if bridge else "")
    directory = parent + "/" + address
    vendor, device, subvendor, subdevice, revision = ids
    base = os.path.join(machine, directory)
    files = {
        "vendor": "0x%04x\n" % vendor, "device": "0x%04x\n" % device,
        "subsystem_vendor": "0x%04x\n" % subvendor, "subsystem_device": "0x%04x\n" % subdevice,
        "revision": "0x%02x\n" % revision, "class": "0x%06x\n" % cls,
        "power/runtime_status": "active\n",
        "uevent": "DRIVER=%s\nPCI_CLASS=%X\nPCI_ID=%04X:%04X\nPCI_SUBSYS_ID=%04X:%04X\nPCI_SLOT_NAME=%s\n"
                  "MODALIAS=pci:v%08Xd%08X\n" % (driver, cls, vendor, device, subvendor, subdevice, address,
                                                 vendor, device),
    }
    files.update(extra)
    for name, content in files.items():
        write(os.path.join(base, name), content)
    depth = directory.count("/") + 1
    link(os.path.join(base, "driver"), "../" * (depth - 1) + "bus/pci/drivers/" + driver)
    write(os.path.join(machine, "sys/bus/pci/drivers", driver, "uevent"), "")
    link(os.path.join(machine, "sys/bus/pci/devices", address), "../../../devices/pci0000:00" +
         ("/" + bridge if bridge else "") + "/" + address)


def bridge(machine, address, vendor, device):
    pci_device(machine, None, address, (vendor, device, 0, 0, 0), "pcieport", 0x060400, {})


def hwmon(number, name, values):
    return {"hwmon/hwmon%d/%s" % (number, key): value for key, value in dict(values, name=name).items()}


def drm(card, render, connectors):
    files = {"drm/card%d/dev" % card: "226:%d\n" % card, "drm/renderD%d/dev" % render: "226:%d\n" % render}
    for connector in connectors:
        files["drm/card%d/card%d-%s/status" % (card, card, connector)] = "disconnected\n"
    return files


def lines(*values):
    return "".join(v + "\n" for v in values)


PCI_IDS = """# Excerpt of the PCI id list
1002  Advanced Micro Devices, Inc. [AMD/ATI]
	163f  VanGogh [AMD Custom GPU 0405]
	67df  Ellesmere [Radeon RX 470/480/570/570X/580/580X/590]
	6819  Pitcairn PRO [Radeon HD 7850 / R7 265 / R9 270 1024SP]
	744c  Navi 31 [Radeon RX 7900 XT/7900 XTX/7900 GRE/7900M]
	7550  Navi 48 [Radeon RX 9070/9070 XT/9070 GRE]
1022  Advanced Micro Devices, Inc. [AMD]
	1633  Renoir PCIe GPP Bridge
8086  Intel Corporation
	1901  6th-10th Gen Core Processor PCIe Controller (x16)
C 03  Display controller
	00  VGA compatible controller
C 06  Bridge
	04  PCI bridge
"""


def machine(name, kernel, build):
    path = os.path.join(ROOT, name)
    shutil.rmtree(path, ignore_errors=True)
    write(os.path.join(path, "proc/sys/kernel/osrelease"), kernel + "\n")
    write(os.path.join(path, "usr/share/misc/pci.ids"), PCI_IDS)
    build(path)
    print("wrote", name)


def rx7900xtx(m):
    # RDNA 3: the instant power only (no power1_average), labelled clocks, three temperatures in hwmon.
    bridge(m, "0000:00:01.0", 0x8086, 0x1901)
    write(os.path.join(m, "dev/dri/renderD128"), "")
    extra = {
        "gpu_busy_percent": "97\n", "vbios_version": "113-D7020100-102\n",
        "mem_info_vram_total": "25753026560\n", "mem_info_vram_used": "8388608000\n",
        "mem_info_vram_vendor": "hynix\n",
        "pp_dpm_sclk": lines("0: 500Mhz", "1: 2482Mhz *", "2: 2526Mhz"),
        "pp_dpm_mclk": lines("0: 96Mhz", "1: 456Mhz", "2: 772Mhz", "3: 1249Mhz *"),
        "gpu_metrics": gpu_metrics(1, 3, {
            "temperature_edge": 51, "temperature_hotspot": 67, "temperature_mem": 60,
            "temperature_vrgfx": 55, "temperature_vrsoc": 49, "temperature_vrmem": 51,
            "average_socket_power": 181, "current_fan_speed": 1318, "indep_throttle_status": 0}),
    }
    extra.update(hwmon(3, "amdgpu", {
        "temp1_input": "52000\n", "temp1_label": "edge\n", "temp2_input": "68000\n", "temp2_label": "junction\n",
        "temp3_input": "60000\n", "temp3_label": "mem\n", "in0_input": "905\n", "in0_label": "vddgfx\n",
        "power1_input": "182000000\n", "power1_cap": "339000000\n", "power1_cap_default": "339000000\n",
        "power1_cap_min": "305000000\n", "power1_cap_max": "402000000\n",
        "pwm1": "89\n", "pwm1_max": "255\n", "fan1_input": "1320\n",
        "freq1_input": "2482000000\n", "freq1_label": "sclk\n", "freq2_input": "1249000000\n", "freq2_label": "mclk\n",
    }))
    extra.update(drm(0, 128, ["DP-1", "DP-2", "HDMI-A-1"]))
    pci_device(m, "0000:00:01.0", "0000:03:00.0", (0x1002, 0x744C, 0x1002, 0x0E3B, 0xC8), "amdgpu", 0x030000, extra)


def rx9070xt(m):
    # RDNA 4: the sleep line marked in pp_dpm_sclk, no tachometer file, the fan only in gpu_metrics.
    bridge(m, "0000:00:01.0", 0x8086, 0x1901)
    write(os.path.join(m, "dev/dri/renderD128"), "")
    extra = {
        "gpu_busy_percent": "3\n", "vbios_version": "113-EXT90000-100\n",
        "mem_info_vram_total": "17095983104\n", "mem_info_vram_used": "1285357568\n",
        "mem_info_vram_vendor": "samsung\n",
        "pp_dpm_sclk": lines("S: 19Mhz *", "0: 500Mhz", "1: 2970Mhz"),
        "pp_dpm_mclk": lines("0: 96Mhz", "1: 456Mhz", "2: 1258Mhz"),
        "gpu_metrics": gpu_metrics(1, 3, {
            "temperature_edge": 41, "temperature_hotspot": 47, "temperature_mem": 62,
            "temperature_vrgfx": 38, "temperature_vrsoc": 36,
            "average_socket_power": 31, "current_fan_speed": 812, "indep_throttle_status": 0}),
    }
    extra.update(hwmon(2, "amdgpu", {
        "temp1_input": "41000\n", "temp1_label": "edge\n", "temp2_input": "47000\n", "temp2_label": "junction\n",
        "temp3_input": "62000\n", "temp3_label": "mem\n", "in0_input": "710\n", "in0_label": "vddgfx\n",
        "power1_input": "31000000\n", "power1_cap": "304000000\n", "power1_cap_default": "304000000\n",
        "power1_cap_min": "274000000\n", "power1_cap_max": "334000000\n",
        "pwm1": "64\n", "pwm1_max": "255\n",
        "freq1_input": "47000000\n", "freq1_label": "sclk\n", "freq2_input": "96000000\n", "freq2_label": "mclk\n",
    }))
    extra.update(drm(0, 128, ["DP-1", "DP-2", "HDMI-A-1"]))
    pci_device(m, "0000:00:01.0", "0000:03:00.0", (0x1002, 0x7550, 0x1DA2, 0xE490, 0xC0), "amdgpu", 0x030000, extra)


def apu_vangogh(m):
    # An APU: two labelled rails, no power file in hwmon; temperatures and power in gpu_metrics format 2.
    bridge(m, "0000:00:08.1", 0x1022, 0x1633)
    write(os.path.join(m, "dev/dri/renderD128"), "")
    extra = {
        "boot_vga": "1\n", "gpu_busy_percent": "22\n", "vbios_version": "113-VANGOGH-115\n",
        "mem_info_vram_total": "1073741824\n", "mem_info_vram_used": "268435456\n",
        "pp_dpm_sclk": lines("0: 200Mhz", "1: 1600Mhz *"),
        "pp_dpm_mclk": lines("0: 400Mhz", "1: 800Mhz *"),
        "gpu_metrics": gpu_metrics(2, 2, {
            "temperature_gfx": 5300, "temperature_soc": 5150, "average_socket_power": 14320,
            "indep_throttle_status": (1 << 4) | (1 << 37)}),
    }
    extra.update(hwmon(4, "amdgpu", {
        "temp1_input": "48000\n", "temp1_label": "edge\n",
        "in0_input": "1025\n", "in0_label": "vddgfx\n", "in1_input": "650\n", "in1_label": "vddnb\n",
        "freq1_input": "1600000000\n", "freq1_label": "sclk\n",
    }))
    extra.update(drm(0, 128, ["eDP-1", "DP-1"]))
    pci_device(m, "0000:00:08.1", "0000:04:00.0", (0x1002, 0x163F, 0x1002, 0x0123, 0xAE), "amdgpu", 0x030000, extra)


def radeon_hd7850(m):
    # An HD 7850 on radeon: an unlabelled temperature and the PWM output, no P-state table, no gpu_metrics.
    bridge(m, "0000:00:01.0", 0x8086, 0x1901)
    extra = {"vbios_version": "113-C5530100-101\n"}
    extra.update(hwmon(0, "radeon", {
        "temp1_input": "43000\n", "temp1_crit": "120000\n", "temp1_crit_hyst": "90000\n",
        "pwm1": "102\n", "pwm1_max": "255\n", "pwm1_min": "0\n", "pwm1_enable": "2\n",
    }))
    extra.update(drm(0, 128, ["DVI-I-1", "HDMI-A-1"]))
    pci_device(m, "0000:00:01.0", "0000:01:00.0", (0x1002, 0x6819, 0x1682, 0x3231, 0x00), "radeon", 0x030000, extra)


def rx580_deep_sleep(m):
    # An RX 580 in deep sleep: no level marked in either table; a PWM fan without tachometer.
    bridge(m, "0000:00:01.0", 0x8086, 0x1901)
    write(os.path.join(m, "dev/dri/renderD128"), "")
    extra = {
        "gpu_busy_percent": "0\n", "vbios_version": "113-1E3871U-O4M\n",
        "mem_info_vram_total": "8589934592\n", "mem_info_vram_used": "402653184\n",
        "mem_info_vram_vendor": "samsung\n",
        "pp_dpm_sclk": lines("0: 300Mhz", "1: 600Mhz", "2: 900Mhz", "3: 1145Mhz", "4: 1215Mhz", "5: 1257Mhz",
                             "6: 1300Mhz", "7: 1366Mhz"),
        "pp_dpm_mclk": lines("0: 300Mhz", "1: 1000Mhz", "2: 1750Mhz"),
    }
    extra.update(hwmon(1, "amdgpu", {
        "temp1_input": "34000\n", "temp1_label": "edge\n", "in0_input": "750\n", "in0_label": "vddgfx\n",
        "power1_average": "8180000\n", "power1_cap": "145000000\n", "power1_cap_default": "145000000\n",
        "power1_cap_min": "0\n", "power1_cap_max": "217000000\n",
        "pwm1": "70\n", "pwm1_max": "255\n",
        "freq1_input": "300000000\n", "freq1_label": "sclk\n", "freq2_input": "300000000\n", "freq2_label": "mclk\n",
    }))
    extra.update(drm(0, 128, ["DP-1", "HDMI-A-1", "DVI-D-1"]))
    pci_device(m, "0000:00:01.0", "0000:01:00.0", (0x1002, 0x67DF, 0x1DA2, 0xE366, 0xE7), "amdgpu", 0x030000, extra)


def rx6800_metrics():
    # The RDNA 2 card keeps its tree; only its gpu_metrics is written here.
    path = os.path.join(ROOT, "amdgpu-rx6800/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0/gpu_metrics")
    write(path, gpu_metrics(1, 3, {
        "temperature_edge": 45, "temperature_hotspot": 52, "temperature_mem": 48,
        "temperature_vrgfx": 44, "temperature_vrsoc": 41, "temperature_vrmem": 43,
        "average_socket_power": 41, "current_fan_speed": 1100, "indep_throttle_status": 0}))
    print("wrote amdgpu-rx6800 gpu_metrics")


def main():
    machine("amdgpu-rx7900xtx", "6.8.0-45-generic", rx7900xtx)
    machine("amdgpu-rx9070xt", "6.14.0-15-generic", rx9070xt)
    machine("amdgpu-apu-vangogh", "6.5.0-steamdeck", apu_vangogh)
    machine("radeon-hd7850", "5.15.0-119-generic", radeon_hd7850)
    machine("amdgpu-rx580-deep-sleep", "6.1.0-26-amd64", rx580_deep_sleep)
    rx6800_metrics()
    # The same tables start the fuzz target's corpus.
    corpus = os.path.join(ROOT, "..", "..", "fuzz", "corpus", "amd_gpu_metrics")
    for name in ("amdgpu-rx6800", "amdgpu-rx7900xtx", "amdgpu-rx9070xt", "amdgpu-apu-vangogh"):
        for folder, _, files in os.walk(os.path.join(ROOT, name, "sys", "devices")):
            if "gpu_metrics" in files:
                with open(os.path.join(folder, "gpu_metrics"), "rb") as f:
                    write(os.path.join(corpus, name), f.read())
    print("wrote the corpus of amd_gpu_metrics")
    return 0


if __name__ == "__main__":
    sys.exit(main())
