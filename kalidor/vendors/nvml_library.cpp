#include "kalidor/vendors/nvml_library.h"

#include <initializer_list>

namespace Kalidornm {

namespace {

// The first of the names that the library exports, so that versioned entry points win over plain ones.
template <typename Fn>
void bind(const base::DynamicLibrary& library, Fn*& slot, std::initializer_list<const char*> names) {
    slot = nullptr;
    for (const char* name : names)
        if ((slot = library.function<Fn>(name))) return;
}

}  // namespace

NvmlLibrary::~NvmlLibrary() {
    if (m_started && shutdown) shutdown();
}

bool NvmlLibrary::load(const std::string& path) {
    m_library = base::DynamicLibrary(path.c_str());
    if (!m_library) return false;
    const base::DynamicLibrary& l = m_library;

    bind(l, init, {"nvmlInit_v2", "nvmlInit"});
    bind(l, shutdown, {"nvmlShutdown"});
    bind(l, systemGetDriverVersion, {"nvmlSystemGetDriverVersion"});
    bind(l, deviceGetCount, {"nvmlDeviceGetCount_v2", "nvmlDeviceGetCount"});
    bind(l, deviceGetHandleByIndex, {"nvmlDeviceGetHandleByIndex_v2", "nvmlDeviceGetHandleByIndex"});
    bind(l, deviceGetPciInfo, {"nvmlDeviceGetPciInfo_v3", "nvmlDeviceGetPciInfo_v2", "nvmlDeviceGetPciInfo"});
    bind(l, deviceGetName, {"nvmlDeviceGetName"});

    bind(l, initWithFlags, {"nvmlInitWithFlags"});
    bind(l, deviceGetHandleByPciBusId, {"nvmlDeviceGetHandleByPciBusId_v2", "nvmlDeviceGetHandleByPciBusId"});
    bind(l, systemGetNvmlVersion, {"nvmlSystemGetNVMLVersion"});
    bind(l, deviceGetMemoryInfo, {"nvmlDeviceGetMemoryInfo"});
    bind(l, deviceGetVbiosVersion, {"nvmlDeviceGetVbiosVersion"});
    bind(l, deviceGetNumGpuCores, {"nvmlDeviceGetNumGpuCores"});
    bind(l, deviceGetMemoryBusWidth, {"nvmlDeviceGetMemoryBusWidth"});
    bind(l, deviceGetBoardId, {"nvmlDeviceGetBoardId"});
    bind(l, deviceGetTemperature, {"nvmlDeviceGetTemperature"});
    bind(l, deviceGetFieldValues, {"nvmlDeviceGetFieldValues"});
    bind(l, deviceGetFanSpeedOfFan, {"nvmlDeviceGetFanSpeed_v2"});
    bind(l, deviceGetFanSpeed, {"nvmlDeviceGetFanSpeed"});
    bind(l, deviceGetFanSpeedRpm, {"nvmlDeviceGetFanSpeedRPM"});
    bind(l, deviceGetUtilizationRates, {"nvmlDeviceGetUtilizationRates"});
    bind(l, deviceGetDecoderUtilization, {"nvmlDeviceGetDecoderUtilization"});
    bind(l, deviceGetClockInfo, {"nvmlDeviceGetClockInfo"});
    bind(l, deviceGetMaxClockInfo, {"nvmlDeviceGetMaxClockInfo"});
    bind(l, deviceGetDefaultApplicationsClock, {"nvmlDeviceGetDefaultApplicationsClock"});
    bind(l, deviceGetClock, {"nvmlDeviceGetClock"});
    bind(l, deviceGetGpcClkVfOffset, {"nvmlDeviceGetGpcClkVfOffset"});
    bind(l, deviceGetMemClkVfOffset, {"nvmlDeviceGetMemClkVfOffset"});
    bind(l, deviceSetApplicationsClocks, {"nvmlDeviceSetApplicationsClocks"});
    bind(l, deviceGetPerformanceState, {"nvmlDeviceGetPerformanceState"});
    bind(l, deviceGetSupportedPerformanceStates, {"nvmlDeviceGetSupportedPerformanceStates"});
    bind(l, deviceGetMinMaxClockOfPState, {"nvmlDeviceGetMinMaxClockOfPState"});
    bind(l, deviceGetClocksEventReasons,
         {"nvmlDeviceGetCurrentClocksEventReasons", "nvmlDeviceGetCurrentClocksThrottleReasons"});
    bind(l, deviceGetPowerUsage, {"nvmlDeviceGetPowerUsage"});
    bind(l, deviceGetEnforcedPowerLimit, {"nvmlDeviceGetEnforcedPowerLimit"});
    bind(l, deviceGetPowerManagementLimit, {"nvmlDeviceGetPowerManagementLimit"});
    bind(l, deviceGetPowerManagementDefaultLimit, {"nvmlDeviceGetPowerManagementDefaultLimit"});
    bind(l, deviceGetPowerManagementLimitConstraints, {"nvmlDeviceGetPowerManagementLimitConstraints"});
    bind(l, deviceSetPowerManagementLimit, {"nvmlDeviceSetPowerManagementLimit"});
    bind(l, deviceGetTotalEnergyConsumption, {"nvmlDeviceGetTotalEnergyConsumption"});
    bind(l, deviceGetGraphicsRunningProcesses,
         {"nvmlDeviceGetGraphicsRunningProcesses_v3", "nvmlDeviceGetGraphicsRunningProcesses_v2"});
    bind(l, deviceGetGraphicsRunningProcessesV1, {"nvmlDeviceGetGraphicsRunningProcesses"});

    // A library without these is not one the reader can use; the caller drops it.
    return init && shutdown && systemGetDriverVersion && deviceGetCount && deviceGetHandleByIndex &&
           deviceGetPciInfo && deviceGetName;
}

bool NvmlLibrary::start() {
    if (m_started) return true;
    if (initWithFlags)
        m_started = initWithFlags(NVML_INIT_FLAG_NO_ATTACH) == NVML_SUCCESS;
    else if (init)
        m_started = init() == NVML_SUCCESS;
    return m_started;
}

}  // namespace Kalidornm
