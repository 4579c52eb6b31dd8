#include "kalidor/platform/pci_names.h"

extern "C" {
#include <pci/pci.h>
}

#include <unistd.h>

#include <csetjmp>
#include <memory>

namespace Kalidornm {

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
    const char* text = pci_lookup_name(access, name, sizeof name, flags, int(vendor & 0xFFFF), int(device & 0xFFFF));
    tLibpciGaveUp = nullptr;
    return text;
}

std::string lookUp(const std::string& idsFile, int flags, uint32_t vendor, uint32_t device) {
    std::unique_ptr<pci_access, void (*)(pci_access*)> access(pci_alloc(), pci_cleanup);
    if (!access) return {};
    access->error = abandonLibpciCall;
    access->warning = ignoreLibpciMessage;
    access->debug = ignoreLibpciMessage;
    if (!idsFile.empty()) {
        pci_set_name_list_path(access.get(), const_cast<char*>(idsFile.c_str()), 0);
        flags |= PCI_LOOKUP_NO_HWDB;
    }
    char name[256] = {};
    const char* text = lookUpName(access.get(), name, flags, vendor, device);
    // After giving up on a damaged list libpci keeps the names read before the damage and does not read the
    // list again, so a second lookup names what it can and numbers the rest.
    if (!text) text = lookUpName(access.get(), name, flags, vendor, device);
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
