#include "kalidor/vendors/intel_live_reader.h"

#include <algorithm>
#include <chrono>

#include "kalidor/platform/sysfs_files.h"
#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

namespace {

// Bounds past which a sensor value is garbage rather than a reading.
constexpr int64_t kMinMilliCelsius = -100000, kMaxMilliCelsius = 300000;
constexpr int64_t kMaxFanRpm = 100000;
constexpr int64_t kMaxMilliVolts = 10000;
constexpr int64_t kMaxMhz = 100000;
constexpr int64_t kMaxMicroWatts = 10'000'000'000;  // 10 kW

std::optional<int64_t> readInteger(const std::string& path, int64_t low, int64_t high) {
    const auto text = path.empty() ? std::nullopt : readSmallFile(path);
    if (!text) return std::nullopt;
    return parseSysfsInteger(*text, low, high);
}

// Counters run to 64 bits: energy in µJ, residency in ms.
std::optional<uint64_t> readCounter(const std::string& path) {
    const auto text = path.empty() ? std::nullopt : readSmallFile(path);
    if (!text) return std::nullopt;
    return parseSysfsUnsigned(firstLineOf(*text), UINT64_MAX);
}

std::optional<float> readTemperature(const IntelCardFiles& files, const char* sensor) {
    for (const NamedFile& file : files.temperatures)
        if (file.name == sensor)
            if (const auto milli = readInteger(file.path, kMinMilliCelsius, kMaxMilliCelsius))
                return float(*milli) / 1000.0f;
    return std::nullopt;
}

int64_t steadyMicroseconds() {
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

IntelLiveReader::IntelLiveReader(const PciBus& pci, int64_t (*microseconds)())
    : m_pci(pci), m_microseconds(microseconds ? microseconds : &steadyMicroseconds) {}

int64_t IntelLiveReader::_now() const { return m_microseconds(); }

IntelLiveReader::Card* IntelLiveReader::_awakeCard(const GpuRecord& record) {
    if (record.vendorClass != kVendorClassIntel || !record.pciAddress) return nullptr;
    const auto card = m_cards.find(*record.pciAddress);
    if (card == m_cards.end() || !m_pci.mayTouch(*record.pciAddress)) return nullptr;
    if (!card->second.files) card->second.files = findIntelCardFiles(card->second.device);
    return &card->second;
}

bool IntelLiveReader::readTemperatures(GpuRecord& record, float* coreC, float*, float* memoryC, float*) {
    const Card* card = _awakeCard(record);
    if (!card) return false;
    const auto package = readTemperature(*card->files, "package");
    const auto vram = readTemperature(*card->files, "vram");
    if (!package && !vram) return false;
    if (package) {
        record.sensorGpu.take(*package);
        if (coreC) *coreC = *package;
    }
    if (vram) {
        record.sensorMemory.take(*vram);
        if (memoryC) *memoryC = *vram;
    }
    return true;
}

bool IntelLiveReader::readFanSpeed(GpuRecord& record, float*, float* rpm) {
    const Card* card = _awakeCard(record);
    if (!card) return false;
    for (const std::string& fan : card->files->fans) {
        if (const auto speed = readInteger(fan, 0, kMaxFanRpm)) {
            record.fanRpm = float(*speed);
            if (rpm) *rpm = record.fanRpm;
            return true;
        }
    }
    return false;
}

bool IntelLiveReader::readLoad(GpuRecord& record, float* gpuPercent, float*) {
    Card* card = _awakeCard(record);
    const auto idleMs = card ? readCounter(card->files->idleResidencyMs) : std::nullopt;
    if (!idleMs) return false;
    // ms of idle time per µs of time: × 1000 gives the idle share.
    const auto idlePerMicrosecond = card->idle.take(*idleMs, _now());
    if (!idlePerMicrosecond) return false;
    const double busy = std::clamp(1.0 - *idlePerMicrosecond * 1000.0, 0.0, 1.0);
    record.gpuLoadPercent = float(busy * 100.0);
    if (gpuPercent) *gpuPercent = record.gpuLoadPercent;
    return true;
}

bool IntelLiveReader::readCurrentClocks(GpuRecord& record, uint32_t*, float* gpuMhz, float*, float*, float* volts) {
    const Card* card = _awakeCard(record);
    const auto actual = card ? readInteger(card->files->actualMhz, 0, kMaxMhz) : std::nullopt;
    if (!actual) return false;
    if (gpuMhz) *gpuMhz = float(*actual);
    if (!card->files->voltages.empty())
        if (const auto milli = readInteger(card->files->voltages.front().path, 0, kMaxMilliVolts))
            if (volts) *volts = float(*milli) / 1000.0f;
    return true;
}

void IntelLiveReader::readMoreLive(GpuRecord& record, LiveSample& sample) {
    Card* card = _awakeCard(record);
    if (!card) return;
    const IntelCardFiles& files = *card->files;
    // The driver numbers no performance states: the clock read's state 0 is none.
    sample.currentPstate.reset();

    // The temperature read above took the same files an instant ago.
    if (sample.coreTemperatureC) sample.temperaturesC.push_back({"package", *sample.coreTemperatureC});
    if (sample.memoryTemperatureC) sample.temperaturesC.push_back({"vram", *sample.memoryTemperatureC});
    for (const NamedFile& rail : files.voltages)
        if (const auto milli = readInteger(rail.path, 0, kMaxMilliVolts))
            sample.voltagesV.push_back({rail.name, float(*milli) / 1000.0f});
    if (const auto requested = readInteger(files.requestedMhz, 0, kMaxMhz)) sample.requestedGpuClockMhz = float(*requested);

    if (const auto microJoules = readCounter(files.energy)) {
        sample.energyJoules = double(*microJoules) / 1e6;
        // µJ per µs are watts.
        if (const auto watts = card->energy.take(*microJoules, _now())) sample.powerWatts = float(*watts);
    }
    for (const std::string& limit : files.powerLimits) {
        const auto microWatts = readInteger(limit, 0, kMaxMicroWatts);
        if (microWatts && *microWatts > 0) {
            sample.powerLimitWatts = float(double(*microWatts) / 1e6);
            break;
        }
    }
    if (files.vramBytes) sample.memoryTotalMb = *files.vramBytes >> 20;

    // The reasons are read only while the status says that something holds the clocks down.
    if (files.throttleStatus.empty() || readInteger(files.throttleStatus, 0, 1).value_or(0) == 1)
        for (const NamedFile& reason : files.throttleReasons)
            if (readInteger(reason.path, 0, 1).value_or(0) == 1) sample.throttleReasons.push_back(reason.name);
}

}  // namespace Kalidornm
