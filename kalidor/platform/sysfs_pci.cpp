#include "sysfs_pci.h"

extern "C" {
#include <pci/pci.h>
}

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <csetjmp>
#include <memory>

#include "sources.h"
#include "sysfs_files.h"

namespace Kalidornm {

namespace {

constexpr const char* kPciDevicesDir = "/sys/bus/pci/devices";

std::vector<std::string> directoryEntries(const std::string& path) {
    std::vector<std::string> names;
    std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(path.c_str()), closedir);
    if (!dir) return names;
    while (dirent* entry = readdir(dir.get()))
        if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
    std::sort(names.begin(), names.end());
    return names;
}

bool isDirectory(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

std::string firstDrmCard(const std::string& devicePath) {
    for (const std::string& name : directoryEntries(devicePath + "/drm"))
        if (name.rfind("card", 0) == 0) return name;
    return {};
}

}  // namespace

std::vector<PciDisplayDevice> listPciDisplayDevices(const std::string& rootDir) {
    std::vector<PciDisplayDevice> devices;
    const std::string base = underRoot(rootDir, kPciDevicesDir);
    for (const std::string& address : directoryEntries(base)) {
        const std::string path = base + "/" + address;
        const auto pciClass = readHexNumber(path + "/class");
        if (!pciClass || (*pciClass >> 16) != 0x03) continue;
        PciDisplayDevice device;
        device.address = address;
        device.sysfsPath = std::string(kPciDevicesDir) + "/" + address;
        device.pciClass = uint32_t(*pciClass);
        device.vendor = uint32_t(readHexNumber(path + "/vendor").value_or(0));
        device.device = uint32_t(readHexNumber(path + "/device").value_or(0));
        device.subvendor = uint32_t(readHexNumber(path + "/subsystem_vendor").value_or(0));
        device.subdevice = uint32_t(readHexNumber(path + "/subsystem_device").value_or(0));
        device.revision = uint32_t(readHexNumber(path + "/revision").value_or(0));
        device.bootVga = readFirstLine(path + "/boot_vga").value_or("0") == "1";
        device.drmCard = firstDrmCard(path);
        devices.push_back(std::move(device));
    }
    return devices;
}

namespace {
// libpci reports through these hooks, which only pci_init sets; without them a missing or malformed name list
// calls through a null pointer. Names are a nicety: problems with the list are ignored.
void ignoreLibpciMessage(char*, ...) {}

// libpci's error hook must not return: it is how libpci gives up on a damaged name list (and on memory), and
// its callers are built on that. Ours jumps back into the lookup that is running on this thread.
thread_local std::jmp_buf* tLibpciGaveUp = nullptr;
__attribute__((noreturn)) void abandonLibpciCall(char*, ...) { std::longjmp(*tLibpciGaveUp, 1); }

// pci_lookup_name, or null when libpci gave up. Only libpci's C frames lie between the jump and this one.
const char* lookUpName(pci_access* access, char (&name)[256], int flags, uint32_t vendor, uint32_t device) {
    std::jmp_buf gaveUp;
    tLibpciGaveUp = &gaveUp;
    if (setjmp(gaveUp) != 0) {
        tLibpciGaveUp = nullptr;
        return nullptr;
    }
    const char* text = pci_lookup_name(access, name, sizeof name, flags, int(vendor), int(device));
    tLibpciGaveUp = nullptr;
    return text;
}
}  // namespace

std::string pciDeviceName(const std::string& idsFile, uint32_t vendor, uint32_t device) {
    // Only the name list is used: no access method is initialised and no device is scanned, so libpci never
    // touches config space.
    std::unique_ptr<pci_access, void (*)(pci_access*)> access(pci_alloc(), pci_cleanup);
    if (!access) return {};
    access->error = abandonLibpciCall;
    access->warning = ignoreLibpciMessage;
    access->debug = ignoreLibpciMessage;
    if (!idsFile.empty()) pci_set_name_list_path(access.get(), const_cast<char*>(idsFile.c_str()), 0);
    char name[256] = {};
    const int flags = PCI_LOOKUP_VENDOR | PCI_LOOKUP_DEVICE | (idsFile.empty() ? 0 : PCI_LOOKUP_NO_HWDB);
    const char* text = lookUpName(access.get(), name, flags, vendor, device);
    // After giving up on a damaged list libpci keeps the names read before the damage and does not read the
    // list again, so a second lookup names what it can and numbers the rest.
    if (!text) text = lookUpName(access.get(), name, flags, vendor, device);
    return text ? std::string(text) : std::string();
}

bool readSysfsDriverFacts(const std::string& rootDir, const std::string& sysfsPath, SysfsDriverFacts* facts) {
    if (!facts || sysfsPath.rfind("/sys/", 0) != 0) return false;
    const std::string path = underRoot(rootDir, sysfsPath);
    if (!isDirectory(path)) return false;

    SysfsDriverFacts result;
    result.kernelDriver = linkTargetName(path + "/driver");
    result.suspended = readFirstLine(path + "/power/runtime_status").value_or("") == "suspended";
    if (!result.kernelDriver.empty())
        result.moduleVersion =
            readFirstLine(underRoot(rootDir, "/sys/module/" + result.kernelDriver + "/version")).value_or("");
    result.kernelRelease = readFirstLine(underRoot(rootDir, "/proc/sys/kernel/osrelease")).value_or("");
    result.kernelVersion = readFirstLine(underRoot(rootDir, "/proc/sys/kernel/version")).value_or("");
    if (result.kernelDriver == "nvidia")
        result.nvidiaVersionLine = readFirstLine(underRoot(rootDir, "/proc/driver/nvidia/version")).value_or("");
    if (!result.suspended) {
        result.vbiosVersion = readFirstLine(path + "/vbios_version").value_or("");
        if (const auto vram = readFirstLine(path + "/mem_info_vram_total"))
            result.vramBytes = std::strtoull(vram->c_str(), nullptr, 10);
    }
    *facts = std::move(result);
    return true;
}

}  // namespace Kalidornm
