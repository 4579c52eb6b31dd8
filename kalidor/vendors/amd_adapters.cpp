#include "amd_adapters.h"

#include <algorithm>
#include <cstdio>

#include "gpu_record.h"

namespace Kalidornm {

std::string pciDeviceIdText(uint32_t vendor, uint32_t device, uint32_t subvendor, uint32_t subdevice,
                            uint32_t revision) {
    char text[64];
    std::snprintf(text, sizeof text, "PCI\\VEN_%04X&DEV_%04X&SUBSYS_%04X%04X&REV_%02X", vendor & 0xFFFF,
                  device & 0xFFFF, subdevice & 0xFFFF, subvendor & 0xFFFF, revision & 0xFF);
    return text;
}

int32_t decimalDigitsOfHex(uint32_t vendorId) {
    int32_t value = 0;
    for (int shift = 12; shift >= 0; shift -= 4) {
        const uint32_t digit = (vendorId >> shift) & 0xF;
        if (digit > 9) return -1;
        value = value * 10 + int32_t(digit);
    }
    return value;
}

std::vector<AmdAdapterInfo> buildAmdAdapterList(const std::vector<AmdgpuDevice>& devices,
                                                const std::vector<std::string>& adapterNames) {
    std::vector<AmdAdapterInfo> list;
    for (size_t d = 0; d < devices.size(); ++d) {
        const AmdgpuDevice& device = devices[d];
        AmdAdapterInfo info;
        copyText(info.strUDID, pciDeviceIdText(device.vendorId, device.deviceId, device.subvendorId,
                                               device.subdeviceId, device.revision)
                                   .c_str());
        info.iBusNumber = device.busNumber;
        info.iVendorID = decimalDigitsOfHex(device.vendorId);
        copyText(info.strAdapterName, d < adapterNames.size() ? adapterNames[d].c_str() : "");
        info.iPresent = 1;  // listed because it is bound
        info.iExist = device.hasCardNode ? 1 : 0;
        info.device = uint32_t(d);
        const size_t outputs = std::max<size_t>(1, device.connectors.size());
        for (size_t output = 0; output < outputs; ++output) {
            info.iAdapterIndex = int32_t(list.size());
            list.push_back(info);
        }
    }
    return list;
}

bool amdAdapterIsNew(const AmdAdapterInfo& info, std::vector<int32_t>& seenBuses) {
    if (std::find(seenBuses.begin(), seenBuses.end(), info.iBusNumber) != seenBuses.end()) return false;
    seenBuses.push_back(info.iBusNumber);
    return info.iExist != 0 && info.iPresent != 0;
}

}  // namespace Kalidornm
