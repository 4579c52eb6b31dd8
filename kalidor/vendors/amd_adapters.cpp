#include "kalidor/vendors/amd_adapters.h"

#include <algorithm>

#include "kalidor/gpu_record.h"

namespace Kalidornm {

int32_t decimalDigitsOfHex(uint32_t vendorId) {
    int32_t value = 0;
    for (int shift = 12; shift >= 0; shift -= 4) {
        const uint32_t digit = (vendorId >> shift) & 0xF;
        if (digit > 9) return -1;
        value = value * 10 + int32_t(digit);
    }
    return value;
}

std::vector<AmdAdapterInfo> buildAmdAdapterList(const std::vector<const PciDevice*>& devices,
                                                const std::vector<std::string>& adapterNames) {
    std::vector<AmdAdapterInfo> list;
    for (size_t d = 0; d < devices.size(); ++d) {
        const PciDevice& device = *devices[d];
        AmdAdapterInfo info;
        info.address = device.address;
        info.iBusNumber = int32_t(device.address.bus);
        info.iVendorID = decimalDigitsOfHex(device.ids.vendor);
        copyText(info.strAdapterName, d < adapterNames.size() ? adapterNames[d].c_str() : "");
        info.iPresent = 1;  // listed because it is bound
        info.iExist = device.drmCard.empty() ? 0 : 1;
        info.device = uint32_t(d);
        const size_t outputs = std::max<size_t>(1, device.connectors.size());
        for (size_t output = 0; output < outputs; ++output) {
            info.iAdapterIndex = int32_t(list.size());
            list.push_back(info);
        }
    }
    return list;
}

bool amdAdapterIsNew(const AmdAdapterInfo& info, std::vector<PciAddress>& seen) {
    if (std::find(seen.begin(), seen.end(), info.address) != seen.end()) return false;
    seen.push_back(info.address);
    return true;
}

}  // namespace Kalidornm
