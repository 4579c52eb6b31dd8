#include "kalidor/cpu_os_info.h"

#include <cstring>
#include <limits>

#include "kalidor/hardware_caps.h"
#include "kalidor/platform/cpu_x86.h"
#include "kalidor/platform/proc_system.h"

namespace Kalidornm {

namespace {

enum CpuVendor { kIntel = 1, kAmd = 2, kOtherVendor = 3 };

constexpr uint32_t bits(uint32_t value, int low, int high) {
    return (value >> low) & ((1u << (high - low + 1)) - 1);
}

constexpr bool bit(uint32_t value, int n) { return (value >> n) & 1u; }

// Cores per package from leaf 4, Intel's deterministic cache parameters.
int32_t intelCoresFromLeaf4(const CpuidFunction& cpuid) {
    CpuidRegs leaf4;
    cpuid(4, 0, &leaf4);
    return int32_t(bits(leaf4.eax, 26, 31)) + 1;
}

}  // namespace

bool applyCpuid(CpuOsInfo& info, const CpuidFunction& cpuid) {
    CpuidRegs leaf0;
    if (!cpuid || !cpuid(0, 0, &leaf0)) return false;

    info.physicalCores = 1;
    for (bool& feature : info.cpuFeatures) feature = false;
    const uint32_t maxStandard = leaf0.eax;
    char vendorText[13] = {};
    std::memcpy(vendorText, &leaf0.ebx, 4);
    std::memcpy(vendorText + 4, &leaf0.edx, 4);
    std::memcpy(vendorText + 8, &leaf0.ecx, 4);
    const CpuVendor vendor = std::strcmp(vendorText, "GenuineIntel") == 0   ? kIntel
                             : std::strcmp(vendorText, "AuthenticAMD") == 0 ? kAmd
                                                                            : kOtherVendor;

    CpuidRegs extended;
    cpuid(0x80000000u, 0, &extended);
    const uint32_t maxExtended = extended.eax;
    uint32_t extendedSignature = 0;
    if (maxExtended > 0x80000000u) {
        CpuidRegs leaf;
        cpuid(0x80000001u, 0, &leaf);
        extendedSignature = leaf.eax;
    }

    CpuidRegs leaf1;
    cpuid(1, 0, &leaf1);
    info.cpuFamily = int32_t(bits(leaf1.eax, 8, 11));
    info.cpuModel = int32_t(bits(leaf1.eax, 4, 7));
    info.cpuStepping = int32_t(bits(leaf1.eax, 0, 3));
    info.cpuFeatures[0] = bit(leaf1.edx, 23);
    info.cpuFeatures[2] = bit(leaf1.edx, 25);
    info.cpuFeatures[3] = bit(leaf1.edx, 26);
    info.cpuFeatures[4] = bit(leaf1.ecx, 0);
    info.cpuFeatures[5] = bit(leaf1.ecx, 6);

    // Family 15 Intel parts (NetBurst) count logical processors in EBX; later ones count cores there.
    int32_t logicalCount = 0;
    if (bit(leaf1.edx, 28) && vendor == kIntel) {
        const int32_t n = int32_t(bits(leaf1.ebx, 16, 23));
        if (info.cpuFamily == 15) {
            logicalCount = n;
            info.cpuFeatures[7] = true;
        } else {
            info.physicalCores = n;
        }
        if (maxStandard >= 4) info.physicalCores = intelCoresFromLeaf4(cpuid);
    } else if (vendor == kAmd && maxExtended >= 0x80000008u) {
        CpuidRegs leaf;
        cpuid(0x80000008u, 0, &leaf);
        info.physicalCores = int32_t(bits(leaf.ecx, 0, 7)) + 1;
    } else if (vendor == kIntel && maxStandard >= 4) {
        info.physicalCores = intelCoresFromLeaf4(cpuid);
    }

    if (info.physicalCores == 2) info.cpuFeatures[6] = true;
    if (vendor == kIntel && info.cpuFamily == 15 && info.physicalCores >= 2) logicalCount /= info.physicalCores;
    if (logicalCount < 2) info.cpuFeatures[7] = false;

    const uint32_t signature = vendor == kIntel ? leaf1.eax : extendedSignature;
    info.cpuExtFamily = int32_t(bits(signature, 20, 27));
    info.cpuExtModel = int32_t(bits(signature, 16, 19));
    info.cpuExtStepping = vendor == kIntel ? 0 : int32_t(bits(signature, 0, 3));
    return true;
}

void setLinuxOsTexts(CpuOsInfo& info, const std::string& prettyName, const std::string& kernelRelease,
                     const std::string& machine) {
    const int bitsWide = machine.find("64") != std::string::npos ? 64 : 32;
    const std::string name = prettyName.empty() ? "Linux" : prettyName;
    std::string description = name + " " + std::to_string(bitsWide) + "-bit - kernel " + kernelRelease;
    // os-release names are UTF-8: a cut at the field's size must not leave half a character behind.
    if (description.size() >= sizeof info.osDescription) {
        size_t end = sizeof info.osDescription - 1;
        while (end > 0 && (static_cast<unsigned char>(description[end]) & 0xC0) == 0x80) --end;
        description.resize(end);
    }
    copyText(info.osDescription, description.c_str());
    copyText(info.osShortName, ("Linux " + std::to_string(bitsWide) + "-bit").c_str());
}

void HardwareCaps::_queryCPUInfo() {
    applyCpuid(cpuOs, readCpuid);

    const LinuxSystemFacts facts = readLinuxSystemFacts(sources.rootDir);
    copyText(cpuOs.cpuName, facts.cpuModelName.empty() ? "n.a" : facts.cpuModelName.c_str());

    constexpr uint64_t kMax32 = std::numeric_limits<uint32_t>::max();
    const uint64_t totalBytes = facts.memTotalKb * 1024;
    cpuOs.physicalMemoryBytes = uint32_t(totalBytes > kMax32 ? kMax32 : totalBytes);
    cpuOs.totalMemoryKb = uint32_t(facts.memTotalKb > kMax32 ? kMax32 : facts.memTotalKb);
    cpuOs.installedMemoryMb = uint32_t(facts.installedMemoryBytes >> 20);
    cpuOs.logicalCores = facts.onlineCpus;

    setLinuxOsTexts(cpuOs, facts.prettyName, facts.kernelRelease, facts.machine);
}

}  // namespace Kalidornm
