#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kalidor/platform/pci_bus.h"

namespace Kalidornm {

// One entry of the AMD adapter list: one per display output of each card, so a card with three outputs
// stands three times. Only the fields the reader uses.
struct AmdAdapterInfo {
    int32_t iAdapterIndex = 0;
    PciAddress address;  // of the card; all its outputs share it
    int32_t iBusNumber = -1;
    int32_t iVendorID = 0;  // the hex digits of the PCI vendor read as a decimal number: 0x1002 gives 1002
    char strAdapterName[256] = {};
    int32_t iPresent = 0;  // the device is bound to the driver
    int32_t iExist = 0;    // the device has a card node; a card without one is a GPU all the same
    uint32_t device = 0;   // position of the card in the device list the entry came from
};

// The adapter list of the bound devices, in device order: one entry per DRM connector, and one for a card
// without connectors (a render-only or powered-down card still is a GPU). `adapterNames` holds one name per
// device.
std::vector<AmdAdapterInfo> buildAmdAdapterList(const std::vector<const PciDevice*>& devices,
                                                const std::vector<std::string>& adapterNames);

// The hex digits of a PCI vendor id read as a decimal number; -1 if a digit is A to F.
int32_t decimalDigitsOfHex(uint32_t vendorId);

// The adapter filter: one adapter per card. False if the card's address was seen before (another output of
// it); else the address is remembered and the adapter taken. Cards are told apart by their whole address,
// the PCI domain included.
bool amdAdapterIsNew(const AmdAdapterInfo& info, std::vector<PciAddress>& seen);

}  // namespace Kalidornm
