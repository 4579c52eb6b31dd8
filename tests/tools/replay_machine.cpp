// Replays a machine captured as a sysfs tree through the hardware library and writes what start-up logs
// about it: the display devices and the per-GPU block. For looking at fixtures as a user would.
//   replay_machine FIXTURE_DIR [PCI_IDS_FILE]   (the log lands in ./Lumenscope_log.txt)
#include <cstdio>

#include "app/app_log.h"
#include "app/gpu_log_block.h"
#include "kalidor/kalidor.h"

using namespace Kalidornm;

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FIXTURE_DIR [PCI_IDS_FILE]\n", argv[0]);
        return 2;
    }
    KalidorSources sources;
    sources.rootDir = argv[1];
    if (argc > 2) sources.pciIdsFile = argv[2];
    sources.eglLibrary = "";
    sources.nvmlLibrary = "";
    appLog().open(AppLog::kFileName);
    Kalidor::setSources(sources);
    Kalidor* library = Kalidor::getInstance();
    if (!library || !library->startup(0, 0, 64, 64, 0, 0, true)) return 1;
    const unsigned count = library->getGpuCount();
    for (unsigned i = 0; i < count; ++i) {
        appLog().write("- Device ID string (%u): %s", i, library->getGpuDisplayDeviceId(int(i)));
        appLog().write("- Display device string (%u): %s", i, library->getGpuDisplayDeviceString(int(i)));
    }
    if (count > 0) logDetectedGpus(*library, count);
    library->shutdown();
    return 0;
}
