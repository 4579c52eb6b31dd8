// The driver's version and date texts from whatever the kernel and the NVIDIA driver write into
// /proc/sys/kernel/version, /proc/driver/nvidia/version and the module's version file, and the version
// numbers read from the NVIDIA management library's version text.
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/fuzz_input.h"
#include "kalidor/driver_values.h"
#include "kalidor/vendors/nvidia_reader.h"

using namespace Kalidornm;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::vector<std::string_view> parts = splitFuzzInput(data, size);
    const auto part = [&](size_t i) { return std::string(i < parts.size() ? parts[i] : std::string_view()); };

    SysfsDriverFacts facts;
    facts.kernelDriver = part(0);
    facts.moduleVersion = part(1);
    facts.kernelRelease = part(2);
    facts.kernelVersion = part(3);
    facts.nvidiaVersionLine = part(4);

    // Both texts are cut from what was read, never made up.
    const std::string version = driverVersionOf(facts);
    if (version != facts.moduleVersion && version != facts.kernelRelease) std::abort();
    const std::string date = driverDateOf(facts);
    if (facts.nvidiaVersionLine.find(date) == std::string::npos && facts.kernelVersion.find(date) == std::string::npos)
        std::abort();
    if (!openGlDriverForKernelDriver(facts.kernelDriver)) std::abort();

    const std::string nvmlVersion = part(5);
    nvidiaDriverVersionNumber(nvmlVersion.c_str());
    char branch[128];
    formatNvidiaDriverBranch(nvmlVersion.c_str(), branch);
    if (!std::memchr(branch, '\0', sizeof branch)) std::abort();
    char text[512];
    formatNvidiaDriverVersion(nvidiaDriverVersionNumber(nvmlVersion.c_str()), text);
    return 0;
}
