#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kalidor/platform/pci_bus.h"

namespace Kalidornm {

// One labelled value file: a temperature by sensor name, a voltage by rail.
struct NamedFile {
    std::string name;
    std::string path;
};

// The files an Intel GPU (i915 or xe) is read from. Which exist depends on the driver, the card and the
// kernel version: an integrated GPU has no hwmon, older kernels have no fan and no temperature. A path left
// empty is a value the card does not give.
struct IntelCardFiles {
    // hwmon
    std::vector<NamedFile> temperatures;  // m°C, by the names of kSensorNames
    std::vector<NamedFile> voltages;      // mV, by the names of kRailNames
    std::vector<std::string> fans;        // RPM
    std::string energy;                   // µJ, the card's counter, else the package's
    std::vector<std::string> powerLimits;  // µW, in the order they stand for the card's limit; 0 is "none"
    // frequencies and residency of the first GT
    std::string actualMhz, requestedMhz;
    std::string idleResidencyMs;  // rc6 (i915) or gtidle (xe)
    std::string throttleStatus;   // 1 while anything holds the clocks down
    std::vector<NamedFile> throttleReasons;  // each 0 or 1, named as the driver names the reason
    std::optional<uint64_t> vramBytes;       // xe: the tiles' local memory; absent on integrated GPUs
};

// Finds the files of one device. It lists directories and reads the hwmon labels, so it is asked only
// while the device may be touched.
IntelCardFiles findIntelCardFiles(const PciDevice& device);

}  // namespace Kalidornm
