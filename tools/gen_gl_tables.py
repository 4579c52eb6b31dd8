#!/usr/bin/env python3
"""Regenerates the OpenGL data tables of kalidor/opengl/ from the design notes.

    tools/gen_gl_tables.py DESIGN_NOTES.md [GL_HEADER ...]

Writes kalidor/opengl/extension_link_table.inc (the 394 known extensions with note and link) and
kalidor/opengl/gl_cap_table.inc (the 406 catalogue rows with their glGet parameters, resolved from the
GL headers, /usr/include/GL/glew.h and glext.h by default).
"""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
REGISTRY = "https://registry.khronos.org/OpenGL/extensions"

# Names whose glGet parameter differs from the registry's spelling of the name.
PNAME_OVERRIDES = {
    "GL_NVX_GPU_MEMORY_INFO_DEDICATED_VIDMEM_NVX": 0x9047,
    "GL_NVX_GPU_MEMORY_INFO_TOTAL_AVAILABLE_MEMORY_NVX": 0x9048,
    "GL_NVX_GPU_MEMORY_INFO_CURRENT_AVAILABLE_VIDMEM_NVX": 0x9049,
    "GL_NVX_GPU_MEMORY_INFO_EVICTION_COUNT_NVX": 0x904A,
    "GL_NVX_GPU_MEMORY_INFO_EVICTED_MEMORY_NVX": 0x904B,
    "GL_MAX_COMPUTE_FIXED_GROUP_INVOCATIONS_ARB": 0x90EB,
    "GL_MAX_COMPUTE_FIXED_GROUP_SIZE_ARB": 0x91BF,
}
# Core rows read only from a context of this version on (major * 10 + minor).
CORE_MIN_VERSION = {
    "GL_NUM_PROGRAM_BINARY_FORMATS": 41,
    "GL_MAX_COMPUTE_WORK_GROUP_COUNT": 43,
    "GL_MAX_COMPUTE_WORK_GROUP_SIZE": 43,
}
VALUE_TYPES = {"": 1, "float": 2, "int64": 4, "triple": 5}


def section(lines, title):
    """The lines of the top-level chapter whose heading ends with `title`, up to the next chapter."""
    start = next(i for i, line in enumerate(lines) if line.startswith("# ") and line.rstrip().endswith(title))
    end = next((i for i in range(start + 1, len(lines)) if lines[i].startswith("# ")), len(lines))
    return lines[start:end]


def c_string(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def expand_note(mark):
    if not mark:
        return ""
    if mark.startswith('"'):
        return mark.strip('"')
    m = re.fullmatch(r"r([\d.]+)c([\d.]+)", mark)
    if m:
        return f"Requires OpenGL {m.group(1)} / Core Feature of OpenGL {m.group(2)}"
    m = re.fullmatch(r"r([\d.]+)", mark)
    if m:
        return f"Requires OpenGL {m.group(1)}"
    if re.fullmatch(r"[\d.]+", mark):
        return f"OpenGL {mark}"
    raise SystemExit(f"unknown note mark {mark!r}")


def url_by_name(name):
    parts = name.split("_", 2)
    if parts[0] == "WGL":
        return f"{REGISTRY}/{parts[1]}/{name}.txt"
    return f"{REGISTRY}/{parts[1]}/{parts[1]}_{parts[2]}.txt"


def url_for_odd_path(name, path):
    # The old path names the file that holds the extension, which may be another extension's.
    parts = path.strip("/").split("/")
    if len(parts) < 2 or not parts[-1].endswith(".txt"):
        return url_by_name(name)
    vendor, stem = parts[-2], parts[-1][:-4]
    if stem.lower().startswith("wgl_"):
        return url_by_name(name)
    if stem.lower().startswith(vendor.lower() + "_"):
        stem = stem[len(vendor) + 1:]
    return f"{REGISTRY}/{vendor}/{vendor}_{stem}.txt"


def extension_rows(lines):
    part = section(lines, "Extension lists and specification links")
    odd = {}
    for line in part:
        m = re.fullmatch(r"\| `((?:GL|WGL)_\w+)` \| (/\S*) \|", line.strip())
        if m:
            odd[m.group(1)] = m.group(2)
    text = next(line for line in part if line.startswith("`GL_3DFX"))
    rows = []
    for item in text.strip().rstrip(".").split(";"):
        m = re.fullmatch(r'\s*`(\w+)`\s*(.*?)\s*([RHSDN-])\s*', item)
        if not m:
            raise SystemExit(f"cannot read extension row {item!r}")
        name, mark, link = m.groups()
        url = "" if link == "-" else (url_for_odd_path(name, odd[name]) if name in odd else url_by_name(name))
        rows.append((name, expand_note(mark), url))
    return rows


def header_values(paths):
    values, aliases = {}, {}
    for path in paths:
        with open(path) as f:
            text = f.read()
        for m in re.finditer(r"^#define (GL_\w+) (0x[0-9A-Fa-f]+|\d+)\b", text, re.M):
            values.setdefault(m.group(1), int(m.group(2), 0))
        # Some names are defined as another name (GL_MAX_CLIP_DISTANCES is GL_MAX_CLIP_PLANES).
        for m in re.finditer(r"^#define (GL_\w+) (GL_\w+)\s*$", text, re.M):
            aliases.setdefault(m.group(1), m.group(2))
    for name, target in aliases.items():
        if name not in values and target in values:
            values[name] = values[target]
    return values


def catalogue_rows(lines, values):
    part = section(lines, "OpenGL capability catalogue")
    rows, groups = [], []
    for line in part:
        m = re.fullmatch(r"\| `(GL_\w+)` \| (\d+) \| (.*) \|", line.strip())
        if not m:
            continue
        group, count = m.group(1), int(m.group(2))
        names = re.findall(r"`(GL_\w+)`(?: \((\w+)\))?", m.group(3))
        if len(names) != count:
            raise SystemExit(f"{group}: {len(names)} names, {count} announced")
        core = group.startswith("GL_VERSION_")
        groups.append((group, count, core))
        for name, kind in names:
            pname = PNAME_OVERRIDES.get(name, values.get(name))
            if pname is None:
                # Names the headers spell without the vendor suffix share the value of the plain name.
                base = re.sub(r"_(EXT|ARB|NV|SGIS|SGIX|AMD|APPLE|PGI|SGI)$", "", name)
                pname = values.get(base)
                if pname is None:
                    raise SystemExit(f"no value for {name}")
                print(f"{name}: value of {base}", file=sys.stderr)
            min_version = CORE_MIN_VERSION.get(name, 0) if core else 0
            rows.append((pname, VALUE_TYPES[kind], name, group, core, min_version))
    return rows, groups


def main():
    if len(sys.argv) < 2:
        raise SystemExit(__doc__)
    with open(sys.argv[1]) as f:
        lines = f.read().splitlines()
    headers = sys.argv[2:] or ["/usr/include/GL/glew.h", "/usr/include/GL/glext.h"]
    banner = ("// Generated by tools/gen_gl_tables.py from the design notes' tables; do not edit by hand.\n")

    ext = extension_rows(lines)
    with open(os.path.join(ROOT, "kalidor/opengl/extension_link_table.inc"), "w") as f:
        f.write(banner + "// name, note, specification link\n")
        for name, note, url in ext:
            f.write(f"{{{c_string(name)}, {c_string(note)}, {c_string(url)}}},\n")

    caps, groups = catalogue_rows(lines, header_values(headers))
    with open(os.path.join(ROOT, "kalidor/opengl/gl_cap_table.inc"), "w") as f:
        f.write(banner + "// pname, value type, name, group, core row, least context version (major * 10 + minor)\n")
        for pname, vtype, name, group, core, min_version in caps:
            f.write(f"{{0x{pname:04X}, {vtype}, {c_string(name)}, {c_string(group)}, "
                    f"{'true' if core else 'false'}, {min_version}}},\n")
    core_rows = sum(c for _, c, core in groups if core)
    print(f"{len(ext)} extension rows; {len(caps)} catalogue rows ({core_rows} core) in {len(groups)} groups")


if __name__ == "__main__":
    main()
