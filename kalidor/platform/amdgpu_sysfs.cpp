#include "amdgpu_sysfs.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace Kalidornm {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> entryNames(const std::string& dir) {
    std::vector<std::string> names;
    std::error_code ec;
    fs::directory_iterator it(dir, ec);
    for (const fs::directory_iterator end; !ec && it != end; it.increment(ec))
        names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string firstLine(const std::string& path) {
    std::string text;
    if (!readSysfsFile(path, text)) return {};
    const size_t end = text.find_first_of("\r\n");
    return end == std::string::npos ? text : text.substr(0, end);
}

// The id files hold "0x1002"; anything else reads 0.
uint32_t hexIdFile(const std::string& path) {
    const std::string text = firstLine(path);
    char* end = nullptr;
    const unsigned long value = std::strtoul(text.c_str(), &end, 16);
    return (end == text.c_str() || value > 0xFFFF) ? 0 : uint32_t(value);
}

bool boundToAmdgpu(const std::string& deviceDir) {
    std::string uevent;
    if (!readSysfsFile(deviceDir + "/uevent", uevent)) return false;
    return uevent.find("DRIVER=amdgpu\n") != std::string::npos ||
           (uevent.size() >= 13 && uevent.compare(uevent.size() - 13, 13, "DRIVER=amdgpu") == 0);
}

// "DDDD:BB:DD.F": the bus is the second field, in hex.
int32_t busOf(const std::string& address) {
    const size_t colon = address.find(':');
    if (colon == std::string::npos || colon + 3 > address.size()) return -1;
    char* end = nullptr;
    const std::string bus = address.substr(colon + 1, 2);
    const long value = std::strtol(bus.c_str(), &end, 16);
    return end == bus.c_str() + 2 ? int32_t(value) : -1;
}

void readDrmNodes(AmdgpuDevice& device) {
    const std::string drmDir = device.deviceDir + "/drm";
    for (const std::string& card : entryNames(drmDir)) {
        if (card.rfind("card", 0) != 0 || card.find('-') != std::string::npos) continue;
        device.hasCardNode = true;
        for (const std::string& entry : entryNames(drmDir + "/" + card))
            if (entry.rfind(card + "-", 0) == 0) device.connectors.push_back(entry);
        break;
    }
}

}  // namespace

bool readSysfsFile(const std::string& path, std::string& text) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    char buffer[4096];
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    ::close(fd);
    if (got < 0) return false;
    text.assign(buffer, size_t(got));
    return true;
}

bool sysfsPathExists(const std::string& path) {
    std::error_code ec;
    return fs::exists(path, ec);
}

std::vector<AmdgpuDevice> listAmdgpuDevices(const std::string& rootDir) {
    std::vector<AmdgpuDevice> devices;
    const std::string pciDir = rootDir + "/sys/bus/pci/devices";
    for (const std::string& address : entryNames(pciDir)) {
        AmdgpuDevice device;
        device.pciAddress = address;
        device.deviceDir = pciDir + "/" + address;
        if (!boundToAmdgpu(device.deviceDir)) continue;
        device.vendorId = hexIdFile(device.deviceDir + "/vendor");
        device.deviceId = hexIdFile(device.deviceDir + "/device");
        device.subvendorId = hexIdFile(device.deviceDir + "/subsystem_vendor");
        device.subdeviceId = hexIdFile(device.deviceDir + "/subsystem_device");
        device.revision = hexIdFile(device.deviceDir + "/revision");
        device.busNumber = busOf(address);
        readDrmNodes(device);
        for (const std::string& hwmon : entryNames(device.deviceDir + "/hwmon"))
            if (hwmon.rfind("hwmon", 0) == 0) {
                device.hwmonDir = device.deviceDir + "/hwmon/" + hwmon;
                break;
            }
        device.runtimeStatus = firstLine(device.deviceDir + "/power/runtime_status");
        device.vramVendor = firstLine(device.deviceDir + "/mem_info_vram_vendor");
        const std::string total = firstLine(device.deviceDir + "/mem_info_vram_total");
        char* end = nullptr;
        const unsigned long long bytes = std::strtoull(total.c_str(), &end, 10);
        if (end != total.c_str() && *end == '\0' && total[0] != '-') device.vramTotalBytes = bytes;
        devices.push_back(std::move(device));
    }
    return devices;
}

}  // namespace Kalidornm
