#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/platform/proc_system.h"

namespace Kalidornm {

namespace {

const SystemFacts& system() { return heldSnapshot().system; }

}  // namespace

uint32_t Kalidor::getCpuSpeedMhz() { return uint32_t(system().cpuSpeedMhz); }
const char* Kalidor::getCpuName() const { return textOrEmpty(system().cpuName); }
int32_t Kalidor::getCpuLogicalCores() const { return system().logicalCores; }

const char* Kalidor::getOsDescription() const { return textOrEmpty(system().osDescription); }

uint32_t Kalidor::getInstalledMemoryMb() const { return system().installedMemoryMb; }
uint32_t Kalidor::getTotalMemoryKb() const { return system().totalMemoryKb; }
uint32_t Kalidor::getPhysicalMemoryBytes() const { return system().physicalMemoryBytes; }

uint32_t Kalidor::getMemoryLoadPercent() const {
    const HardwareCaps* machine = caps();
    return readMemoryLoadPercent(machine ? machine->sources.rootDir : "/");
}

}  // namespace Kalidornm
