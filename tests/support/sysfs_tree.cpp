#include "tests/support/sysfs_tree.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

std::string hex(uint32_t value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%0*x", digits, value);
    return text;
}

}  // namespace

SysfsTree::Device SysfsTree::gpu(const std::string& address, uint32_t vendor, uint32_t device,
                                 const std::string& driver, const std::string& runtimeStatus) {
    Device d;
    d.address = address;
    d.vendor = vendor;
    d.device = device;
    d.driver = driver;
    d.runtimeStatus = runtimeStatus;
    return d;
}

SysfsTree::SysfsTree() {
    static std::atomic<int> serial{0};
    m_root = (fs::temp_directory_path() /
              ("sysfs_tree_" + std::to_string(::getpid()) + "_" + std::to_string(++serial)))
                 .string();
    fs::remove_all(m_root);
    fs::create_directories(m_root + "/sys/bus/pci/devices");
}

SysfsTree::~SysfsTree() {
    std::error_code ignored;
    fs::remove_all(m_root, ignored);
}

void SysfsTree::write(const std::string& path, const std::string& text) const {
    const fs::path file = m_root + path;
    fs::create_directories(file.parent_path());
    fs::remove(file);
    std::ofstream(file, std::ios::binary) << text;
}

void SysfsTree::makeFifo(const std::string& path) const {
    const fs::path file = m_root + path;
    fs::create_directories(file.parent_path());
    fs::remove(file);
    ::mkfifo(file.c_str(), 0600);
}

std::string SysfsTree::addDevice(const Device& d) {
    // A device on bus 0 hangs off the host bridge; any other sits behind a bridge of its own.
    const std::string domain = d.address.substr(0, d.address.find(':'));
    const std::string bus = d.address.substr(domain.size() + 1, 2);
    std::string relative = "pci" + domain + ":00/";
    if (bus != "00") relative += domain + ":00:1c." + std::to_string(std::stoi(bus, nullptr, 16) % 8) + "/";
    relative += d.address;
    const std::string dir = "/sys/devices/" + relative;
    write(dir + "/vendor", hex(d.vendor, 4) + "\n");
    write(dir + "/device", hex(d.device, 4) + "\n");
    write(dir + "/subsystem_vendor", hex(d.subvendor, 4) + "\n");
    write(dir + "/subsystem_device", hex(d.subdevice, 4) + "\n");
    write(dir + "/revision", hex(d.revision, 2) + "\n");
    write(dir + "/class", hex(d.pciClass, 6) + "\n");
    write(dir + "/boot_vga", d.bootVga ? "1\n" : "0\n");
    write(dir + "/power/runtime_status", d.runtimeStatus + "\n");
    std::string uevent = d.driver.empty() ? "" : "DRIVER=" + d.driver + "\n";
    uevent += "PCI_SLOT_NAME=" + d.address + "\n";
    write(dir + "/uevent", uevent);
    if (!d.drmCard.empty()) {
        write(dir + "/drm/" + d.drmCard + "/dev", "226:0\n");
        for (const std::string& connector : d.connectors)
            write(dir + "/drm/" + d.drmCard + "/" + connector + "/status", "connected\n");
    }
    if (!d.renderNode.empty()) write(dir + "/drm/" + d.renderNode + "/dev", "226:128\n");

    // The driver link climbs from the device directory back to /sys.
    std::string toSys;
    for (size_t slashes = std::count(dir.begin(), dir.end(), '/') - 1; slashes > 0; --slashes) toSys += "../";
    if (!d.driver.empty()) {
        fs::create_directories(m_root + "/sys/bus/pci/drivers/" + d.driver);
        fs::create_symlink(toSys + "bus/pci/drivers/" + d.driver, m_root + dir + "/driver");
    }
    fs::create_symlink("../../../devices/" + relative, m_root + "/sys/bus/pci/devices/" + d.address);
    return dir;
}
