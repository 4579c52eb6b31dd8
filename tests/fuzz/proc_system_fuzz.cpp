// The processor, memory and operating-system files of /proc, /sys and /etc, replayed from any text. The
// input's parts are the files below, in that order; a file the input does not reach is absent.
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_input.h"
#include "fuzz/scratch_root.h"
#include "kalidor/cpu_os_info.h"
#include "kalidor/platform/proc_system.h"

using namespace Kalidornm;

namespace {

constexpr const char* kFiles[] = {
    "proc/cpuinfo",
    "proc/meminfo",
    "etc/os-release",
    "usr/lib/os-release",
    "sys/devices/system/cpu/online",
    "sys/devices/system/memory/block_size_bytes",
    "sys/devices/system/memory/memory0/online",
    "sys/devices/system/memory/memory1/online",
    "proc/sys/kernel/osrelease",
    "proc/sys/kernel/arch",
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static ScratchRoot root;
    root.clear();
    const std::vector<std::string_view> parts = splitFuzzInput(data, size);
    for (size_t i = 0; i < parts.size() && i < std::size(kFiles); ++i) root.write(kFiles[i], parts[i]);

    const LinuxSystemFacts facts = readLinuxSystemFacts(root.path());
    if (facts.onlineCpus < 0) std::abort();
    if (readMemoryLoadPercent(root.path()) > 100) std::abort();
    if (parts.size() > 4 && countCpuList(std::string(parts[4])) < 0) std::abort();

    CpuOsInfo info;
    setLinuxOsTexts(info, facts.prettyName, facts.kernelRelease, facts.machine);
    if (info.osDescription[sizeof info.osDescription - 1] != '\0') std::abort();
    return 0;
}
