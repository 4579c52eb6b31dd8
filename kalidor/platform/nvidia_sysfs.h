#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Kalidornm {

// An NVIDIA display controller as the kernel lists it under <rootDir>/sys/bus/pci/devices.
struct SysfsNvidiaGpu {
    uint32_t vendorId = 0, deviceId = 0, subvendorId = 0, subdeviceId = 0;
    int32_t bus = -1;
    bool suspended = false;  // runtime power status "suspended": the GPU sleeps and must not be woken
};

// The NVIDIA display controllers (PCI class 0x03), in directory-name order; empty without sysfs.
std::vector<SysfsNvidiaGpu> listSysfsNvidiaGpus(const std::string& rootDir);

}  // namespace Kalidornm
