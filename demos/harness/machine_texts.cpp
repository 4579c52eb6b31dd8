#include "demos/harness/machine_texts.h"

#include <cstdio>

#include "kalidor/kalidor.h"

namespace {

constexpr uint32_t kVendorNvidia = 0x10DE;
constexpr uint32_t kVendorAmd = 0x1002;

const char* orEmpty(const char* text) { return text ? text : ""; }

}  // namespace

std::string demoRendererText(const Kalidornm::Kalidor& library) { return orEmpty(library.getPrimaryGpuName()); }

std::string demoDriverText(const Kalidornm::Kalidor& library, int gpu) {
    uint32_t vendor = 0;
    if (gpu < 0 || uint32_t(gpu) >= library.getGpuCount() ||
        !library.getGpuPciIds(gpu, &vendor, nullptr, nullptr, nullptr))
        return orEmpty(library.getPrimaryDriverText());
    char text[512];
    if (vendor == kVendorNvidia) {
        std::snprintf(text, sizeof text, "R%.2f (%s) / %s (%s)", double(float(library.getDriverVersionNumber()) * 0.01f),
                      orEmpty(library.getDriverBranch()), orEmpty(library.getPrimaryDriverVersion()),
                      orEmpty(library.getPrimaryDriverDate()));
        return text;
    }
    const char* driver = library.getGpuDriverVersion(gpu);
    if (!driver) driver = library.getPrimaryDriverText();
    if (!driver) return {};
    const char* catalyst = vendor == kVendorAmd ? library.getGpuCatalystVersion(gpu) : nullptr;
    if (!catalyst) return driver;
    std::snprintf(text, sizeof text, library.isGpuCrimsonDriver(gpu) ? "Crimson %s - %s" : "Catalyst %s - %s",
                  catalyst, driver);
    return text;
}
