#include "pci_names.h"

extern "C" {
#include <pci/pci.h>
}

#include <unistd.h>

#include <memory>

namespace Kalidornm {

namespace {

// libpci reports through these hooks, which only pci_init sets; without them a missing or malformed name list
// calls through a null pointer. Names are a nicety: problems with the list are ignored.
void ignoreLibpciMessage(char*, ...) {}

std::string lookUp(const std::string& idsFile, int flags, uint32_t vendor, uint32_t device) {
    std::unique_ptr<pci_access, void (*)(pci_access*)> access(pci_alloc(), pci_cleanup);
    if (!access) return {};
    access->error = ignoreLibpciMessage;
    access->warning = ignoreLibpciMessage;
    access->debug = ignoreLibpciMessage;
    if (!idsFile.empty()) {
        pci_set_name_list_path(access.get(), const_cast<char*>(idsFile.c_str()), 0);
        flags |= PCI_LOOKUP_NO_HWDB;
    }
    char name[256] = {};
    const char* text = pci_lookup_name(access.get(), name, sizeof name, flags, int(vendor & 0xFFFF),
                                       int(device & 0xFFFF));
    return text ? std::string(text) : std::string();
}

}  // namespace

std::string pciIdsListFor(const KalidorSources& sources) {
    if (!sources.pciIdsFile.empty()) return sources.pciIdsFile;
    if (underRoot(sources, "/") == "/") return {};
    for (const char* list : {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"}) {
        const std::string path = underRoot(sources, list);
        if (::access(path.c_str(), R_OK) == 0) return path;
    }
    return {};
}

std::string pciDeviceName(const std::string& idsFile, uint32_t vendor, uint32_t device) {
    return lookUp(idsFile, PCI_LOOKUP_VENDOR | PCI_LOOKUP_DEVICE, vendor, device);
}

std::string pciDeviceOnlyName(const std::string& idsFile, uint32_t vendor, uint32_t device) {
    return lookUp(idsFile, PCI_LOOKUP_DEVICE | PCI_LOOKUP_NO_NUMBERS, vendor, device);
}

}  // namespace Kalidornm
