#include "kalidor/platform/pci_driver_facts.h"

#include "kalidor/platform/sources.h"
#include "kalidor/platform/sysfs_files.h"
#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

std::string kernelModuleVersion(const std::string& rootDir, const std::string& module) {
    if (module.empty() || module.find('/') != std::string::npos) return {};
    return readFirstLine(underRoot(rootDir, "/sys/module/" + module + "/version")).value_or("");
}

SysfsDriverFacts readDriverFacts(const std::string& rootDir, const PciDevice& device) {
    SysfsDriverFacts facts;
    facts.kernelDriver = device.driver;
    facts.suspended = device.asleep();
    facts.moduleVersion = kernelModuleVersion(rootDir, facts.kernelDriver);
    facts.kernelRelease = readFirstLine(underRoot(rootDir, "/proc/sys/kernel/osrelease")).value_or("");
    facts.kernelVersion = readFirstLine(underRoot(rootDir, "/proc/sys/kernel/version")).value_or("");
    if (facts.kernelDriver == "nvidia")
        facts.nvidiaVersionLine = readFirstLine(underRoot(rootDir, "/proc/driver/nvidia/version")).value_or("");
    if (!facts.suspended) {
        facts.vbiosVersion = readFirstLine(device.directory + "/vbios_version").value_or("");
        if (const auto text = readSmallFile(device.directory + "/mem_info_vram_total"))
            facts.vramBytes = parseSysfsUnsigned(firstLineOf(*text), kMaxVramBytes).value_or(0);
    }
    return facts;
}

}  // namespace Kalidornm
