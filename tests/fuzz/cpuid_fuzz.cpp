// Processor identity and core counts from any CPUID answers: a hypervisor fills the leaves as it likes, so
// the rules must hold for every register value.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "kalidor/cpu_os_info.h"

using namespace Kalidornm;

namespace {

// The leaves the rules ask for; the input holds 16 bytes (EAX, EBX, ECX, EDX) for each, in this order, and a
// leaf the input does not reach reads zeros.
constexpr uint32_t kLeaves[] = {0, 1, 4, 0x80000000u, 0x80000001u, 0x80000008u};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const CpuidFunction cpuid = [&](uint32_t leaf, uint32_t, CpuidRegs* regs) {
        uint32_t words[4] = {};
        const size_t slot = size_t(std::find(std::begin(kLeaves), std::end(kLeaves), leaf) - std::begin(kLeaves));
        const size_t start = slot * sizeof words;
        if (start < size) std::memcpy(words, data + start, std::min(sizeof words, size - start));
        *regs = CpuidRegs{words[0], words[1], words[2], words[3]};
        return true;
    };

    CpuOsInfo info;
    if (!applyCpuid(info, cpuid)) std::abort();
    // Leaf 4 counts at most 64 cores, leaf 1 and leaf 0x80000008 at most 255 (or 256 with the added one).
    if (info.physicalCores < 0 || info.physicalCores > 256 || info.cpuFeatures[1]) std::abort();
    if (info.cpuFeatures[6] != (info.physicalCores == 2)) std::abort();
    return 0;
}
