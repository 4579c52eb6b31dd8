#!/usr/bin/env python3
"""Regenerates vulkan/vulkan_field_rows.cpp and vulkan/vulkan_name_tables.cpp from the Vulkan headers.

Usage, from the repository root:
    tools/gen_vulkan_tables.py [--header /usr/include/vulkan/vulkan_core.h]

The header comes with Debian's libvulkan-dev. The build never runs this script: its output is committed.
Each member of the structures below becomes one row (member name, offset, how it is printed); the members that
are structures of their own (the limits and sparse properties inside the device properties) are groups of
their own. The name tables hold the bit and value names the reports print for flags and enumerations.
"""

import argparse
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

# (structure, table name, expected row count or None): in the order every output shows them.
GROUPS = [
    ("VkPhysicalDeviceProperties", "kPropertiesRows", 7),
    ("VkPhysicalDeviceLimits", "kLimitsRows", 106),
    ("VkPhysicalDeviceSparseProperties", "kSparseRows", 5),
    ("VkPhysicalDeviceDriverProperties", "kDriverRows", 4),
    ("VkPhysicalDeviceIDProperties", "kIdRows", 5),
    ("VkPhysicalDevicePCIBusInfoPropertiesEXT", "kPciBusRows", 4),
    ("VkPhysicalDeviceFeatures", "kFeaturesRows", 55),
    ("VkPhysicalDeviceVulkan11Features", "kFeatures11Rows", None),
    ("VkPhysicalDeviceVulkan12Features", "kFeatures12Rows", None),
    ("VkPhysicalDeviceVulkan13Features", "kFeatures13Rows", None),
    ("VkPhysicalDeviceVulkan11Properties", "kProperties11Rows", None),
    ("VkPhysicalDeviceVulkan12Properties", "kProperties12Rows", None),
    ("VkPhysicalDeviceVulkan13Properties", "kProperties13Rows", None),
]

# Where each structure sits in a VulkanDeviceRecord: a member path, optional when it ends in '?'.
LOCATIONS = {
    "VkPhysicalDeviceProperties": "properties",
    "VkPhysicalDeviceLimits": "properties.limits",
    "VkPhysicalDeviceSparseProperties": "properties.sparseProperties",
    "VkPhysicalDeviceDriverProperties": "driver?",
    "VkPhysicalDeviceIDProperties": "ids?",
    "VkPhysicalDevicePCIBusInfoPropertiesEXT": "pciBus?",
    "VkPhysicalDeviceFeatures": "features",
    "VkPhysicalDeviceVulkan11Features": "features11?",
    "VkPhysicalDeviceVulkan12Features": "features12?",
    "VkPhysicalDeviceVulkan13Features": "features13?",
    "VkPhysicalDeviceVulkan11Properties": "properties11?",
    "VkPhysicalDeviceVulkan12Properties": "properties12?",
    "VkPhysicalDeviceVulkan13Properties": "properties13?",
}

SCALAR_TYPES = {
    "VkBool32": "Bool32",
    "uint32_t": "Uint32",
    "int32_t": "Int32",
    "VkDeviceSize": "Uint64",
    "uint64_t": "Uint64",
    "size_t": "Size",
    "float": "Float",
    "VkSampleCountFlags": "SampleCounts",
    "VkShaderStageFlags": "ShaderStages",
    "VkSubgroupFeatureFlags": "SubgroupOps",
    "VkResolveModeFlags": "ResolveModes",
    "VkPointClippingBehavior": "PointClipping",
    "VkShaderFloatControlsIndependence": "FloatControls",
    "VkDriverId": "DriverId",
    "VkConformanceVersion": "Conformance",
    "VkPhysicalDeviceType": "DeviceType",
}
ARRAY_TYPES = {
    ("uint32_t", False): "Uint32Array",
    ("float", False): "FloatArray",
    ("uint8_t", "VK_UUID_SIZE"): "Uuid",
    ("uint8_t", "VK_LUID_SIZE"): "Luid",
    ("char", False): "Text",
}
# Members that are structures of their own group, and members printed in a way their C type does not say.
NESTED = {"limits", "sparseProperties"}
BY_NAME = {("VkPhysicalDeviceProperties", "apiVersion"): "ApiVersion"}

# (table name, C enumeration, flags?, value filter)
NAME_TABLES = [
    ("SampleCount", "VkSampleCountFlagBits", True),
    ("ShaderStage", "VkShaderStageFlagBits", True),
    ("SubgroupFeature", "VkSubgroupFeatureFlagBits", True),
    ("ResolveMode", "VkResolveModeFlagBits", True),
    ("PointClipping", "VkPointClippingBehavior", False),
    ("FloatControls", "VkShaderFloatControlsIndependence", False),
    ("DriverId", "VkDriverId", False),
    ("DeviceType", "VkPhysicalDeviceType", False),
    ("FormatFeature", "VkFormatFeatureFlagBits", True),
    ("MemoryProperty", "VkMemoryPropertyFlagBits", True),
    ("MemoryHeap", "VkMemoryHeapFlagBits", True),
    ("Queue", "VkQueueFlagBits", True),
    ("Format", "VkFormat", False),
    ("Result", "VkResult", False),
]
# Values from this one on belong to extensions; the core formats end before it.
EXTENSION_VALUE_BASE = 1000000000


def struct_members(header, name):
    match = re.search(r"typedef struct %s \{(.*?)\} %s;" % (name, name), header, re.S)
    if not match:
        sys.exit("gen_vulkan_tables: no structure %s in the header" % name)
    members = []
    for line in match.group(1).strip().splitlines():
        m = re.match(r"\s*(?:const\s+)?(\w+)\s*(\*?)\s*(\w+)(?:\[(\w+)\])?;", line)
        if not m:
            sys.exit("gen_vulkan_tables: cannot read %r in %s" % (line, name))
        members.append((m.group(1), m.group(2), m.group(3), m.group(4)))
    return members


LINE_LIMIT = 120


def alias_of(table):
    return table[1:-len("Rows")]  # kLimitsRows: Limits


def row_for(struct, alias, ctype, pointer, member, array):
    if member in ("sType", "pNext") or member in NESTED:
        return None
    if (struct, member) in BY_NAME:
        kind = BY_NAME[(struct, member)]
    elif array is None:
        kind = SCALAR_TYPES.get(ctype)
    else:
        kind = ARRAY_TYPES.get((ctype, array)) or ARRAY_TYPES.get((ctype, False))
    if kind is None or pointer:
        sys.exit("gen_vulkan_tables: no row type for %s %s.%s[%s]" % (ctype, struct, member, array))
    count = ", " + array if array is not None else ""
    line = '    {"%s", offsetof(%s, %s), T::%s%s},' % (member, alias, member, kind, count)
    if len(line) <= LINE_LIMIT:
        return line
    return '    {"%s",\n     offsetof(%s, %s), T::%s%s},' % (member, alias, member, kind, count)


def enum_values(header, name, flags):
    match = re.search(r"typedef enum %s \{(.*?)\} %s;" % (name, name), header, re.S)
    if not match:
        sys.exit("gen_vulkan_tables: no enumeration %s in the header" % name)
    values = []
    seen = set()
    for m in re.finditer(r"^\s*(VK_\w+)\s*=\s*(-?(?:0x[0-9A-Fa-f]+|\d+))\s*,?\s*$", match.group(1), re.M):
        symbol, value = m.group(1), int(m.group(2), 0)
        if symbol.endswith("_MAX_ENUM") or value in seen:
            continue  # aliases are written as names and never reach here; a repeated number is one too
        if flags and (value == 0 or value & (value - 1)):
            continue  # masks such as VK_SHADER_STAGE_ALL are not bits of their own
        if name == "VkFormat" and (value == 0 or value >= EXTENSION_VALUE_BASE):
            continue
        seen.add(value)
        values.append((value, symbol))
    return values


def write_rows(header, out):
    lines = [
        "// Written by tools/gen_vulkan_tables.py from the Vulkan headers (vulkan_core.h, version %s);"
        % header_version(header),
        "// regenerate with that script rather than editing by hand.",
        '#include "vulkan/vulkan_fields.h"',
        "",
        "#include <cstddef>",
        "#include <iterator>",
        "",
        "namespace vulkan {",
        "namespace {",
        "",
        "using T = VkFieldType;",
        "",
    ]
    for struct, table, expected in GROUPS:
        alias = alias_of(table)
        rows = [r for r in (row_for(struct, alias, *m) for m in struct_members(header, struct)) if r]
        if expected is not None and len(rows) != expected:
            sys.exit("gen_vulkan_tables: %s has %d rows, expected %d" % (struct, len(rows), expected))
        lines.append("using %s = %s;" % (alias, struct))
        lines.append("constexpr VkFieldRow %s[] = {" % table)
        lines.extend(rows)
        lines.append("};")
        if expected is not None:
            lines.append("static_assert(std::size(%s) == %d);" % (table, expected))
        lines.append("")
    lines.append("constexpr VkFieldGroup kGroups[] = {")
    for struct, table, _ in GROUPS:
        where = LOCATIONS[struct]
        if where.endswith("?"):
            body = "return d.%s ? &*d.%s : nullptr;" % (where[:-1], where[:-1])
        else:
            body = "return &d.%s;" % where
        lines.append('    {"%s", %s,' % (struct, table))
        lines.append('     [](const VulkanDeviceRecord& d) -> const void* { %s }},' % body)
    lines += ["};", "", "}  // namespace", "", "std::span<const VkFieldGroup> vkFieldGroups() { return kGroups; }", "",
              "}  // namespace vulkan"]
    write(out, lines)


def write_names(header, out):
    lines = [
        "// Written by tools/gen_vulkan_tables.py from the Vulkan headers (vulkan_core.h, version %s);"
        % header_version(header),
        "// regenerate with that script rather than editing by hand.",
        '#include "vulkan/vulkan_names.h"',
        "",
        "#include <iterator>",
        "",
        "namespace vulkan {",
        "namespace {",
        "",
    ]
    cases = []
    for table, enum, flags in NAME_TABLES:
        values = enum_values(header, enum, flags)
        lines.append("constexpr VkNamedValue k%sNames[] = {" % table)
        lines.extend('    {%s, "%s"},' % (value if value >= 0 else "uint32_t(%d)" % value, symbol)
                     for value, symbol in values)
        lines.append("};")
        cases.append("    case VkNameTable::%s: return k%sNames;" % (table, table))
    lines += [
        "",
        "}  // namespace",
        "",
        "std::span<const VkNamedValue> vkNames(VkNameTable table) {",
        "    switch (table) {",
    ]
    lines += cases
    lines += ["    }", "    return {};", "}", "", "}  // namespace vulkan"]
    write(out, lines)


def header_version(header):
    m = re.search(r"#define VK_HEADER_VERSION (\d+)", header)
    return m.group(1) if m else "unknown"


def write(path, lines):
    with open(path, "w") as f:
        f.write("\n".join(lines) + "\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--header", default="/usr/include/vulkan/vulkan_core.h")
    args = parser.parse_args()
    with open(args.header) as f:
        header = f.read()
    write_rows(header, os.path.join(ROOT, "vulkan", "vulkan_field_rows.cpp"))
    write_names(header, os.path.join(ROOT, "vulkan", "vulkan_name_tables.cpp"))


if __name__ == "__main__":
    main()
