#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "compute/opencl_records.h"

// Everything a submission tells the GPU database, read once from the library and the discovery records.
// The body is built from this alone, so a set of facts made by hand stands for any machine. Texts the
// library keeps in fixed arrays are empty where it found nothing; reads that can fail are optional.
namespace online {

struct ClockPair {
    float gpuMhz = 0.0f;
    float memoryMhz = 0.0f;
};

struct SubmitPowerPolicy {
    float minPercent = 0.0f, maxPercent = 0.0f, defaultPercent = 0.0f;
};

struct SubmitClockOffsets {
    float coreMhz = 0.0f, memoryMhz = 0.0f, volts = 0.0f;
};

struct SubmitClocks {
    float gpuMhz = 0.0f, memoryMhz = 0.0f, volts = 0.0f;
};

struct SubmitTemperatures {
    float coreC = 0.0f, memoryC = 0.0f, vrmC = 0.0f;
};

struct SubmitGpu {
    uint32_t vendorId = 0, deviceId = 0, subvendorId = 0, subdeviceId = 0;
    std::string driverVersion;
    std::string catalystVersion;  // AMD
    bool isCrimson = false;       // AMD
    std::optional<ClockPair> baseClocks, boostClocks;  // NVIDIA reads of the base and boost clocks
    std::optional<float> powerTargetPercent;
    std::optional<SubmitPowerPolicy> powerPolicy;
    std::optional<SubmitClockOffsets> clockOffsets;
    std::string name, codename;
    int32_t shaderCores = 0, textureUnits = 0, ropUnits = 0, tdpWatts = 0;
    std::string biosVersion;
    uint32_t memorySizeMb = 0;
    std::string memoryType;
    uint32_t memoryBusWidthBits = 0;
    int32_t busId = -1;
    std::vector<SubmitClocks> perfLevels;  // the levels that could be read
    std::optional<SubmitClocks> p0Clocks;
    std::optional<SubmitTemperatures> temperatures;
    std::optional<float> powerUsagePercent;
    std::optional<float> fanPercent, fanRpm;
    std::optional<float> gpuLoadPercent, memoryLoadPercent;
};

// The primary display device, sent as the one GPU when the library made no GPU record.
struct SubmitPrimary {
    int32_t vendorKind = 0;  // 1 NVIDIA
    uint32_t nvDriverVersionNumber = 0;  // NVIDIA driver version x 100
    std::string nvDriverBranch;
    std::string driverVersion, driverDate;
    std::string driverText;
    int32_t vendorId = -1, deviceId = -1, subvendorId = -1, subdeviceId = -1;
    std::string gpuName, codename;
    int32_t shaderCores = 0;
    uint32_t videoMemoryMb = 0;
    std::string biosVersion;
    int32_t textureUnits = 0, ropUnits = 0, tdpWatts = 0;
};

struct SubmitGlCap {
    std::string name;
    int32_t valueType = 0;  // 5: three integers
    int32_t intValue = 0;
    int32_t tripleValue[3] = {};
};

struct SubmissionFacts {
    std::string cpuName;
    int32_t cpuSpeedMhz = 0;
    uint32_t totalMemoryKb = 0;
    std::string osDescription;
    std::vector<SubmitGpu> gpus;
    SubmitPrimary primary;
    std::string glVendor, glRenderer, glVersion;  // empty without an OpenGL context
    std::vector<SubmitGlCap> glCaps;              // the whole catalogue, in its order
    std::vector<std::string> glExtensions;
    std::vector<compute::ClPlatformRecord> clPlatforms;
};

}  // namespace online
