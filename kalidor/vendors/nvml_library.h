#pragma once

#include <string>

#include "base/dynamic_library.h"
#include "kalidor/vendors/nvml_api.h"

namespace Kalidornm {

// The management library, loaded by path or soname, with the entry points the NVIDIA reader uses. Where NVML
// has several versions of a call the newest one the library exports is bound. A null optional pointer means
// the library is too old for that read, which then fails as any other missing interface does.
class NvmlLibrary {
public:
    NvmlLibrary() = default;
    ~NvmlLibrary();  // shuts NVML down if it was started, then unloads it
    NvmlLibrary(const NvmlLibrary&) = delete;
    NvmlLibrary& operator=(const NvmlLibrary&) = delete;

    // Loads the library and binds its entry points; false when the file is missing or a required entry point
    // is absent.
    bool load(const std::string& path);
    // nvmlInitWithFlags without attaching any GPU; nvmlInit_v2, or nvmlInit, on a library without it.
    bool start();
    bool started() const { return m_started; }

    // Required.
    decltype(&nvmlInit) init = nullptr;
    decltype(&nvmlShutdown) shutdown = nullptr;
    decltype(&nvmlSystemGetDriverVersion) systemGetDriverVersion = nullptr;
    decltype(&nvmlDeviceGetCount) deviceGetCount = nullptr;
    decltype(&nvmlDeviceGetHandleByIndex) deviceGetHandleByIndex = nullptr;
    decltype(&nvmlDeviceGetPciInfo) deviceGetPciInfo = nullptr;
    decltype(&nvmlDeviceGetName) deviceGetName = nullptr;

    // Optional.
    decltype(&nvmlInitWithFlags) initWithFlags = nullptr;
    decltype(&nvmlDeviceGetHandleByPciBusId) deviceGetHandleByPciBusId = nullptr;
    decltype(&nvmlSystemGetNVMLVersion) systemGetNvmlVersion = nullptr;
    decltype(&nvmlDeviceGetMemoryInfo) deviceGetMemoryInfo = nullptr;
    decltype(&nvmlDeviceGetVbiosVersion) deviceGetVbiosVersion = nullptr;
    decltype(&nvmlDeviceGetNumGpuCores) deviceGetNumGpuCores = nullptr;
    decltype(&nvmlDeviceGetMemoryBusWidth) deviceGetMemoryBusWidth = nullptr;
    decltype(&nvmlDeviceGetBoardId) deviceGetBoardId = nullptr;
    decltype(&nvmlDeviceGetTemperature) deviceGetTemperature = nullptr;
    decltype(&nvmlDeviceGetFieldValues) deviceGetFieldValues = nullptr;
    decltype(&nvmlDeviceGetFanSpeed_v2) deviceGetFanSpeedOfFan = nullptr;
    decltype(&nvmlDeviceGetFanSpeed) deviceGetFanSpeed = nullptr;
    decltype(&nvmlDeviceGetFanSpeedRPM) deviceGetFanSpeedRpm = nullptr;
    decltype(&nvmlDeviceGetUtilizationRates) deviceGetUtilizationRates = nullptr;
    decltype(&nvmlDeviceGetDecoderUtilization) deviceGetDecoderUtilization = nullptr;
    decltype(&nvmlDeviceGetClockInfo) deviceGetClockInfo = nullptr;
    decltype(&nvmlDeviceGetMaxClockInfo) deviceGetMaxClockInfo = nullptr;
    decltype(&nvmlDeviceGetDefaultApplicationsClock) deviceGetDefaultApplicationsClock = nullptr;
    decltype(&nvmlDeviceGetClock) deviceGetClock = nullptr;
    decltype(&nvmlDeviceGetGpcClkVfOffset) deviceGetGpcClkVfOffset = nullptr;
    decltype(&nvmlDeviceGetMemClkVfOffset) deviceGetMemClkVfOffset = nullptr;
    decltype(&nvmlDeviceSetApplicationsClocks) deviceSetApplicationsClocks = nullptr;
    decltype(&nvmlDeviceGetPerformanceState) deviceGetPerformanceState = nullptr;
    // Recent libraries only: the P-state list and each state's clock range.
    decltype(&nvmlDeviceGetSupportedPerformanceStates) deviceGetSupportedPerformanceStates = nullptr;
    decltype(&nvmlDeviceGetMinMaxClockOfPState) deviceGetMinMaxClockOfPState = nullptr;
    // The clocks event reasons, or the older throttle-reasons call of the same shape.
    decltype(&nvmlDeviceGetCurrentClocksEventReasons) deviceGetClocksEventReasons = nullptr;
    decltype(&nvmlDeviceGetPowerUsage) deviceGetPowerUsage = nullptr;
    decltype(&nvmlDeviceGetEnforcedPowerLimit) deviceGetEnforcedPowerLimit = nullptr;
    decltype(&nvmlDeviceGetPowerManagementLimit) deviceGetPowerManagementLimit = nullptr;
    decltype(&nvmlDeviceGetPowerManagementDefaultLimit) deviceGetPowerManagementDefaultLimit = nullptr;
    decltype(&nvmlDeviceGetPowerManagementLimitConstraints) deviceGetPowerManagementLimitConstraints = nullptr;
    decltype(&nvmlDeviceSetPowerManagementLimit) deviceSetPowerManagementLimit = nullptr;
    decltype(&nvmlDeviceGetTotalEnergyConsumption) deviceGetTotalEnergyConsumption = nullptr;  // Volta and later
    // _v3 or _v2; when neither is there, the first form with its shorter entries.
    decltype(&nvmlDeviceGetGraphicsRunningProcesses_v3) deviceGetGraphicsRunningProcesses = nullptr;
    decltype(&nvmlDeviceGetGraphicsRunningProcesses) deviceGetGraphicsRunningProcessesV1 = nullptr;

private:
    base::DynamicLibrary m_library;
    bool m_started = false;
};

}  // namespace Kalidornm
