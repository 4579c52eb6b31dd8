#pragma once

#include <string>
#include <vector>

#include "kalidor/vendors/amd_live_reader.h"

namespace Kalidornm {

// The labelled inputs of an amdgpu or radeon hwmon directory, matched by their `<kind>N_label` files (the
// channel numbers differ between chips): temperatures under the sensor names, voltages under the rail names,
// and the engine and memory clocks. Reads only the label files; call it only while the card may be touched.
struct AmdHwmonInputs {
    std::vector<AmdLabelledInput> temperatures;  // tempN_input, m°C
    std::vector<AmdLabelledInput> voltages;      // inN_input, mV
    std::string engineClockHz, memoryClockHz;    // freqN_input, Hz; "" where the driver has none
};

AmdHwmonInputs resolveAmdHwmonInputs(const std::string& hwmonDir);

}  // namespace Kalidornm
