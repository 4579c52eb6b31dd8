#include "platform/nvidia_sysfs.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace Kalidornm {

namespace {

std::string firstLine(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

uint32_t hexFile(const std::filesystem::path& file) {
    return uint32_t(std::strtoul(firstLine(file).c_str(), nullptr, 16));
}

}  // namespace

std::vector<SysfsNvidiaGpu> listSysfsNvidiaGpus(const std::string& rootDir) {
    namespace fs = std::filesystem;
    std::vector<SysfsNvidiaGpu> gpus;
    std::error_code error;
    std::vector<fs::path> devices;
    for (fs::directory_iterator it(fs::path(rootDir) / "sys/bus/pci/devices", error), end; !error && it != end;
         it.increment(error))
        devices.push_back(it->path());
    std::sort(devices.begin(), devices.end());

    for (const fs::path& dir : devices) {
        if (hexFile(dir / "vendor") != 0x10DE || (hexFile(dir / "class") >> 16) != 0x03) continue;
        SysfsNvidiaGpu gpu;
        gpu.vendorId = 0x10DE;
        gpu.deviceId = hexFile(dir / "device");
        gpu.subvendorId = hexFile(dir / "subsystem_vendor");
        gpu.subdeviceId = hexFile(dir / "subsystem_device");
        // "0000:01:00.0": domain, bus, device.function
        const std::string name = dir.filename().string();
        const size_t colon = name.find(':');
        if (colon != std::string::npos) gpu.bus = int32_t(std::strtol(name.c_str() + colon + 1, nullptr, 16));
        gpu.suspended = firstLine(dir / "power/runtime_status") == "suspended";
        gpus.push_back(gpu);
    }
    return gpus;
}

}  // namespace Kalidornm
