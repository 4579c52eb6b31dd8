#include <cstring>

#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/platform/cpu_x86.h"
#include "kalidor/platform/proc_system.h"
#include "kalidor/platform/x11_display_mode.h"

namespace Kalidornm {

namespace {

const CpuOsInfo* cpuOsOf(const Kalidor& library) {
    const HardwareCaps* machine = library.caps();
    return machine ? &machine->cpuOs : nullptr;
}

const SystemFacts& system() { return heldSnapshot().system; }

}  // namespace

uint32_t Kalidor::getCpuSpeedMhz() { return uint32_t(system().cpuSpeedMhz); }
const char* Kalidor::getCpuName() const { return textOrEmpty(system().cpuName); }
int32_t Kalidor::getCpuFamily() const { return system().cpuFamily; }
int32_t Kalidor::getCpuExtFamily() const { return cpuOsOf(*this) ? cpuOsOf(*this)->cpuExtFamily : 0; }
int32_t Kalidor::getCpuModel() const { return system().cpuModel; }
int32_t Kalidor::getCpuExtModel() const { return cpuOsOf(*this) ? cpuOsOf(*this)->cpuExtModel : 0; }
int32_t Kalidor::getCpuStepping() const { return system().cpuStepping; }
int32_t Kalidor::getCpuExtStepping() const { return cpuOsOf(*this) ? cpuOsOf(*this)->cpuExtStepping : 0; }
int32_t Kalidor::getCpuLogicalCores() const { return system().logicalCores; }
int32_t Kalidor::getCpuPhysicalCores() const { return cpuOsOf(*this) ? cpuOsOf(*this)->physicalCores : 0; }

bool Kalidor::getCpuFeature(int index) const {
    const CpuOsInfo* info = cpuOsOf(*this);
    return info && index >= 0 && index < kCpuFeatureCount && info->cpuFeatures[index];
}

const char* Kalidor::getOsDescription() const { return textOrEmpty(system().osDescription); }
const char* Kalidor::getSystemOsDescription() const { return textOrEmpty(system().systemOsDescription); }
const char* Kalidor::getOsShortName() const { return gGlobals.summary.osShortName; }

uint32_t Kalidor::getInstalledMemoryMb() const { return system().installedMemoryMb; }
uint32_t Kalidor::getTotalMemoryKb() const { return system().totalMemoryKb; }
uint32_t Kalidor::getPhysicalMemoryBytes() const {
    return cpuOsOf(*this) ? cpuOsOf(*this)->physicalMemoryBytes : 0;
}

uint32_t Kalidor::getMemoryLoadPercent() const {
    const HardwareCaps* machine = caps();
    return readMemoryLoadPercent(machine ? machine->sources.rootDir : "/");
}

uint32_t Kalidor::getDisplayBitsPerPixel() {
    return gGlobals.summary.displayBitsPerPixel = readCurrentDisplayMode().bitsPerPixel;
}

uint32_t Kalidor::getDisplayFrequency() { return gGlobals.summary.displayFrequency = readCurrentDisplayMode().refreshHz; }
uint32_t Kalidor::getDisplayHeight() { return gGlobals.summary.displayHeight = readCurrentDisplayMode().height; }
uint32_t Kalidor::getDisplayWidth() { return gGlobals.summary.displayWidth = readCurrentDisplayMode().width; }

}  // namespace Kalidornm
