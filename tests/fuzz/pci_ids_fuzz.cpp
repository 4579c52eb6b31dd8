// The PCI id list from any file: the name lookups through libpci, which a damaged /usr/share/misc/pci.ids
// reaches. The first part of the input holds the vendor and device
// to look up as hex ("10de 2204"), the second the list.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_input.h"
#include "fuzz/scratch_root.h"
#include "kalidor/platform/pci_names.h"

using namespace Kalidornm;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static ScratchRoot root;
    const std::vector<std::string_view> parts = splitFuzzInput(data, size);
    const std::string ids(parts.size() > 0 ? parts[0] : std::string_view());
    unsigned vendor = 0, device = 0;
    std::sscanf(ids.c_str(), "%x %x", &vendor, &device);

    root.clear();
    if (parts.size() > 1) root.write("usr/share/misc/pci.ids", parts[1]);

    const std::string list = root.path() + "/usr/share/misc/pci.ids";
    if (pciDeviceName(list, vendor, device).find('\n') != std::string::npos) std::abort();
    if (pciDeviceOnlyName(list, vendor, device).find('\n') != std::string::npos) std::abort();
    return 0;
}
