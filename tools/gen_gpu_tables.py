#!/usr/bin/env python3
"""Regenerates the GPU device tables in kalidor/gpu_database/.

Each vendor table is the classic rows (tools/gpu_db/classic_devices.txt: GPUs released up to
2015, in their order, so that row numbers and first-row-wins answers never change), then the
rows of later GPUs taken from the public PCI id list, then one all-zero closing row. Figures
come from tools/gpu_db/classic_figures.txt and tools/gpu_db/modern_figures.txt.

The later GPUs come from two copies of the public PCI id list: the system's pci.ids (Debian
package "pci.ids") and tools/gpu_db/pci_ids_newer_gpus.txt, a committed extract of the GPU lines
of a newer copy. The system list answers every id it has; the extract only adds ids the
system list lacks. Rows stay in device id order.

Usage, from the repository root:
    tools/gen_gpu_tables.py [--classic FILE] [--pci-ids /usr/share/misc/pci.ids]
                            [--newer-pci-ids FILE] [--out DIR]

The build never runs this script: its output is committed. Rerun it after editing one of the
inputs or when a newer pci.ids should contribute more devices.
A modern device id is only ever taken from a copy of the PCI id list, never typed in.
"""

import argparse
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DATA = os.path.join(ROOT, "tools", "gpu_db")

VENDORS = [
    # (table label, vendor id, file stem, name prefix of modern rows)
    ("NVIDIA", 0x10DE, "nvidia", "NVIDIA "),
    ("AMD", 0x1002, "amd", "AMD "),
    ("Intel", 0x8086, "intel", "Intel "),
    ("S3", 0x5333, "s3", "S3 "),
]

# Functions of a GPU package that are not the GPU itself.
NOT_A_GPU = re.compile(
    r"Audio|USB|UCSI|NVSwitch|Engineering Sample|Switch|Upstream Port|Downstream Port|"
    r"Cryptographic|Root Port|Host Bridge|Registers|Thermal|Gaussian|Imaging|Engine|"
    r"Reserved Dev ID|Initial Dev ?ID")

# Blackwell chips: GB100-GB120 datacenter, GB202-GB207 desktop and laptop, GB10B/GB20B SoCs.
NVIDIA_CHIPS = re.compile(r"^(GP1\d\d|GV100|TU1\d\d|GA1\d\d|AD1\d\d|GH100|GN2\d|GB[12]\d[\dB])")

# AMD chip names in pci.ids and the architecture tag that our codenames carry.
AMD_FAMILIES = [
    (re.compile(r"^(Ellesmere|Baffin|Lexa|Polaris ?\d+)"), "GCN4"),
    (re.compile(r"^(Vega ?\d+|Raven|Picasso|Renoir|Cezanne|Lucienne|Barcelo)"), "GCN5"),
    (re.compile(r"^Navi ?1\d"), "RDNA1"),
    (re.compile(r"^(Navi ?2\d|Rembrandt|Mendocino|Raphael|VanGogh)"), "RDNA2"),
    (re.compile(r"^(Granite Ridge|Sephiroth)"), "RDNA2"),
    (re.compile(r"^(Navi ?3\d|Phoenix|HawkPoint)"), "RDNA3"),
    (re.compile(r"^(Strix|Krackan)"), "RDNA3.5"),
    (re.compile(r"^Navi ?4\d"), "RDNA4"),
    (re.compile(r"^Arcturus"), "CDNA1"),
    (re.compile(r"^Aldebaran"), "CDNA2"),
    (re.compile(r"^Aqua Vanjaram"), "CDNA3"),
]
# pci.ids names the MI350 series after the MI300 chip, but it is the next architecture.
AMD_PRODUCT_FAMILIES = [
    (re.compile(r"^Instinct MI35\d"), "CDNA4"),
]

# Intel graphics by device id range, named after the platform where pci.ids gives no chip.
INTEL_FAMILIES = [
    (0x1900, 0x193F, "Skylake"),
    (0x3184, 0x3185, "GeminiLake"),
    (0x3E90, 0x3EAF, "CoffeeLake"),
    (0x4550, 0x457F, "ElkhartLake"),
    (0x4600, 0x46FF, "AlderLake"),
    (0x4900, 0x490F, "DG1"),
    (0x4C80, 0x4C9F, "RocketLake"),
    (0x4E50, 0x4E7F, "JasperLake"),
    (0x4F80, 0x4F8F, "DG2"),
    (0x5690, 0x56BF, "DG2"),
    (0x56C0, 0x56CF, "ATS-M"),
    (0x5900, 0x593F, "KabyLake"),
    (0x5A84, 0x5A85, "ApolloLake"),
    (0x6420, 0x64BF, "LunarLake"),
    (0x7D40, 0x7DDF, "MeteorLake"),
    (0x87C0, 0x87CF, "AmberLake"),
    (0x8A50, 0x8A5F, "IceLake"),
    (0x9840, 0x984F, "Lakefield"),
    (0x9A40, 0x9A7F, "TigerLake"),
    (0x9B00, 0x9BFF, "CometLake"),
    (0xA700, 0xA7FF, "RaptorLake"),
    (0xB080, 0xB0FF, "PantherLake"),
    (0xB640, 0xB64F, "ArrowLake"),
    (0xE200, 0xE22F, "Battlemage"),
    (0xFD80, 0xFD8F, "WildcatLake"),
]
INTEL_GRAPHICS = re.compile(r"Graphics|Arc|DG[12]|UHD|Iris|GPU Flex")


def fail(msg):
    sys.exit("gen_gpu_tables: " + msg)


def read_classic(path):
    """The classic device list: one section per vendor, lines of 'codename: id name; id name.'"""
    tables, cur = {}, None
    for lineno, raw in enumerate(open(path, encoding="utf-8"), 1):
        line = raw.rstrip("\n")
        m = re.match(r"^\*(\w+) table, vendor 0x([0-9A-F]{4}), (\d+) device ids\.\*$", line)
        if m:
            cur = (m.group(1), int(m.group(2), 16))
            tables[cur] = {"declared": int(m.group(3)), "rows": []}
            continue
        if not line.strip():
            continue
        if cur is None or ": " not in line or not line.endswith("."):
            fail(f"{path}:{lineno}: not a row line")
        # The codename is everything before the first ": ", spaces included; names keep their
        # trailing spaces, only the final full stop of the line is dropped.
        codename, rest = line.split(": ", 1)
        for entry in rest[:-1].split("; "):
            m = re.match(r"^([0-9A-F]{4}) (.*)$", entry, re.S)
            if not m:
                fail(f"{path}:{lineno}: bad entry {entry!r}")
            tables[cur]["rows"].append((int(m.group(1), 16), codename, m.group(2)))
    for (label, vid), t in tables.items():
        if len(t["rows"]) != t["declared"]:
            fail(f"{label}: {len(t['rows'])} rows, {t['declared']} declared")
    return tables


def read_figure_lines(path):
    for lineno, raw in enumerate(open(path, encoding="utf-8"), 1):
        line = raw.strip()
        if not line or line.startswith("#"):
            continue
        yield lineno, line


def read_classic_figures(path):
    figures = {}
    for lineno, line in read_figure_lines(path):
        fields = line.split(None, 8)
        if len(fields) != 9:
            fail(f"{path}:{lineno}: expected 9 fields")
        key = (int(fields[0], 16), int(fields[1], 16))
        if key in figures:
            fail(f"{path}:{lineno}: duplicate row")
        figures[key] = (tuple(int(p) for p in fields[2:8]), fields[8], lineno)
    return figures


def read_modern_figures(path):
    """Lines 'vendor | product | shaders tmus rops tdp', the product as pci.ids spells it."""
    figures = {}
    for lineno, line in read_figure_lines(path):
        fields = [p.strip() for p in line.split("|")]
        if len(fields) != 3:
            fail(f"{path}:{lineno}: expected three fields split by '|'")
        nums = fields[2].split()
        if len(nums) != 4:
            fail(f"{path}:{lineno}: expected shaders, TMUs, ROPs and TDP")
        key = (int(fields[0], 16), fields[1])
        if key in figures:
            fail(f"{path}:{lineno}: duplicate product")
        figures[key] = [tuple(int(n) for n in nums), lineno, False]
    return figures


def read_pci_ids(path):
    version, devices, vendor = "unknown", {}, None
    for raw in open(path, encoding="utf-8", errors="replace"):
        line = raw.rstrip("\n")
        m = re.match(r"^#\s*Version:\s*(\S+)", line)
        if m:
            version = m.group(1)
        if line.startswith("C "):
            break
        m = re.match(r"^([0-9a-f]{4})  (.*)$", line)
        if m:
            vendor = int(m.group(1), 16)
            continue
        m = re.match(r"^\t([0-9a-f]{4})  (.*)$", line)
        if m and vendor is not None:
            devices.setdefault(vendor, []).append((int(m.group(1), 16), m.group(2).strip()))
    return version, devices


def merge_newer(devices, newer):
    """The devices of the system list, plus those of the newer list whose id it lacks, by id."""
    merged = {}
    for vendor in set(devices) | set(newer):
        known = {dev for dev, _ in devices.get(vendor, [])}
        extra = [(dev, text) for dev, text in newer.get(vendor, []) if dev not in known]
        # sorted() is stable: should a list repeat an id, its first line still comes first.
        merged[vendor] = sorted(devices.get(vendor, []) + extra, key=lambda d: d[0])
    return merged


def split_chip(text):
    """'GP104 [GeForce GTX 1080]' gives ('GP104', 'GeForce GTX 1080'); no brackets gives (text, None)."""
    m = re.match(r"^(.*?)\s*\[(.*)\]\s*$", text)
    if m:
        return m.group(1).strip(), m.group(2).strip()
    return text.strip(), None


def modern_candidates(vendor_id, devices):
    """(device id, codename, product) for the later GPUs that pci.ids lists under the vendor."""
    out = []
    for dev, text in devices.get(vendor_id, []):
        if NOT_A_GPU.search(text):
            continue
        chip, product = split_chip(text)
        if vendor_id == 0x10DE:
            if not NVIDIA_CHIPS.match(chip):
                continue
            out.append((dev, chip, product or chip))
        elif vendor_id == 0x1002:
            tag = next((t for rx, t in AMD_FAMILIES if rx.match(chip)), None)
            if tag is None:
                continue
            tag = next((t for rx, t in AMD_PRODUCT_FAMILIES if product and rx.match(product)), tag)
            out.append((dev, f"{chip}({tag})", product or chip))
        elif vendor_id == 0x8086:
            family = next((f for lo, hi, f in INTEL_FAMILIES if lo <= dev <= hi), None)
            if family is None or not INTEL_GRAPHICS.search(text):
                continue
            out.append((dev, chip if product else family, product or text))
    return out


def c_string(text):
    out = []
    for b in text.encode("utf-8"):
        c = chr(b)
        if c in "\\\"" or (c == "?" and out and out[-1].endswith("?")):
            out.append("\\" + c)  # "?\?" keeps "??" from reading as a trigraph
        elif 32 <= b < 127:
            out.append(c)
        else:
            out.append("\\%03o" % b)  # octal escapes stop after three digits
    return '"' + "".join(out) + '"'


def row_line(dev, codename, name, figs):
    nums = ", ".join(str(n) for n in figs)
    return f"    {{0x{dev:04X}, {c_string(codename)}, {c_string(name)}, {nums}}},\n"


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("--classic", default=os.path.join(DATA, "classic_devices.txt"))
    ap.add_argument("--classic-figures", default=os.path.join(DATA, "classic_figures.txt"))
    ap.add_argument("--modern-figures", default=os.path.join(DATA, "modern_figures.txt"))
    ap.add_argument("--pci-ids", default="/usr/share/misc/pci.ids")
    ap.add_argument("--newer-pci-ids", default=os.path.join(DATA, "pci_ids_newer_gpus.txt"))
    ap.add_argument("--out", default=os.path.join(ROOT, "kalidor", "gpu_database"))
    args = ap.parse_args()

    classic = read_classic(args.classic)
    classic_figures = read_classic_figures(args.classic_figures)
    modern_figures = read_modern_figures(args.modern_figures)
    pci_version, devices = read_pci_ids(args.pci_ids)
    newer_version, newer = read_pci_ids(args.newer_pci_ids)
    devices = merge_newer(devices, newer)

    sizes = []
    for label, vid, stem, prefix in VENDORS:
        rows = classic[(label, vid)]["rows"]
        classic_ids = {dev for dev, _, _ in rows}
        lines = []
        for dev, codename, name in rows:
            entry = classic_figures.pop((vid, dev), None)
            if entry is not None:
                figs, check, lineno = entry
                if check != name.strip():
                    fail(f"classic_figures.txt:{lineno}: {check!r} is not the name {name!r}")
            else:
                figs = (-1, -1, -1, -1, -1, 0)
            lines.append(row_line(dev, codename, name, figs))

        modern, full = [], 0
        for dev, codename, product in modern_candidates(vid, devices):
            if dev in classic_ids:
                continue  # a classic row already answers this id; never shadow it
            entry = modern_figures.get((vid, product))
            if entry is not None:
                shaders, tmus, rops, tdp = entry[0]
                entry[2] = True
            else:
                shaders, tmus, rops, tdp = -1, -1, -1, 0
            if shaders > 0 and tmus > 0 and rops > 0 and tdp > 0:
                full += 1
            name = product if product.startswith(prefix) else prefix + product
            # Every later GPU has unified shaders: no separate vertex and pixel pipelines.
            modern.append(row_line(dev, codename, name, (shaders, 0, 0, tmus, rops, tdp)))

        path = os.path.join(args.out, f"gpu_table_{stem}.inc")
        with open(path, "w", encoding="utf-8") as f:
            f.write(f"// {label} device table (vendor 0x{vid:04X}), generated by tools/gen_gpu_tables.py\n"
                    f"// from tools/gpu_db/classic_devices.txt, tools/gpu_db/*_figures.txt, pci.ids {pci_version}\n"
                    f"// and the newer GPU lines of pci.ids {newer_version} (tools/gpu_db).\n"
                    "// Do not edit: change the inputs and rerun the generator.\n"
                    "// Fields: deviceId, codename, fullName, unifiedShaders, vertexPipes, pixelPipes,\n"
                    "// tmus, rops, tdpWatts.\n\n"
                    f"// Classic rows, GPUs up to 2015: {len(lines)}.\n")
            f.writelines(lines)
            f.write(f"\n// Later GPUs, ids from pci.ids: {len(modern)} rows, {full} with every figure.\n")
            f.writelines(modern)
            f.write("\n// Closing row: device id 0 finds it.\n"
                    "    {0x0000, \"\", \"\", 0, 0, 0, 0, 0, 0},\n")
        sizes.append((label, stem, len(lines), len(modern)))
        print(f"{label}: {len(lines)} classic rows, {len(modern)} later rows ({full} with every figure)")

    if classic_figures:
        fail("figures for rows that are not in the classic list: " +
             ", ".join(f"{v:04X}:{d:04X}" for v, d in classic_figures))
    unused = [f"{v:04X} {p} (line {e[1]})" for (v, p), e in modern_figures.items() if not e[2]]
    if unused:
        fail("modern figures that match no pci.ids product: " + "; ".join(unused))

    with open(os.path.join(args.out, "gpu_table_sizes.h"), "w", encoding="utf-8") as f:
        f.write("// Row counts of the generated device tables, written by tools/gen_gpu_tables.py\n"
                "// together with gpu_table_*.inc. Do not edit.\n"
                "#pragma once\n\n#include <cstddef>\n\nnamespace Kalidornm {\n\n")
        for label, stem, nclassic, nmodern in sizes:
            f.write(f"inline constexpr std::size_t {stem}ClassicRowCount = {nclassic};\n"
                    f"inline constexpr std::size_t {stem}LaterRowCount = {nmodern};\n")
        f.write("\n}  // namespace Kalidornm\n")


if __name__ == "__main__":
    main()
