#pragma once

#include <cstddef>
#include <cstdint>

namespace panels {

struct PciIds {
    uint32_t vendor = 0, device = 0, subvendor = 0, subdevice = 0;
};

// The retail name of a board whose four PCI ids match a row of the board table, or null.
const char* retailBoardName(const PciIds& ids);

// "Gigabyte (1458 - 403B)": the board maker by subvendor id, with subvendor and subdevice as four hex digits;
// an unknown maker gives the two numbers alone. Cut to fit `size`.
void formatBoardVendor(uint32_t subvendor, uint32_t subdevice, char* text, size_t size);

}  // namespace panels
