#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace Kalidornm {

inline constexpr int kCpuFeatureCount = 8;

// Processor, memory and operating-system facts of the machine.
struct CpuOsInfo {
    char cpuName[128] = {};
    int32_t physicalCores = 1;
    int32_t logicalCores = 0;  // online processors
    uint32_t cpuSpeedMhz = 0;  // 0 until measured
    int32_t cpuFamily = 0, cpuExtFamily = 0, cpuModel = 0, cpuExtModel = 0, cpuStepping = 0, cpuExtStepping = 0;
    uint32_t physicalMemoryBytes = 0;  // saturates at the 32-bit limit
    uint32_t totalMemoryKb = 0;
    uint32_t installedMemoryMb = 0;  // 0 where it cannot be read without privileges
    // 0 MMX, 1 never set, 2 SSE, 3 SSE2, 4 SSE3, 5 leaf 1 ECX bit 6, 6 two cores, 7 hyper-threading
    bool cpuFeatures[kCpuFeatureCount] = {};
    char osDescription[128] = {};
    char osShortName[128] = {};
    char osServicePack[128] = {};
};

struct CpuidRegs {
    uint32_t eax = 0, ebx = 0, ecx = 0, edx = 0;
};

// One CPUID query (leaf, subleaf); false when the processor has no CPUID instruction.
using CpuidFunction = std::function<bool(uint32_t leaf, uint32_t subleaf, CpuidRegs* regs)>;

// Identity, features and core counts from CPUID. False, with the block untouched, without CPUID.
bool applyCpuid(CpuOsInfo& info, const CpuidFunction& cpuid);

// "<PRETTY_NAME> 64-bit - kernel <release>" and "Linux 64-bit"; 32-bit where the machine name says so.
void setLinuxOsTexts(CpuOsInfo& info, const std::string& prettyName, const std::string& kernelRelease,
                     const std::string& machine);

}  // namespace Kalidornm
