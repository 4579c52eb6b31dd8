#include "pci_ids_file.h"

#include <cstdio>
#include <cstring>
#include <memory>

namespace Kalidornm {

namespace {

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};

std::string lookUp(FILE* list, uint32_t vendorId, uint32_t deviceId) {
    char vendorKey[8], deviceKey[8];
    std::snprintf(vendorKey, sizeof vendorKey, "%04x  ", vendorId & 0xFFFF);
    std::snprintf(deviceKey, sizeof deviceKey, "%04x  ", deviceId & 0xFFFF);
    char line[512];
    bool inVendor = false;
    while (std::fgets(line, sizeof line, list)) {
        if (line[0] == '#' || line[0] == '\n') continue;
        if (line[0] != '\t') {
            // A new vendor block (or the class list at the end) closes the one we were in.
            if (inVendor) return {};
            inVendor = std::strncmp(line, vendorKey, 6) == 0;
            continue;
        }
        if (!inVendor || line[1] == '\t' || std::strncmp(line + 1, deviceKey, 6) != 0) continue;
        std::string name(line + 7);
        while (!name.empty() && (name.back() == '\n' || name.back() == '\r')) name.pop_back();
        return name;
    }
    return {};
}

}  // namespace

std::string pciIdsDeviceName(const std::string& rootDir, uint32_t vendorId, uint32_t deviceId) {
    for (const char* path : {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"}) {
        std::unique_ptr<FILE, FileCloser> list(std::fopen((rootDir + path).c_str(), "r"));
        if (list) return lookUp(list.get(), vendorId, deviceId);
    }
    return {};
}

}  // namespace Kalidornm
