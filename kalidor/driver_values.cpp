#include "kalidor/driver_values.h"

#include <array>
#include <cstring>
#include <limits>
#include <string_view>

#include "kalidor/hardware_caps.h"
#include "kalidor/library_log.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

namespace {

struct GlDriverRow {
    const char* kernelDriver;
    const char* glDriver;
};

constexpr std::array<GlDriverRow, 10> kGlDriverRows{{
    {"amdgpu", "radeonsi"},
    {"radeon", "r600"},
    {"i915", "iris"},
    {"xe", "iris"},
    {"nouveau", "nouveau"},
    {"nvidia", "nvidia"},
    {"virtio_gpu", "virgl"},
    {"vmwgfx", "svga"},
    {"ast", "llvmpipe"},
    {"mgag200", "llvmpipe"},
}};
static_assert(kGlDriverRows.size() == 10);

constexpr std::array<std::string_view, 7> kWeekdays{"Mon ", "Tue ", "Wed ", "Thu ", "Fri ", "Sat ", "Sun "};
static_assert(kWeekdays.size() == 7);

// From the last weekday name on ("Sat Aug 19 01:15:15 UTC 2023"); npos when there is none.
size_t dateStart(std::string_view text) {
    size_t best = std::string_view::npos;
    for (std::string_view day : kWeekdays) {
        const size_t at = text.rfind(day);
        if (at != std::string_view::npos && (best == std::string_view::npos || at > best)) best = at;
    }
    return best;
}

// The kernel keeps at most 64 bytes of its version text, so a long distribution prefix cuts the build date:
// Ubuntu's "#14~22.04.1-Ubuntu SMP PREEMPT_DYNAMIC Mon Nov 20 18:15:30 UTC 2" was built in 2023. A year cut
// short is left out rather than shown as the year 2.
constexpr size_t kKernelVersionBytes = 64;

std::string withoutCutYear(std::string date, size_t versionLength) {
    if (versionLength < kKernelVersionBytes) return date;
    const size_t blank = date.rfind(' ');
    if (blank == std::string::npos) return date;
    const std::string_view year = std::string_view(date).substr(blank + 1);
    const bool digits = !year.empty() && year.find_first_not_of("0123456789") == std::string_view::npos;
    if (digits && year.size() < 4) date.erase(blank);
    return date;
}

// The kernel's version string is "#1 SMP PREEMPT_DYNAMIC <date>"; distributions put their own text there,
// Debian a package version with the date in brackets.
std::string kernelBuildDate(const std::string& version) {
    if (version.empty()) return {};
    if (version.back() == ')') {
        const size_t open = version.rfind('(');
        if (open != std::string::npos) return version.substr(open + 1, version.size() - open - 2);
    }
    const size_t weekday = dateStart(version);
    if (weekday != std::string::npos) return withoutCutYear(version.substr(weekday), version.size());
    size_t at = 0;
    for (;;) {
        const size_t end = version.find(' ', at);
        const std::string word = version.substr(at, end == std::string::npos ? std::string::npos : end - at);
        const bool flag = word.empty() || word[0] == '#' || word == "SMP" || word.rfind("PREEMPT", 0) == 0;
        if (!flag || end == std::string::npos) return flag ? std::string() : version.substr(at);
        at = end + 1;
    }
}

}  // namespace

const char* openGlDriverForKernelDriver(const std::string& kernelDriver) {
    if (kernelDriver.empty()) return "";
    for (const GlDriverRow& row : kGlDriverRows)
        if (kernelDriver == row.kernelDriver) return row.glDriver;
    return "";
}

std::string driverVersionOf(const SysfsDriverFacts& facts) {
    return facts.moduleVersion.empty() ? facts.kernelRelease : facts.moduleVersion;
}

std::string driverDateOf(const SysfsDriverFacts& facts) {
    if (!facts.nvidiaVersionLine.empty()) {
        const size_t at = dateStart(facts.nvidiaVersionLine);
        if (at != std::string::npos) return facts.nvidiaVersionLine.substr(at);
    }
    return kernelBuildDate(facts.kernelVersion);
}

const PciDevice* HardwareCaps::_pciDeviceOfSlot(uint32_t slot) const {
    if (slot >= uint32_t(kDisplaySlotCount) || !display.slots[slot].address) return nullptr;
    return pci.find(*display.slots[slot].address);
}

bool HardwareCaps::readGpuDriverRegistry(GpuRecord& record) {
    return readGpuDriverValues(record, BackendServices{sources, pci, display});
}

bool HardwareCaps::initGraphicsControllerData() {
    generalTrace().write(
        "RenderWindow::initializeGLContextWin32() - m_pRWCtx->mHardwareCaps.initGraphicsControllerData()...");
    copyText(driver.driverVersion, "Unknown version");
    driver.memorySizeBytes = 0;

    // Slot 0 is the primary adapter by construction, so its device is the one to read. A device no driver is
    // bound to has no driver values.
    const PciDevice* device = _pciDeviceOfSlot(0);
    if (!device || device->driver.empty()) return false;
    const SysfsDriverFacts facts = readDriverFacts(sources.rootDir, *device);

    const DisplaySlot& primarySlot = display.slots[0];
    copyText(driver.openGLDriverName, openGlDriverForKernelDriver(facts.kernelDriver));
    copyText(driver.deviceDescription, primarySlot.deviceString);
    if (!facts.vbiosVersion.empty()) copyText(driver.biosString, facts.vbiosVersion.c_str());
    constexpr uint64_t kMaxBytes = std::numeric_limits<uint32_t>::max();
    driver.memorySizeBytes = uint32_t(facts.vramBytes > kMaxBytes ? kMaxBytes : facts.vramBytes);
    copyText(driver.driverVersion, driverVersionOf(facts).c_str());
    copyText(driver.driverDescription, facts.kernelDriver.c_str());
    copyText(driver.driverDate, driverDateOf(facts).c_str());
    return true;
}

}  // namespace Kalidornm
