#include "kalidor/vendors/nvidia_gpu.h"

#include <cmath>
#include <cstdlib>

#include "kalidor/platform/process_name.h"
#include "kalidor/vendors/nvidia_limits.h"
#include "kalidor/vendors/nvidia_throttle_reasons.h"
#include "kalidor/vendors/nvml_library.h"

namespace Kalidornm {

namespace {

using namespace nvidia_limits;

nvmlDevice_t device(void* handle) { return static_cast<nvmlDevice_t>(handle); }

template <typename T, typename V>
void put(T* out, V value) {
    if (out) *out = T(value);
}

// A sensor the driver never reported leaves its output as the caller gave it.
void putReading(float* out, const TempSensor& sensor) {
    if (out && sensor.read) *out = sensor.current;
}

float percentOf(unsigned int part, unsigned int whole) { return float(double(part) * 100.0 / double(whole)); }

bool readTwoClocks(decltype(&nvmlDeviceGetClockInfo) call, nvmlDevice_t d, unsigned int& gpuMhz,
                   unsigned int& memMhz) {
    return call && call(d, NVML_CLOCK_GRAPHICS, &gpuMhz) == NVML_SUCCESS &&
           call(d, NVML_CLOCK_MEM, &memMhz) == NVML_SUCCESS && gpuMhz <= kMaxClockMhz && memMhz <= kMaxClockMhz;
}

// The base clocks: the default application clocks, or the same figures through the general clock query.
bool readDefaultClocks(const NvmlLibrary& nvml, nvmlDevice_t d, unsigned int& gpuMhz, unsigned int& memMhz) {
    if (readTwoClocks(nvml.deviceGetDefaultApplicationsClock, d, gpuMhz, memMhz)) return true;
    return nvml.deviceGetClock &&
           nvml.deviceGetClock(d, NVML_CLOCK_GRAPHICS, NVML_CLOCK_ID_APP_CLOCK_DEFAULT, &gpuMhz) == NVML_SUCCESS &&
           nvml.deviceGetClock(d, NVML_CLOCK_MEM, NVML_CLOCK_ID_APP_CLOCK_DEFAULT, &memMhz) == NVML_SUCCESS &&
           gpuMhz <= kMaxClockMhz && memMhz <= kMaxClockMhz;
}

bool fieldAsFloat(const nvmlFieldValue_t& field, float& value) {
    if (field.nvmlReturn != NVML_SUCCESS) return false;
    switch (field.valueType) {
        case NVML_VALUE_TYPE_DOUBLE: value = float(field.value.dVal); return true;
        case NVML_VALUE_TYPE_UNSIGNED_INT: value = float(field.value.uiVal); return true;
        case NVML_VALUE_TYPE_UNSIGNED_LONG: value = float(field.value.ulVal); return true;
        case NVML_VALUE_TYPE_UNSIGNED_LONG_LONG: value = float(field.value.ullVal); return true;
        case NVML_VALUE_TYPE_SIGNED_LONG_LONG: value = float(field.value.sllVal); return true;
        case NVML_VALUE_TYPE_SIGNED_INT: value = float(field.value.siVal); return true;
        default: return false;
    }
}

}  // namespace

bool NvidiaGpu::readTemperatures(float* coreC, float* boardC, float* memoryC, float* vrmC) {
    unsigned int gpuC = 0;
    if (!m_nvml.deviceGetTemperature ||
        m_nvml.deviceGetTemperature(device(handle()), NVML_TEMPERATURE_GPU, &gpuC) != NVML_SUCCESS ||
        gpuC > kMaxCelsius)
        return false;
    m_record.sensorGpu.take(float(gpuC));
    if (m_nvml.deviceGetFieldValues) {
        nvmlFieldValue_t field{};
        field.fieldId = NVML_FI_DEV_MEMORY_TEMP;
        float memory = 0.0f;
        if (m_nvml.deviceGetFieldValues(device(handle()), 1, &field) == NVML_SUCCESS && fieldAsFloat(field, memory) &&
            memory >= 0.0f && memory <= float(kMaxCelsius))
            m_record.sensorMemory.take(memory);
    }
    putReading(coreC, m_record.sensorGpu);
    putReading(boardC, m_record.sensorBoard);
    putReading(memoryC, m_record.sensorMemory);
    putReading(vrmC, m_record.sensorVrm);
    return true;
}

bool NvidiaGpu::readFanSpeed(float* percent, float* rpm) {
    unsigned int speed = 0;
    bool gotPercent = false;
    if (m_nvml.deviceGetFanSpeedOfFan)
        gotPercent = m_nvml.deviceGetFanSpeedOfFan(device(handle()), 0, &speed) == NVML_SUCCESS;
    else if (m_nvml.deviceGetFanSpeed)
        gotPercent = m_nvml.deviceGetFanSpeed(device(handle()), &speed) == NVML_SUCCESS;
    gotPercent = gotPercent && speed <= kMaxFanPercent;
    if (gotPercent) {
        m_record.fanPercent = float(speed);
        put(percent, m_record.fanPercent);
    }
    nvmlFanSpeedInfo_t info{nvmlFanSpeedInfo_v1, 0, 0};
    const bool gotRpm = m_nvml.deviceGetFanSpeedRpm &&
                        m_nvml.deviceGetFanSpeedRpm(device(handle()), &info) == NVML_SUCCESS &&
                        info.speed <= kMaxFanRpm;
    if (gotRpm) {
        m_record.fanRpm = float(info.speed);
        put(rpm, m_record.fanRpm);
    }
    return gotPercent || gotRpm;
}

bool NvidiaGpu::readLoad(float* gpuPercent, float* frameBufferPercent) {
    nvmlUtilization_t load{};
    if (!m_nvml.deviceGetUtilizationRates ||
        m_nvml.deviceGetUtilizationRates(device(handle()), &load) != NVML_SUCCESS || load.gpu > kMaxPercent ||
        load.memory > kMaxPercent)
        return false;
    m_record.gpuLoadPercent = float(load.gpu);
    m_record.frameBufferLoadPercent = float(load.memory);
    unsigned int video = 0, periodUs = 0;
    if (m_nvml.deviceGetDecoderUtilization &&
        m_nvml.deviceGetDecoderUtilization(device(handle()), &video, &periodUs) == NVML_SUCCESS &&
        video <= kMaxPercent)
        m_record.videoLoadPercent = float(video);
    put(gpuPercent, m_record.gpuLoadPercent);
    put(frameBufferPercent, m_record.frameBufferLoadPercent);
    return true;
}

bool NvidiaGpu::readCurrentClocks(uint32_t* pstate, float* gpuMhz, float* memMhz) {
    nvmlPstates_t state = NVML_PSTATE_UNKNOWN;
    if (!m_nvml.deviceGetPerformanceState ||
        m_nvml.deviceGetPerformanceState(device(handle()), &state) != NVML_SUCCESS || state < 0 ||
        state >= NVML_PSTATE_UNKNOWN) {
        put(pstate, uint32_t(-1));
        return false;
    }
    unsigned int gpu = 0, mem = 0;
    if (!readTwoClocks(m_nvml.deviceGetClockInfo, device(handle()), gpu, mem)) return false;
    put(pstate, uint32_t(state));
    put(gpuMhz, gpu);
    put(memMhz, mem);
    return true;
}

bool NvidiaGpu::readClockFrequencies(uint32_t clockType, float* gpuMhz, float* memMhz) {
    unsigned int gpu = 0, mem = 0;
    bool read = false;
    switch (clockType) {
        case 1: read = readDefaultClocks(m_nvml, device(handle()), gpu, mem); break;
        case 2: read = readTwoClocks(m_nvml.deviceGetMaxClockInfo, device(handle()), gpu, mem); break;
        default: read = readTwoClocks(m_nvml.deviceGetClockInfo, device(handle()), gpu, mem); break;
    }
    if (!read) return false;
    put(gpuMhz, gpu);
    put(memMhz, mem);
    return true;
}

bool NvidiaGpu::readP0Clocks(float* gpuMhz, float* memMhz) { return readClockFrequencies(2, gpuMhz, memMhz); }

bool NvidiaGpu::readClockOffsets(float* coreMhz, float* memMhz) {
    int core = 0, mem = 0;
    if (!m_nvml.deviceGetGpcClkVfOffset || !m_nvml.deviceGetMemClkVfOffset ||
        m_nvml.deviceGetGpcClkVfOffset(device(handle()), &core) != NVML_SUCCESS ||
        m_nvml.deviceGetMemClkVfOffset(device(handle()), &mem) != NVML_SUCCESS || std::abs(core) > kMaxClockOffsetMhz ||
        std::abs(mem) > kMaxClockOffsetMhz)
        return false;
    put(coreMhz, core);
    put(memMhz, mem);
    return true;
}

bool NvidiaGpu::readPowerUsage(float* percent, uint32_t* milliwatts) {
    unsigned int drawn = 0, tdp = 0;
    if (!m_nvml.deviceGetPowerUsage || !m_nvml.deviceGetPowerManagementDefaultLimit ||
        m_nvml.deviceGetPowerUsage(device(handle()), &drawn) != NVML_SUCCESS ||
        m_nvml.deviceGetPowerManagementDefaultLimit(device(handle()), &tdp) != NVML_SUCCESS || tdp == 0 ||
        tdp > kMaxMilliwatts || drawn > kMaxMilliwatts)
        return false;
    put(percent, percentOf(drawn, tdp));
    put(milliwatts, drawn);
    return true;
}

void NvidiaGpu::readMoreLive(LiveSample& sample) {
    const nvmlDevice_t d = device(handle());
    if (sample.coreTemperatureC) sample.temperaturesC.push_back(NamedReading{"edge", *sample.coreTemperatureC});
    if (sample.memoryTemperatureC)
        sample.temperaturesC.push_back(NamedReading{"memory", *sample.memoryTemperatureC});

    unsigned int milliwatts = 0;
    if (m_nvml.deviceGetPowerUsage && m_nvml.deviceGetPowerUsage(d, &milliwatts) == NVML_SUCCESS &&
        milliwatts <= kMaxMilliwatts)
        sample.powerWatts = float(double(milliwatts) / 1000.0);
    if (m_nvml.deviceGetEnforcedPowerLimit && m_nvml.deviceGetEnforcedPowerLimit(d, &milliwatts) == NVML_SUCCESS &&
        milliwatts != 0 && milliwatts <= kMaxMilliwatts)
        sample.powerLimitWatts = float(double(milliwatts) / 1000.0);
    unsigned long long millijoules = 0;
    if (m_nvml.deviceGetTotalEnergyConsumption &&
        m_nvml.deviceGetTotalEnergyConsumption(d, &millijoules) == NVML_SUCCESS && millijoules <= kMaxMillijoules)
        sample.energyJoules = double(millijoules) / 1000.0;

    nvmlMemory_t memory{};
    if (m_nvml.deviceGetMemoryInfo && m_nvml.deviceGetMemoryInfo(d, &memory) == NVML_SUCCESS &&
        memory.total <= kMaxMemoryBytes && memory.used <= memory.total) {
        sample.memoryTotalMb = uint64_t(memory.total >> 20);
        sample.memoryUsedMb = uint64_t(memory.used >> 20);
    }

    unsigned long long reasons = 0;
    if (m_nvml.deviceGetClocksEventReasons && m_nvml.deviceGetClocksEventReasons(d, &reasons) == NVML_SUCCESS)
        sample.throttleReasons = nvidiaThrottleReasonNames(reasons);
}

bool NvidiaGpu::readPowerPolicy(float* minPercent, uint32_t* minMw, float* maxPercent, uint32_t* maxMw,
                                float* defaultPercent, uint32_t* defaultMw) {
    unsigned int low = 0, high = 0, standard = 0;
    if (!m_nvml.deviceGetPowerManagementLimitConstraints || !m_nvml.deviceGetPowerManagementDefaultLimit ||
        m_nvml.deviceGetPowerManagementLimitConstraints(device(handle()), &low, &high) != NVML_SUCCESS ||
        m_nvml.deviceGetPowerManagementDefaultLimit(device(handle()), &standard) != NVML_SUCCESS || standard == 0 ||
        standard > kMaxMilliwatts || low > kMaxMilliwatts || high > kMaxMilliwatts)
        return false;
    put(minPercent, percentOf(low, standard));
    put(minMw, low);
    put(maxPercent, percentOf(high, standard));
    put(maxMw, high);
    put(defaultPercent, 100.0f);
    put(defaultMw, standard);
    return true;
}

bool NvidiaGpu::readPowerTarget(float* percent, uint32_t* milliwatts) {
    unsigned int limit = 0, standard = 0;
    if (!m_nvml.deviceGetPowerManagementLimit || !m_nvml.deviceGetPowerManagementDefaultLimit ||
        m_nvml.deviceGetPowerManagementLimit(device(handle()), &limit) != NVML_SUCCESS ||
        m_nvml.deviceGetPowerManagementDefaultLimit(device(handle()), &standard) != NVML_SUCCESS || standard == 0 ||
        standard > kMaxMilliwatts || limit > kMaxMilliwatts)
        return false;
    put(percent, percentOf(limit, standard));
    put(milliwatts, limit);
    return true;
}

bool NvidiaGpu::setPowerTarget(float percent) {
    unsigned int standard = 0;
    if (!(percent > 0.0f && percent <= 1000.0f) || !m_nvml.deviceGetPowerManagementDefaultLimit || !m_nvml.deviceSetPowerManagementLimit ||
        m_nvml.deviceGetPowerManagementDefaultLimit(device(handle()), &standard) != NVML_SUCCESS ||
        standard > kMaxMilliwatts)
        return false;
    const auto limit = static_cast<unsigned int>(std::lround(double(standard) * double(percent) / 100.0));
    return m_nvml.deviceSetPowerManagementLimit(device(handle()), limit) == NVML_SUCCESS;
}

bool NvidiaGpu::setApplicationClocks(float coreMhz, float memMhz) {
    const auto sane = [](float mhz) { return mhz > 0.0f && mhz <= float(kMaxClockMhz); };
    if (!sane(coreMhz) || !sane(memMhz) || !m_nvml.deviceSetApplicationsClocks) return false;
    return m_nvml.deviceSetApplicationsClocks(device(handle()), static_cast<unsigned int>(std::lround(memMhz)),
                                              static_cast<unsigned int>(std::lround(coreMhz))) == NVML_SUCCESS;
}

bool NvidiaGpu::readMemoryUsage(uint32_t* totalKb, uint32_t* availableKb, float* usedPercent) {
    nvmlMemory_t memory{};
    if (!m_nvml.deviceGetMemoryInfo || m_nvml.deviceGetMemoryInfo(device(handle()), &memory) != NVML_SUCCESS ||
        memory.total > kMaxMemoryBytes || memory.free > memory.total)
        return false;
    m_record.memoryTotalKb = uint32_t(memory.total >> 10);
    m_record.memoryAvailableKb = uint32_t(memory.free >> 10);
    if (m_record.memoryTotalKb != 0)
        m_record.memoryUsedPercent =
            float(100.0 - double(m_record.memoryAvailableKb) * 100.0 / double(m_record.memoryTotalKb));
    put(totalKb, m_record.memoryTotalKb);
    put(availableKb, m_record.memoryAvailableKb);
    put(usedPercent, m_record.memoryUsedPercent);
    return true;
}

bool NvidiaGpu::readPerfLimiters() {
    unsigned long long reasons = 0;
    if (!m_nvml.deviceGetClocksEventReasons ||
        m_nvml.deviceGetClocksEventReasons(device(handle()), &reasons) != NVML_SUCCESS)
        return false;
    for (uint32_t slot = 0; slot < 4; ++slot) m_record.perfLimiterActive[slot] = 0;
    if (reasons & nvmlClocksEventReasonSwPowerCap) m_record.perfLimiterActive[0] = 1;
    if (reasons & (nvmlClocksEventReasonSwThermalSlowdown | nvmlClocksEventReasonHwThermalSlowdown))
        m_record.perfLimiterActive[1] = 1;
    return true;
}

bool NvidiaGpu::readBoardInfo(uint8_t (&bytes)[16]) {
    unsigned int board = 0;
    if (!m_nvml.deviceGetBoardId || m_nvml.deviceGetBoardId(device(handle()), &board) != NVML_SUCCESS) return false;
    for (uint8_t& b : m_record.nvBoardInfo) b = 0;
    for (int i = 0; i < 4; ++i) m_record.nvBoardInfo[i] = uint8_t(board >> (8 * i));
    for (int i = 0; i < 16; ++i) bytes[i] = m_record.nvBoardInfo[i];
    return true;
}

uint32_t NvidiaGpu::queryActiveApps(const std::string& rootDir) {
    uint32_t pids[kActiveAppSlots] = {};
    unsigned int count = kActiveAppSlots;
    if (m_nvml.deviceGetGraphicsRunningProcesses) {
        nvmlProcessInfo_t infos[kActiveAppSlots] = {};
        if (m_nvml.deviceGetGraphicsRunningProcesses(device(handle()), &count, infos) != NVML_SUCCESS) return 0;
        for (unsigned int i = 0; i < count && i < kActiveAppSlots; ++i) pids[i] = infos[i].pid;
    } else if (m_nvml.deviceGetGraphicsRunningProcessesV1) {
        nvmlProcessInfo_v1_t infos[kActiveAppSlots] = {};
        if (m_nvml.deviceGetGraphicsRunningProcessesV1(device(handle()), &count, infos) != NVML_SUCCESS) return 0;
        for (unsigned int i = 0; i < count && i < kActiveAppSlots; ++i) pids[i] = infos[i].pid;
    } else {
        return 0;
    }
    // The count says how many entries were written into the room given; one beyond that room is a driver
    // contradicting itself, and none of its entries is trusted.
    if (count > kActiveAppSlots) return 0;

    // Every entry is stamped with the structure version, as the driver's own list is.
    for (ActiveApp& app : m_record.activeApps) app = ActiveApp{0x20108, 0, {}};
    for (unsigned int i = 0; i < count; ++i) {
        m_record.activeApps[i].processId = pids[i];
        readProcessName(rootDir, pids[i], m_record.activeApps[i].processName,
                        sizeof m_record.activeApps[i].processName);
    }
    return count;
}

}  // namespace Kalidornm
