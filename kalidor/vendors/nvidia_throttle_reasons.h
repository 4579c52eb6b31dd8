#pragma once

#include <iterator>
#include <string>
#include <vector>

#include "kalidor/vendors/nvml_api.h"

namespace Kalidornm {

// The driver's reasons for holding the clocks down, one bit each, by the short names every output uses.
struct NvidiaThrottleReason {
    unsigned long long bit;
    const char* name;
};

inline constexpr NvidiaThrottleReason kNvidiaThrottleReasons[] = {
    {nvmlClocksEventReasonGpuIdle, "gpu_idle"},
    {nvmlClocksEventReasonApplicationsClocksSetting, "applications_clocks_setting"},
    {nvmlClocksEventReasonSwPowerCap, "sw_power_cap"},
    {nvmlClocksEventReasonHwSlowdown, "hw_slowdown"},
    {nvmlClocksEventReasonSyncBoost, "sync_boost"},
    {nvmlClocksEventReasonSwThermalSlowdown, "sw_thermal_slowdown"},
    {nvmlClocksEventReasonHwThermalSlowdown, "hw_thermal_slowdown"},
    {nvmlClocksEventReasonHwPowerBrakeSlowdown, "hw_power_brake_slowdown"},
    {nvmlClocksEventReasonDisplayClockSetting, "display_clock_setting"},
};
static_assert(std::size(kNvidiaThrottleReasons) == 9);

// The names of the bits set in `reasons`, in table order; bits the table does not know are left out.
inline std::vector<std::string> nvidiaThrottleReasonNames(unsigned long long reasons) {
    std::vector<std::string> names;
    for (const NvidiaThrottleReason& reason : kNvidiaThrottleReasons)
        if (reasons & reason.bit) names.emplace_back(reason.name);
    return names;
}

}  // namespace Kalidornm
