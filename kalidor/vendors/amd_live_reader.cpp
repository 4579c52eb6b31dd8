#include "kalidor/vendors/amd_live_reader.h"

#include <algorithm>
#include <cmath>

#include "kalidor/library_log.h"
#include "kalidor/platform/sysfs_files.h"
#include "kalidor/platform/sysfs_values.h"
#include "kalidor/vendors/amd_gpu_metrics.h"
#include "kalidor/vendors/amd_hwmon_labels.h"
#include "kalidor/vendors/amd_sysfs_values.h"

namespace Kalidornm {

namespace {

// Bounds past which a sensor value is garbage rather than a reading.
constexpr int64_t kMinMilliCelsius = -100000, kMaxMilliCelsius = 300000;
constexpr int64_t kMaxFanRpm = 100000;
constexpr int64_t kMaxMilliVolts = 10000;
constexpr int64_t kMaxMicroWatts = 10'000'000'000;  // 10 kW
constexpr int64_t kMaxClockHz = 100'000'000'000;     // 100 GHz
constexpr int64_t kMaxMemoryBytes = int64_t(1) << 50;  // 1 PiB
constexpr uint64_t kBytesPerMb = uint64_t(1) << 20;

std::optional<int64_t> readInteger(const std::string& path, int64_t low, int64_t high) {
    const auto text = path.empty() ? std::nullopt : readSmallFile(path);
    if (!text) return std::nullopt;
    return parseSysfsInteger(*text, low, high);
}

std::optional<std::vector<DpmLevel>> readDpmTable(const std::string& path) {
    const auto text = readSmallFile(path);
    if (!text) return std::nullopt;
    return parseDpmTable(*text);
}

std::optional<AmdGpuMetrics> readGpuMetrics(const std::string& path) {
    const auto bytes = readSmallFile(path);
    if (!bytes) return std::nullopt;
    return parseAmdGpuMetrics(reinterpret_cast<const uint8_t*>(bytes->data()), bytes->size());
}

std::optional<float> readingOf(const std::vector<NamedReading>& readings, const char* name) {
    for (const NamedReading& r : readings)
        if (r.name == name) return r.value;
    return std::nullopt;
}

int32_t percentOf(int64_t value, int64_t reference) {
    return int32_t(std::lround(double(value) * 100.0 / double(reference)));
}

}  // namespace

AmdCardFiles resolveAmdCardFiles(const PciDevice& device) {
    AmdCardFiles files;
    files.busy = device.directory + "/gpu_busy_percent";
    files.sclk = device.directory + "/pp_dpm_sclk";
    files.mclk = device.directory + "/pp_dpm_mclk";
    files.vramUsed = device.directory + "/mem_info_vram_used";
    files.vramTotal = device.directory + "/mem_info_vram_total";
    files.gpuMetrics = device.directory + "/gpu_metrics";
    if (device.hwmonDir.empty()) return files;
    const std::string& hwmon = device.hwmonDir;
    files.hwmon = hwmon;
    files.powerAverage = hwmon + "/power1_average";
    files.powerInput = hwmon + "/power1_input";
    files.temperature = hwmon + "/temp1_input";
    files.pwm = hwmon + "/pwm1";
    files.fanRpm = hwmon + "/fan1_input";
    files.voltage = hwmon + "/in0_input";
    files.powerCap = hwmon + "/power1_cap";
    files.pwmMaxFile = hwmon + "/pwm1_max";
    files.powerCapDefaultFile = hwmon + "/power1_cap_default";
    files.powerCapMinFile = hwmon + "/power1_cap_min";
    files.powerCapMaxFile = hwmon + "/power1_cap_max";
    return files;
}

const AmdCardFiles* AmdLiveReader::_liveFiles(const GpuRecord& record) {
    if (record.vendorClass != kVendorClassAmd || record.overdriveVersion != 6 || !record.pciAddress) return nullptr;
    const auto card = m_cards.find(*record.pciAddress);
    if (card == m_cards.end() || !m_pci.mayTouch(*record.pciAddress)) return nullptr;
    AmdCardFiles& files = card->second;
    if (!files.constantsRead) {
        files.pwmMax = readInteger(files.pwmMaxFile, 1, 65535);
        files.powerCapDefault = readInteger(files.powerCapDefaultFile, 1, kMaxMicroWatts);
        files.powerCapMin = readInteger(files.powerCapMinFile, 0, kMaxMicroWatts);
        files.powerCapMax = readInteger(files.powerCapMaxFile, 0, kMaxMicroWatts);
        AmdHwmonInputs inputs = resolveAmdHwmonInputs(files.hwmon);
        files.temperatures = std::move(inputs.temperatures);
        files.voltages = std::move(inputs.voltages);
        files.engineClockHz = std::move(inputs.engineClockHz);
        files.memoryClockHz = std::move(inputs.memoryClockHz);
        files.hasGpuMetrics = readSmallFile(files.gpuMetrics).has_value();
        files.constantsRead = true;
    }
    return &files;
}

bool AmdLiveReader::readTemperatures(GpuRecord& record, float* coreC, float*, float*, float*) {
    const AmdCardFiles* files = _liveFiles(record);
    const auto milli = files ? readInteger(files->temperature, kMinMilliCelsius, kMaxMilliCelsius) : std::nullopt;
    if (!milli) return false;
    record.sensorGpu.take(float(*milli) / 1000.0f);
    if (coreC) *coreC = record.sensorGpu.current;
    return true;
}

bool AmdLiveReader::readFanSpeed(GpuRecord& record, float* percent, float* rpm) {
    const AmdCardFiles* files = _liveFiles(record);
    if (!files) return false;
    // Many cards drive a fan without a tachometer, and a few have a tachometer the PWM output does not drive.
    const auto pwm = files->pwmMax ? readInteger(files->pwm, 0, *files->pwmMax) : std::nullopt;
    const auto speed = readInteger(files->fanRpm, 0, kMaxFanRpm);
    if (pwm) {
        record.fanPercent = float(*pwm) * 100.0f / float(*files->pwmMax);
        if (percent) *percent = record.fanPercent;
    }
    if (speed) {
        record.fanRpm = float(*speed);
        if (rpm) *rpm = record.fanRpm;
    }
    return pwm || speed;
}

bool AmdLiveReader::readLoad(GpuRecord& record, float* gpuPercent, float*) {
    const AmdCardFiles* files = _liveFiles(record);
    const auto busy = files ? readInteger(files->busy, 0, 100) : std::nullopt;
    if (!busy) return false;
    record.gpuLoadPercent = float(*busy);
    if (gpuPercent) *gpuPercent = record.gpuLoadPercent;
    return true;
}

bool AmdLiveReader::readCurrentClocks(GpuRecord& record, uint32_t* pstate, float* gpuMhz, float* memMhz,
                                      float* shaderMhz, float*) {
    const AmdCardFiles* files = _liveFiles(record);
    if (!files) return false;
    const auto engine = readDpmTable(files->sclk);
    const auto memory = readDpmTable(files->mclk);
    if (!engine || !memory) return false;
    const auto engineLevel = currentDpmLevel(*engine);
    const auto memoryLevel = currentDpmLevel(*memory);
    if (!engineLevel || !memoryLevel) return false;
    if (pstate) *pstate = *engineLevel;
    if (gpuMhz) *gpuMhz = (*engine)[*engineLevel].mhz;
    if (memMhz) *memMhz = (*memory)[*memoryLevel].mhz;
    if (shaderMhz) *shaderMhz = 0.0f;
    return true;
}

bool AmdLiveReader::readPerfLevels(GpuRecord& record, bool current) {
    const AmdCardFiles* files = _liveFiles(record);
    if (!files) return false;
    const auto engine = readDpmTable(files->sclk);
    if (!engine) return false;
    if (!record.perfLevels) record.allocatePerfLevels(uint32_t(engine->size()));
    const auto memory = readDpmTable(files->mclk);
    if (!memory) return false;

    adlTrace().write("AMD_Display_Library_ReadPerfLevels( %s ) - %s", current ? "CURRENT" : "DEFAULT",
                     record.name);
    const auto milliVolts = readInteger(files->voltage, 0, kMaxMilliVolts);
    const size_t count = std::min<size_t>(record.perfLevelCount, engine->size());
    for (size_t i = 0; i < count; ++i) {
        PerfLevel& level = record.perfLevels[i];
        level.gpuClockMhz = (*engine)[i].mhz;
        level.memClockMhz = (*memory)[std::min(i, memory->size() - 1)].mhz;
        level.vddcVolts = ((*engine)[i].current && milliVolts) ? float(*milliVolts) / 1000.0f : 0.0f;
        adlTrace().write("--> gpu clock=%.1fMHz - mem clock=%.1fMHz - vddc=%.3fV", double(level.gpuClockMhz),
                         double(level.memClockMhz), double(level.vddcVolts));
    }
    return true;
}

bool AmdLiveReader::readPerfLevel(GpuRecord& record, uint32_t level, uint32_t* id, float* gpuMhz, float* memMhz,
                                  float* shaderMhz, float* volts) {
    if (!readPerfLevels(record, true) || level >= record.perfLevelCount) return false;
    const PerfLevel& chosen = record.perfLevels[level];
    if (id) *id = chosen.id;
    if (gpuMhz) *gpuMhz = chosen.gpuClockMhz;
    if (memMhz) *memMhz = chosen.memClockMhz;
    if (shaderMhz) *shaderMhz = chosen.shaderClockMhz;
    if (volts) *volts = chosen.vddcVolts;
    return true;
}

bool AmdLiveReader::readPowerControl(GpuRecord& record, int32_t* current, int32_t* defaultPercent, int32_t* min,
                                     int32_t* max) {
    const AmdCardFiles* files = _liveFiles(record);
    if (!files || !files->powerCapDefault) return false;
    const auto cap = readInteger(files->powerCap, 0, kMaxMicroWatts);
    if (!cap) return false;
    const int64_t reference = *files->powerCapDefault;
    record.powerControlMin = files->powerCapMin ? percentOf(*files->powerCapMin, reference) : 100;
    record.powerControlMax = files->powerCapMax ? percentOf(*files->powerCapMax, reference) : 100;
    record.powerControlCurrent = percentOf(*cap, reference);
    record.powerControlDefault = 100;
    if (current) *current = record.powerControlCurrent;
    if (defaultPercent) *defaultPercent = record.powerControlDefault;
    if (min) *min = record.powerControlMin;
    if (max) *max = record.powerControlMax;
    return true;
}

void AmdLiveReader::readMoreLive(GpuRecord& record, LiveSample& sample) {
    const AmdCardFiles* files = _liveFiles(record);
    if (!files) return;
    sample.moreRead = true;

    for (const AmdLabelledInput& sensor : files->temperatures)
        if (const auto milli = readInteger(sensor.path, kMinMilliCelsius, kMaxMilliCelsius))
            sample.temperaturesC.push_back({sensor.name, float(*milli) / 1000.0f});
    for (const AmdLabelledInput& rail : files->voltages)
        if (const auto milli = readInteger(rail.path, 0, kMaxMilliVolts))
            sample.voltagesV.push_back({rail.name, float(*milli) / 1000.0f});

    // Where the P-state tables mark no level (a card in deep sleep, or only the sleep line marked), hwmon has the
    // clocks the card runs at.
    if (!sample.currentGpuClockMhz)
        if (const auto hz = readInteger(files->engineClockHz, 0, kMaxClockHz))
            sample.currentGpuClockMhz = float(*hz) / 1e6f;
    if (!sample.currentMemClockMhz)
        if (const auto hz = readInteger(files->memoryClockHz, 0, kMaxClockHz))
            sample.currentMemClockMhz = float(*hz) / 1e6f;

    // Newer kernels and APUs give the instant power in power1_input instead of the average.
    auto microWatts = readInteger(files->powerAverage, 0, kMaxMicroWatts);
    if (!microWatts) microWatts = readInteger(files->powerInput, 0, kMaxMicroWatts);
    if (microWatts) sample.powerWatts = float(double(*microWatts) / 1e6);
    if (const auto cap = readInteger(files->powerCap, 0, kMaxMicroWatts))
        sample.powerLimitWatts = float(double(*cap) / 1e6);

    if (const auto used = readInteger(files->vramUsed, 0, kMaxMemoryBytes))
        sample.memoryUsedMb = uint64_t(*used) / kBytesPerMb;
    if (const auto total = readInteger(files->vramTotal, 0, kMaxMemoryBytes))
        sample.memoryTotalMb = uint64_t(*total) / kBytesPerMb;

    if (files->hasGpuMetrics)
        if (const auto metrics = readGpuMetrics(files->gpuMetrics)) {
            const std::pair<const char*, std::optional<float>> sensors[] = {
                {"edge", metrics->edgeC},    {"junction", metrics->hotspotC}, {"memory", metrics->memoryC},
                {"vr_gfx", metrics->vrGfxC}, {"vr_soc", metrics->vrSocC},     {"vr_mem", metrics->vrMemC},
                {"gfx", metrics->gfxC},      {"soc", metrics->socC},
            };
            for (const auto& [name, value] : sensors)
                if (value && !readingOf(sample.temperaturesC, name)) sample.temperaturesC.push_back({name, *value});
            if (!sample.powerWatts) sample.powerWatts = metrics->socketPowerWatts;
            if (!sample.fanRpm) sample.fanRpm = metrics->fanRpm;
            if (metrics->throttleStatus) {
                sample.throttleReasons = amdThrottleReasonNames(*metrics->throttleStatus);
                sample.throttleRead = true;
            }
        }

    sample.hotspotTemperatureC = readingOf(sample.temperaturesC, "junction");
    if (!sample.memoryTemperatureC) sample.memoryTemperatureC = readingOf(sample.temperaturesC, "memory");
    if (!sample.vrmTemperatureC) sample.vrmTemperatureC = readingOf(sample.temperaturesC, "vr_gfx");
    if (!sample.currentVolts) sample.currentVolts = readingOf(sample.voltagesV, "vddgfx");
}

}  // namespace Kalidornm
