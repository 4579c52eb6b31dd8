#include "report/report_sections.h"

namespace report {

namespace {

constexpr uint32_t kVendorNvidia = 0x10DE;
constexpr uint32_t kVendorAmd = 0x1002;

// A text row with its 2-tab attribute, both formatted alike.
void addGpuRow(ReportBuffers& b, const char* label, const char* attribute, const std::string& value) {
    addReportLine(b, "  - %s: %s", label, value.c_str());
    addXmlAttribute(b, 2, attribute, value);
}

void addNumberRow(ReportBuffers& b, const char* textFormat, const char* attribute, int32_t value) {
    if (value == 0) return;
    addReportLine(b, textFormat, value);
    addXmlAttribute(b, 2, attribute, formatText("%d", value));
}

void addDriverRows(ReportBuffers& b, const ReportSnapshot& s, const ReportGpu& gpu) {
    const ReportDriver& d = s.driver;
    if (gpu.vendorId == kVendorNvidia) {
        if (!d.primaryDriverVersion) return;
        // The version number is kept x 100; it is shown through a single-precision product, as the driver
        // library's own tools do.
        const float release = float(d.nvDriverVersionNumber) * 0.01f;
        const std::string driver = formatText("%s (R%.2f)", d.primaryDriverVersion->c_str(), release);
        addReportLine(b, "  - Driver: %s", driver.c_str());
        addXmlAttribute(b, 2, "driver", driver);
        if (d.nvDriverBranch) addGpuRow(b, "Branch", "branch", *d.nvDriverBranch);
    } else if (gpu.vendorId == kVendorAmd) {
        const std::optional<std::string>& text = gpu.driverVersion ? gpu.driverVersion : d.primaryDriverText;
        if (!gpu.catalystVersion || !text) return;
        const char* family = gpu.isCrimson ? "Crimson" : "Catalyst";
        const std::string driver = formatText("%s %s (%s)", family, gpu.catalystVersion->c_str(), text->c_str());
        addReportLine(b, "  - Driver: %s", driver.c_str());
        addXmlAttribute(b, 2, "driver", driver);
    } else if (d.primaryDriverText) {
        addGpuRow(b, "Driver", "driver", *d.primaryDriverText);
    }
}

bool hasBoostValues(const ReportGpu& gpu) {
    const ReportNvidiaClocks& c = gpu.nvidia;
    return c.baseClockMhz.value_or(0.0f) > 0.0f && c.boostClockMhz.value_or(0.0f) > 0.0f &&
           c.powerTargetPercent.value_or(0.0f) > 0.0f;
}

void addClockElements(ReportBuffers& b, const ReportGpu& gpu) {
    const bool nvidia = gpu.vendorId == kVendorNvidia;
    if (nvidia && hasBoostValues(gpu)) {
        const ReportNvidiaClocks& c = gpu.nvidia;
        const int base = int(*c.baseClockMhz), boost = int(*c.boostClockMhz);
        const int target = int(*c.powerTargetPercent);
        const int minTarget = int(c.minPowerTargetPercent.value_or(0.0f));
        const int maxTarget = int(c.maxPowerTargetPercent.value_or(0.0f));
        addReportXml(b,
                     "\n\t\t\t<gtx600 gpu_base_clock=\"%d\" gpu_boost_clock=\"%d\" gpu_power_target=\"%d\" "
                     "gpu_min_power_target=\"%d\" gpu_max_power_target=\"%d\" />",
                     base, boost, target, minTarget, maxTarget);
        addReportLine(b, "  - GPU base clock: %d MHz", base);
        addReportLine(b, "  - GPU boost clock: %d MHz", boost);
        addReportLine(b, "  - GPU power target: %d %% TDP", target);
        addReportLine(b, "  - GPU min power target: %d %% TDP", minTarget);
        addReportLine(b, "  - GPU max power target: %d %% TDP", maxTarget);
        return;
    }
    for (const ReportPerfLevel& level : gpu.perfLevels) {
        const int gpuMhz = int(level.gpuClockMhz), memMhz = int(level.memClockMhz);
        if (nvidia) {
            addReportLine(b, "  - PState %d - GPU clock: %d MHz, memory: %d MHz, VDDC: %.3fV", int(level.id), gpuMhz,
                          memMhz, level.vddcVolts);
            addReportXml(b, "\n\t\t\t<pstate nv_pstate=\"%d\" gpu_clock=\"%d\" mem_clock=\"%d\" vddc=\"%.3f\" />",
                         int(level.id), gpuMhz, memMhz, level.vddcVolts);
        } else {
            addReportLine(b, "  - GPU clock: %d MHz, memory: %d MHz, VDDC: %.3fV", gpuMhz, memMhz, level.vddcVolts);
            addReportXml(b, "\n\t\t\t<pstate gpu_clock=\"%d\" mem_clock=\"%d\" vddc=\"%.3f\" />", gpuMhz, memMhz,
                         level.vddcVolts);
        }
    }
}

void addGpu(ReportBuffers& b, const ReportSnapshot& s, const ReportGpu& gpu, size_t index) {
    addBlankLine(b);
    addReportLine(b, "- GPU %d", int(index + 1));
    addReportXml(b, "\n\t\t<gpu ");
    if (gpu.name) addGpuRow(b, "Name", "name", *gpu.name);
    if (gpu.codename) addGpuRow(b, "GPU codename", "gpu_codename", *gpu.codename);
    if (gpu.hasPciIds) {
        addReportLine(b, "  - Device ID: %4X-%4X", gpu.vendorId, gpu.deviceId);
        addXmlAttribute(b, 2, "vendor_id", formatText("%4X", gpu.vendorId));
        addXmlAttribute(b, 2, "device_id", formatText("%4X", gpu.deviceId));
        addReportLine(b, "  - Subdevice ID: %4X-%4X", gpu.subvendorId, gpu.subdeviceId);
        addXmlAttribute(b, 2, "subvendor_id", formatText("%4X", gpu.subvendorId));
        addXmlAttribute(b, 2, "subdevice_id", formatText("%4X", gpu.subdeviceId));
    }
    addDriverRows(b, s, gpu);
    if (gpu.busId >= 0) addNumberRow(b, "  - Bus Id: %d", "bus_id", gpu.busId);  // -1: not on a PCI bus
    addNumberRow(b, "  - Shader cores: %d", "shader_cores", gpu.shaderCores);
    addNumberRow(b, "  - Texture units: %d", "texture_units", gpu.textureUnits);
    addNumberRow(b, "  - ROP units: %d", "rop_units", gpu.ropUnits);
    addNumberRow(b, "  - TDP: %dW", "tdp", gpu.tdpWatts);
    if (gpu.biosVersion) addGpuRow(b, "BIOS version", "bios_version", *gpu.biosVersion);
    addNumberRow(b, "  - Memory size: %dMB", "memory_size", int32_t(gpu.memorySizeMb));
    if (gpu.memoryType) addGpuRow(b, "Memory type", "memory_type", *gpu.memoryType);
    if (gpu.memoryBusWidthBits) {
        addReportLine(b, "  - Memory bus width: %d-bit", int(*gpu.memoryBusWidthBits));
        addXmlAttribute(b, 2, "memory_bus_width", formatText("%d", int(*gpu.memoryBusWidthBits)));
    }
    addReportXml(b, "\t\t >");
    addClockElements(b, gpu);
    addReportXml(b, "\n\t\t</gpu>");
}

}  // namespace

void addGraphicsAdaptersSection(ReportBuffers& b, const ReportSnapshot& s) {
    addHeading(b, "Graphics Adapters / GPUs");
    addReportXml(b, "\n\t<graphics_cards ");
    const ReportDisplayMode& m = s.displayMode;
    const std::string mode = formatText("%dx%d @ %d Hz - %d bpp", m.width, m.height, m.refreshHz, m.bitsPerPixel);
    addReportLine(b, "- Current Display Mode: %s", mode.c_str());
    addXmlAttribute(b, 3, "cur_display_mode", mode);
    if (!s.gpus.empty()) {
        addReportLine(b, "- Num GPUs: %d", int(s.gpus.size()));
        addReportXml(b, "\n\t\t\tnum_gpus=\"%d\" >", int(s.gpus.size()));
    } else {
        // A driver without a GPU record: the start tag still closes so that the file stays well formed.
        addReportXml(b, " >");
    }
    for (size_t i = 0; i < s.gpus.size(); ++i) addGpu(b, s, s.gpus[i], i);
    addReportXml(b, "\n\t</graphics_cards>");
    addBlankLine(b);
    addBlankLine(b);
}

}  // namespace report
