#include "kalidor.h"
#include "platform/sysfs_files.h"

namespace Kalidornm {

bool Kalidor::isGpuSuspended(int gpu) const {
    const GpuRecord* r = record(gpu);
    if (!r || r->displayDeviceKey[0] != '/') return false;
    const HardwareCaps* machine = caps();
    const std::string path = std::string(r->displayDeviceKey) + "/power/runtime_status";
    // The attribute belongs to the PCI core, not the driver, so reading it leaves the device asleep.
    const auto state = readFirstLine(machine ? underRoot(machine->sources, path) : path);
    return state && *state == "suspended";
}

}  // namespace Kalidornm
