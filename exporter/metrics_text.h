#pragma once

#include <string>

#include "kalidor/machine_snapshot.h"

// The Prometheus text exposition (format 0.0.4) of a machine snapshot's live samples: base units, one
// HELP and TYPE per family, every GPU series labelled with `gpu`, its PCI address. A reading the GPU did not
// give is left out, never written as 0; a sleeping GPU gives its info series and `lumenscope_gpu_suspended 1`
// only.
namespace exporter {

// `readSeconds`: how long reading the sample took, written as lumenscope_scrape_duration_seconds.
std::string renderMetricsText(const Kalidornm::MachineSnapshot& machine, double readSeconds);

// A label value as the format requires it: backslash, double quote and line feed escaped.
std::string escapedLabelValue(const std::string& value);

// The `gpu` label of a GPU: its PCI address, or "index:N" for one off the PCI bus.
std::string gpuLabel(const Kalidornm::GpuSnapshot& gpu, size_t index);

}  // namespace exporter
