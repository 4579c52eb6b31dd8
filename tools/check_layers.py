#!/usr/bin/env python3
"""Checks every #include of the program's sources against the allowed edges between its layers.

Usage: check_layers.py SOURCE_ROOT      exit 0 when every edge is allowed, 1 with one line per fault
       check_layers.py --self-check     plants faults in a small tree and expects each to be reported

A quoted include names a file from the source root ("kalidor/platform/pci_address.h"); it must name exactly
one file there, or one of the headers the build writes. The table below is the picture in ARCHITECTURE.md.
"""
import os
import re
import sys
import tempfile

# Most specific folder first: the first prefix that matches names the layer.
LAYERS = [
    ("base/", "base"),
    ("kalidor/gpu_database/", "gpu_database"),
    ("kalidor/", "kalidor"),
    ("compute/", "compute"),
    ("vulkan/", "vulkan"),
    ("report/online/", "online"),
    ("report/", "report"),
    ("exporter/", "exporter"),
    ("demos/gl_utility/", "gl_utility"),
    ("engine/", "engine"),
    ("demos/", "demos"),
    ("app/", "app"),
    ("packaging/", "packaging"),
]

# Which layers each layer may include, besides itself.
ALLOWED = {
    "base": set(),
    "gpu_database": {"base"},
    "kalidor": {"base", "gpu_database"},
    "compute": {"base", "kalidor"},
    "vulkan": {"base", "kalidor"},
    "report": {"base", "gpu_database", "kalidor", "compute", "vulkan"},
    "online": {"base", "gpu_database", "kalidor", "compute", "vulkan", "report"},
    "exporter": {"base", "gpu_database", "kalidor", "report"},
    "gl_utility": {"base", "kalidor"},
    "engine": {"base", "gl_utility"},
    "demos": {"base", "kalidor", "compute", "gl_utility", "engine"},
    "app": {"base", "gpu_database", "kalidor", "compute", "vulkan", "report", "online", "exporter", "gl_utility",
            "engine", "demos"},
    "packaging": {"base", "app"},
}

# The hardware library is reached through its facade and its snapshot only; its platform, vendor and OpenGL
# internals are its own. The extension table is shared data the OpenGL panel looks notes and links up in.
PUBLIC_HEADERS = {
    "kalidor": {"kalidor/kalidor.h", "kalidor/machine_snapshot.h", "kalidor/opengl/extension_link_table.h"},
}

# Headers the build writes, by the name they are included as, and the layer they belong to.
GENERATED = {
    "base/version.h": "base",
    "surface_deformer.inc": "demos",
    "shader_table.inc": "gl_utility",
    "particles.inc": "demos",
    "postfx.inc": "demos",
}

# System headers only some layers may use: the window toolkit stays in the application, the HTTP server library
# in the exporter, the HTTP client in the online exchange and the application.
SYSTEM_ONLY_IN = [
    (re.compile(r"^Q[A-Za-z]*(/|$)"), {"app"}),
    (re.compile(r"^microhttpd\.h$"), {"exporter"}),
    (re.compile(r"^curl/"), {"online", "app"}),
]

SOURCE_SUFFIXES = (".cpp", ".h", ".c", ".inc")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]', re.M)


def layer_of(relative):
    for prefix, layer in LAYERS:
        if relative.startswith(prefix):
            return layer
    return None


def program_files(root):
    for prefix in sorted({p.split("/")[0] for p, _ in LAYERS}):
        for folder, _, names in os.walk(os.path.join(root, prefix)):
            for name in sorted(names):
                if name.endswith(SOURCE_SUFFIXES):
                    yield os.path.relpath(os.path.join(folder, name), root)


def faults_in(root):
    faults = []
    for relative in program_files(root):
        source_layer = layer_of(relative)
        with open(os.path.join(root, relative), encoding="utf-8", errors="replace") as f:
            text = f.read()
        for match in INCLUDE.finditer(text):
            kind, name = match.group(1), match.group(2)
            line = text.count("\n", 0, match.start()) + 1
            where = f"{relative}:{line}"
            if kind == "<":
                for pattern, layers in SYSTEM_ONLY_IN:
                    if pattern.search(name) and source_layer not in layers:
                        faults.append(f"{where}: <{name}> is not for the {source_layer} layer")
                continue
            if name in GENERATED:
                target_layer = GENERATED[name]
            elif os.path.isfile(os.path.join(root, name)) and not name.startswith((".", "/")):
                target_layer = layer_of(name)
                if target_layer is None:
                    faults.append(f'{where}: "{name}" is outside every layer')
                    continue
            else:
                faults.append(f'{where}: "{name}" does not name a file from the source root')
                continue
            if target_layer != source_layer and target_layer not in ALLOWED[source_layer]:
                faults.append(f'{where}: {source_layer} may not include {target_layer} ("{name}")')
            elif target_layer != source_layer and name not in PUBLIC_HEADERS.get(target_layer, {name}):
                faults.append(f'{where}: "{name}" is internal to the {target_layer} layer')
    return faults


def self_check():
    """A tree with one allowed include and each kind of fault; every fault must be found, nothing else."""
    files = {
        "base/log_sink.h": "#pragma once\n",
        "kalidor/kalidor.h": '#include "base/log_sink.h"\n',
        "compute/cuda_discovery.h": '#include "app/app_log.h"\n',  # back up
        "report/json_report.cpp": '#include "json_report.h"\n',  # not from the root
        "demos/harness/demo_host.cpp": "#include <QWidget>\n",  # toolkit below the application
        "app/metrics_mode.cpp": "#include <microhttpd.h>\n",  # the server library outside the exporter
        "exporter/metrics_server.cpp": '#include "report/json_report.h"\n#include <microhttpd.h>\n',
        "exporter/metrics_text.cpp": '#include "compute/cuda_discovery.h"\n',  # beside, not below
        "app/app_log.h": '#include "kalidor/kalidor.h"\n#include <QWidget>\n',
        "report/json_report.h": "",
        "report/report_generator.cpp": '#include "kalidor/platform/pci_bus.h"\n',  # inside the library
        "kalidor/platform/pci_bus.h": "",
    }
    expected = [
        "app/metrics_mode.cpp:1: <microhttpd.h> is not for the app layer",
        'exporter/metrics_text.cpp:1: exporter may not include compute ("compute/cuda_discovery.h")',
        'compute/cuda_discovery.h:1: compute may not include app ("app/app_log.h")',
        "demos/harness/demo_host.cpp:1: <QWidget> is not for the demos layer",
        'report/json_report.cpp:1: "json_report.h" does not name a file from the source root',
        'report/report_generator.cpp:1: "kalidor/platform/pci_bus.h" is internal to the kalidor layer',
    ]
    with tempfile.TemporaryDirectory() as root:
        for name, text in files.items():
            os.makedirs(os.path.dirname(os.path.join(root, name)), exist_ok=True)
            with open(os.path.join(root, name), "w") as f:
                f.write(text)
        found = sorted(faults_in(root))
    if found != sorted(expected):
        print("the layer check reports", found, "instead of", sorted(expected))
        return 1
    return 0


def main(argv):
    if argv[1:] == ["--self-check"]:
        return self_check()
    if len(argv) != 2:
        print(__doc__.strip().splitlines()[2], file=sys.stderr)
        return 2
    faults = faults_in(argv[1])
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
