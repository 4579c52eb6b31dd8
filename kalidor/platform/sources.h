#pragma once

#include <cstdint>
#include <string>

namespace Kalidornm {

// Where the library reads the machine from. Tests point these at fixture trees and fake libraries; a real run
// uses the defaults.
struct KalidorSources {
    std::string rootDir = "/";  // prefix for /sys, /proc, /etc and /dev paths
    std::string pciIdsFile;     // the PCI id list for device names; empty: libpci's own default
    std::string eglLibrary = "libEGL.so.1";  // asked for a software rasterizer when no PCI display device exists
    std::string nvmlLibrary = "libnvidia-ml.so.1";  // NVIDIA's management library, by soname or path
    std::string amdgpuLibrary = "libdrm_amdgpu.so.1";  // asked for an AMD card's memory type
    // Microseconds of a monotonic clock, which rates of the driver's counters (energy, idle time) are taken
    // over; null: the system's steady clock. Tests step it by hand.
    int64_t (*monotonicMicroseconds)() = nullptr;
};

// rootDir joined with an absolute path ("/sys/..."), with exactly one slash between them.
std::string underRoot(const KalidorSources& sources, const std::string& absolutePath);
std::string underRoot(const std::string& rootDir, const std::string& absolutePath);

}  // namespace Kalidornm
