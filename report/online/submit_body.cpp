#include "report/online/submit_body.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "base/version.h"
#include "report/online/text_filters.h"

namespace online {

namespace {

constexpr uint32_t kVendorAmd = 0x1002;
constexpr int32_t kPrimaryVendorNvidia = 1;

// The OpenGL limits the database keeps, in the order it expects them. The first two are triples.
constexpr auto kSubmittedCaps = std::to_array<std::string_view>({
    "GL_MAX_COMPUTE_WORK_GROUP_COUNT", "GL_MAX_COMPUTE_WORK_GROUP_SIZE", "GL_MAX_SAMPLES", "GL_MAX_VIEWPORT_DIMS",
    "GL_MAX_COLOR_ATTACHMENTS", "GL_MAX_DRAW_BUFFERS", "GL_MAX_TEXTURE_SIZE", "GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS",
    "GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS", "GL_MAX_ARRAY_TEXTURE_LAYERS", "GL_MAX_VERTEX_STREAMS",
    "GL_MAX_GEOMETRY_SHADER_INVOCATIONS", "GL_MAX_PATCH_VERTICES", "GL_MAX_TESS_GEN_LEVEL",
    "GL_MAX_TRANSFORM_FEEDBACK_BUFFERS", "GL_MAX_SUBROUTINES", "GL_MAX_FRAMEBUFFER_WIDTH",
    "GL_MAX_FRAMEBUFFER_HEIGHT", "GL_MAX_FRAMEBUFFER_LAYERS", "GL_MAX_FRAMEBUFFER_SAMPLES", "GL_MAX_WIDTH",
    "GL_MAX_HEIGHT", "GL_MAX_DEPTH", "GL_MAX_LAYERS", "GL_MAX_COMBINED_DIMENSIONS", "GL_MAX_VERTEX_ATTRIB_STRIDE",
    "GL_MAX_UNIFORM_BUFFER_BINDINGS", "GL_MAX_UNIFORM_BLOCK_SIZE", "GL_MAX_VERTEX_UNIFORM_BLOCKS",
    "GL_MAX_FRAGMENT_UNIFORM_BLOCKS", "GL_MAX_GEOMETRY_UNIFORM_BLOCKS", "GL_MAX_TESS_CONTROL_UNIFORM_BLOCKS",
    "GL_MAX_TESS_EVALUATION_UNIFORM_BLOCKS", "GL_MAX_COMPUTE_UNIFORM_BLOCKS", "GL_MAX_COMBINED_UNIFORM_BLOCKS",
    "GL_MAX_SHADER_STORAGE_BLOCK_SIZE", "GL_MAX_SHADER_STORAGE_BUFFER_BINDINGS",
    "GL_MAX_VERTEX_SHADER_STORAGE_BLOCKS", "GL_MAX_FRAGMENT_SHADER_STORAGE_BLOCKS",
    "GL_MAX_GEOMETRY_SHADER_STORAGE_BLOCKS", "GL_MAX_TESS_CONTROL_SHADER_STORAGE_BLOCKS",
    "GL_MAX_TESS_EVALUATION_SHADER_STORAGE_BLOCKS", "GL_MAX_COMPUTE_SHADER_STORAGE_BLOCKS",
    "GL_MAX_COMBINED_SHADER_STORAGE_BLOCKS", "GL_MAX_ATOMIC_COUNTER_BUFFER_SIZE",
    "GL_MAX_ATOMIC_COUNTER_BUFFER_BINDINGS", "GL_MAX_COMBINED_ATOMIC_COUNTER_BUFFERS",
    "GL_MAX_VERTEX_ATOMIC_COUNTERS", "GL_MAX_FRAGMENT_ATOMIC_COUNTERS", "GL_MAX_GEOMETRY_ATOMIC_COUNTERS",
    "GL_MAX_TESS_CONTROL_ATOMIC_COUNTERS", "GL_MAX_TESS_EVALUATION_ATOMIC_COUNTERS",
    "GL_MAX_COMPUTE_ATOMIC_COUNTERS", "GL_MAX_CULL_DISTANCES", "GL_MAX_COMBINED_CLIP_AND_CULL_DISTANCES",
});
static_assert(kSubmittedCaps.size() == 55, "the database keeps 55 OpenGL limits");
constexpr size_t kTripleCaps = 2;

std::string formatted(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string formatted(const char* format, ...) {
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

// Readings go out as whole numbers, cut toward zero; only values above 0 are ever written.
int32_t truncated(float value) { return value >= float(INT32_MAX) ? INT32_MAX : int32_t(value); }

// The body under construction: every item but the first is joined with "&".
class FormBody {
public:
    explicit FormBody(std::string& text) : m_text(text) { m_text.clear(); }

    void add(std::string_view name, std::string_view value) {
        if (!m_text.empty()) m_text += '&';
        m_text.append(name).append("=").append(value);
    }
    void addText(std::string_view name, std::string_view text) { add(name, sanitizeForUrl(text)); }
    void addNumber(std::string_view name, int64_t value) { add(name, std::to_string(value)); }
    void addPositive(std::string_view name, float value) {
        if (value > 0.0f) addNumber(name, truncated(value));
    }

private:
    std::string& m_text;
};

// "gpu%d_" and the rest of a field name.
std::string gpuField(size_t gpu, const char* rest) { return formatted("gpu%zu_%s", gpu, rest); }

std::string driverTextOf(const SubmitGpu& g) {
    if (g.vendorId == kVendorAmd && !g.catalystVersion.empty())
        return formatted(g.isCrimson ? "Crimson %s (%s)" : "Catalyst %s (%s)", g.catalystVersion.c_str(),
                         g.driverVersion.c_str());
    return g.driverVersion;
}

// The clock and voltage rows: the largest values of the performance levels where the driver gave no base
// and boost clock, then the P0 read for whatever is still missing. The base and boost reads share their
// variables, so a GPU the P0 read does not serve offers the last clocks those reads gave.
void addClockRows(FormBody& body, size_t index, const SubmitGpu& g, float baseMhz, float boostMhz) {
    bool clockWritten = baseMhz > 0.0f || boostMhz > 0.0f;
    bool memoryWritten = false, voltageWritten = false;
    if (!(baseMhz > 0.0f && boostMhz > 0.0f)) {
        SubmitClocks top;
        for (const SubmitClocks& level : g.perfLevels) {
            top.gpuMhz = std::max(top.gpuMhz, level.gpuMhz);
            top.memoryMhz = std::max(top.memoryMhz, level.memoryMhz);
            top.volts = std::max(top.volts, level.volts);
        }
        if (top.gpuMhz > 0.0f) {
            body.addPositive(gpuField(index, "core_clock_base_mhz"), top.gpuMhz);
            clockWritten = true;
        }
        if (top.memoryMhz > 0.0f) {
            body.addPositive(gpuField(index, "mem_clock_mhz"), top.memoryMhz);
            memoryWritten = true;
        }
        if (top.volts > 0.0f) {
            body.addPositive(gpuField(index, "core_voltage_mv"), top.volts * 1000.0f);
            voltageWritten = true;
        }
    }
    SubmitClocks p0;
    if (g.baseClocks) p0.gpuMhz = g.baseClocks->gpuMhz, p0.memoryMhz = g.baseClocks->memoryMhz;
    if (g.boostClocks) p0.gpuMhz = g.boostClocks->gpuMhz, p0.memoryMhz = g.boostClocks->memoryMhz;
    if (g.p0Clocks) p0 = *g.p0Clocks;
    if (!clockWritten) body.addPositive(gpuField(index, "core_clock_base_mhz"), p0.gpuMhz);
    if (!voltageWritten) body.addPositive(gpuField(index, "core_voltage_mv"), p0.volts * 1000.0f);
    if (!memoryWritten) body.addPositive(gpuField(index, "mem_clock_mhz"), p0.memoryMhz);
}

void addGpu(FormBody& body, size_t index, const SubmitGpu& g, const SubmissionFacts& f) {
    body.addNumber(gpuField(index, "vendor_id"), g.vendorId);
    body.addNumber(gpuField(index, "device_id"), g.deviceId);
    body.addNumber(gpuField(index, "subvendor_id"), g.subvendorId);
    body.addNumber(gpuField(index, "subdevice_id"), g.subdeviceId);
    if (!g.driverVersion.empty())
        body.addText(gpuField(index, "graphics_drivers"), driverTextOf(g));
    else if (index == 0)
        body.add(gpuField(index, "graphics_drivers"),
                 sanitizeForName(formatted("%s GL %s", kPlatformWord, f.glVersion.c_str())));

    const float baseMhz = g.baseClocks ? g.baseClocks->gpuMhz : 0.0f;
    const float boostMhz = g.boostClocks ? g.boostClocks->gpuMhz : 0.0f;
    body.addPositive(gpuField(index, "core_clock_base_mhz"), baseMhz);
    body.addPositive(gpuField(index, "core_clock_boost_mhz"), boostMhz);
    if (g.powerTargetPercent && *g.powerTargetPercent > 0.0f) {
        body.addPositive(gpuField(index, "nv_power_target_percent"), *g.powerTargetPercent);
        if (g.powerPolicy) {
            body.addPositive(gpuField(index, "nv_power_target_min_percent"), g.powerPolicy->minPercent);
            body.addPositive(gpuField(index, "nv_power_target_max_percent"), g.powerPolicy->maxPercent);
            body.addPositive(gpuField(index, "nv_power_target_default_percent"), g.powerPolicy->defaultPercent);
        }
    }
    if (baseMhz > 0.0f && boostMhz > 0.0f && g.clockOffsets) {
        body.addPositive(gpuField(index, "nv_core_clock_offset"), g.clockOffsets->coreMhz);
        body.addPositive(gpuField(index, "nv_mem_clock_offset"), g.clockOffsets->memoryMhz);
        body.addPositive(gpuField(index, "nv_core_voltage_offset"), g.clockOffsets->volts);
    }

    body.addText(gpuField(index, "name"),
                 g.name.empty() ? formatted("%s | %s", kPlatformWord, f.glRenderer.c_str()) : g.name);
    if (!g.codename.empty()) body.addText(gpuField(index, "codename"), g.codename);
    if (g.shaderCores != 0) body.addNumber(gpuField(index, "cores"), g.shaderCores);
    if (g.textureUnits != 0) body.addNumber(gpuField(index, "tmus"), g.textureUnits);
    if (g.ropUnits != 0) body.addNumber(gpuField(index, "rops"), g.ropUnits);
    if (g.tdpWatts != 0) body.addNumber(gpuField(index, "tdp"), g.tdpWatts);
    if (!g.biosVersion.empty()) body.addText(gpuField(index, "bios"), g.biosVersion);
    if (g.memorySizeMb != 0) body.addNumber(gpuField(index, "mem_size"), g.memorySizeMb);
    if (!g.memoryType.empty()) body.add(gpuField(index, "mem_type"), g.memoryType);
    if (g.memoryBusWidthBits != 0) body.addNumber(gpuField(index, "mem_bus_width"), g.memoryBusWidthBits);
    body.addNumber(gpuField(index, "bus_id"), g.busId);

    addClockRows(body, index, g, baseMhz, boostMhz);
    if (g.temperatures) {
        body.addPositive(gpuField(index, "core_temp"), g.temperatures->coreC);
        body.addPositive(gpuField(index, "mem_temp"), g.temperatures->memoryC);
        body.addPositive(gpuField(index, "vrm_temp"), g.temperatures->vrmC);
    }
    if (g.powerUsagePercent) body.addPositive(gpuField(index, "nv_power_current_percent"), *g.powerUsagePercent);
    if (g.fanPercent) body.addPositive(gpuField(index, "fan_speed_percent"), *g.fanPercent);
    if (g.fanRpm) body.addPositive(gpuField(index, "fan_speed_rpm"), *g.fanRpm);
    if (g.gpuLoadPercent) body.addPositive(gpuField(index, "core_usage"), *g.gpuLoadPercent);
    if (g.memoryLoadPercent) body.addPositive(gpuField(index, "gpu_mem_usage"), *g.memoryLoadPercent);
}

// Without a GPU record the primary display device is sent as GPU 0, with no live reads.
void addPrimaryAsGpu(FormBody& body, const SubmissionFacts& f) {
    const SubmitPrimary& p = f.primary;
    std::string driver = p.driverText;
    if (p.vendorKind == kPrimaryVendorNvidia)
        driver = formatted("R%.2f (%s) / %s (%s)", double(float(p.nvDriverVersionNumber) * 0.01f),
                           p.nvDriverBranch.c_str(), p.driverVersion.c_str(), p.driverDate.c_str());
    if (driver.empty()) driver = formatted("%s | OpenGL %s", kPlatformWord, f.glVersion.c_str());
    body.addNumber("num_gpus", 1);
    body.addText("gpu0_graphics_drivers", driver);
    body.addNumber("gpu0_vendor_id", p.vendorId);
    body.addNumber("gpu0_device_id", p.deviceId);
    body.addNumber("gpu0_subvendor_id", p.subvendorId);
    body.addNumber("gpu0_subdevice_id", p.subdeviceId);
    body.addText("gpu0_name",
                 p.gpuName.empty() ? formatted("%s_%s", kPlatformWord, f.glRenderer.c_str()) : p.gpuName);
    if (!p.codename.empty()) body.addText("gpu0_codename", p.codename);
    if (p.shaderCores != 0) body.addNumber("gpu0_cores", p.shaderCores);
    if (p.videoMemoryMb != 0) body.addNumber("gpu0_mem_size", p.videoMemoryMb);
    if (!p.biosVersion.empty()) body.addText("gpu0_bios", p.biosVersion);
    if (p.textureUnits != 0) body.addNumber("gpu0_tmus", p.textureUnits);
    if (p.ropUnits != 0) body.addNumber("gpu0_rops", p.ropUnits);
    if (p.tdpWatts != 0) body.addNumber("gpu0_tdp", p.tdpWatts);
}

// Names each followed by "%20", the last one too, as many as fit whole in a list of `size` bytes.
std::string nameList(const std::vector<std::string>& names, size_t size) {
    std::string list;
    for (const std::string& name : names) {
        if (list.size() + name.size() + 3 >= size) break;
        list.append(name).append("%20");
    }
    return list;
}

const SubmitGlCap* findCap(const std::vector<SubmitGlCap>& caps, std::string_view name) {
    for (const SubmitGlCap& cap : caps)
        if (cap.name == name) return &cap;
    return nullptr;
}

void addOpenGl(FormBody& body, const SubmissionFacts& f) {
    if (!f.glVendor.empty())
        body.addText("opengl_GL_VENDOR", f.glVendor);
    else
        body.add("opengl_GL_VENDOR", "Orbiscale");
    if (!f.glRenderer.empty())
        body.addText("opengl_GL_RENDERER", f.glRenderer);
    else
        body.add("opengl_GL_RENDERER", "LUMENSCOPE");
    if (!f.glVersion.empty())
        body.addText("opengl_GL_VERSION", f.glVersion);
    else
        body.add("opengl_GL_VERSION", "0.0");
    for (size_t i = 0; i < kSubmittedCaps.size(); ++i) {
        const SubmitGlCap* cap = findCap(f.glCaps, kSubmittedCaps[i]);
        if (!cap) continue;
        const std::string name = "opengl_caps_" + std::string(kSubmittedCaps[i]);
        if (i < kTripleCaps)
            body.add(name, formatted("%d_%d_%d", cap->tripleValue[0], cap->tripleValue[1], cap->tripleValue[2]));
        else
            body.addNumber(name, cap->intValue);
    }
    if (f.glExtensions.empty()) return;
    body.addNumber("opengl_num_extensions", int64_t(f.glExtensions.size()));
    body.add("opengl_GL_EXTENSIONS", nameList(f.glExtensions, kGlExtensionListSize));
}

// The words of the report's device type line.
std::string deviceTypeWords(uint64_t type) {
    std::string words;
    constexpr struct {
        uint64_t bit;
        const char* word;
    } kWords[] = {{2, "CPU"}, {4, "GPU"}, {8, "ACCELERATOR"}, {1, "DEFAULT"}};
    for (const auto& w : kWords) {
        if (!(type & w.bit)) continue;
        if (!words.empty()) words += " / ";
        words += w.word;
    }
    return words;
}

void addOpenCl(FormBody& body, const SubmissionFacts& f) {
    if (f.clPlatforms.empty()) return;
    body.addNumber("opencl_num_platforms", int64_t(f.clPlatforms.size()));
    for (size_t p = 0; p < f.clPlatforms.size(); ++p) {
        const compute::ClPlatformRecord& platform = f.clPlatforms[p];
        const auto field = [p](const char* rest) { return formatted("opencl_p%zu_%s", p, rest); };
        body.addText(field("CL_PLATFORM_NAME"), platform.name);
        body.addText(field("CL_PLATFORM_VENDOR"), platform.vendor);
        body.addText(field("CL_PLATFORM_VERSION"), platform.version);
        body.addNumber(field("num_devices"), int64_t(platform.devices.size()));
        for (size_t d = 0; d < platform.devices.size(); ++d) {
            const compute::ClDeviceRecord& device = platform.devices[d];
            const auto deviceField = [p, d](const char* rest) { return formatted("opencl_p%zu_d%zu_%s", p, d, rest); };
            body.addText(deviceField("CL_DEVICE_NAME"), device.name);
            body.add(deviceField("CL_DEVICE_TYPE"), deviceTypeWords(device.type));
            body.addText(deviceField("CL_DRIVER_VERSION"), device.driverVersion);
            body.addText(deviceField("CL_DEVICE_VERSION"), device.version);
            body.addNumber(deviceField("CL_DEVICE_MAX_COMPUTE_UNITS"), device.maxComputeUnits);
            body.addNumber(deviceField("CL_DEVICE_MAX_CLOCK_FREQUENCY"), device.maxClockMhz);
            body.addNumber(deviceField("caps_CL_DEVICE_GLOBAL_MEM_SIZE"), int64_t(device.globalMemSize >> 20));
            body.addNumber(deviceField("caps_CL_DEVICE_LOCAL_MEM_SIZE"), int64_t(device.localMemSize >> 10));
            body.addNumber(deviceField("caps_CL_DEVICE_IMAGE2D_MAX_WIDTH"), int64_t(device.image2dMaxWidth));
            body.addNumber(deviceField("caps_CL_DEVICE_IMAGE2D_MAX_HEIGHT"), int64_t(device.image2dMaxHeight));
            body.addNumber(deviceField("caps_CL_DEVICE_IMAGE3D_MAX_WIDTH"), int64_t(device.image3dMaxWidth));
            body.addNumber(deviceField("caps_CL_DEVICE_IMAGE3D_MAX_HEIGHT"), int64_t(device.image3dMaxHeight));
            body.addNumber(deviceField("caps_CL_DEVICE_IMAGE3D_MAX_DEPTH"), int64_t(device.image3dMaxDepth));
            body.addNumber(deviceField("caps_CL_DEVICE_MAX_SAMPLERS"), device.maxSamplers);
            body.addNumber(deviceField("CL_DEVICE_EXTENSIONS"), int64_t(device.extensions.size()));
            if (!device.extensions.empty())
                body.add(deviceField("CL_EXTENSIONS"), nameList(device.extensions, kClExtensionListSize));
        }
    }
}

bool isAnonymous(std::string_view name) {
    constexpr std::string_view kAnonymous = "anonymous";
    if (name.size() != kAnonymous.size()) return false;
    for (size_t i = 0; i < name.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(name[i])) != kAnonymous[i]) return false;
    return true;
}

}  // namespace

bool buildSubmitBody(const SubmissionFacts& f, const char* screenName, const char* password, std::string& text) {
    if (!screenName || !password) return false;
    FormBody body(text);
    body.addText("app_name", lumenscope::kDisplayName);
    body.addText("benchmark_name", lumenscope::kDisplayName);
    body.add("app_signature", lumenscope::kVersionText);
    body.addText("cpu_name", f.cpuName);
    body.addNumber("cpu_speed_mhz", f.cpuSpeedMhz);
    if (const uint32_t memoryMb = f.totalMemoryKb >> 10; memoryMb != 0) body.addNumber("cpu_mem_size_mb", memoryMb);
    body.add("platform", kPlatformWord);
    body.addText("os", f.osDescription);
    if (*screenName && !isAnonymous(screenName)) body.add("screen_name", screenName);
    if (*password) body.add("submit_password", password);

    if (f.gpus.empty()) {
        addPrimaryAsGpu(body, f);
    } else {
        body.addNumber("num_gpus", int64_t(f.gpus.size()));
        for (size_t i = 0; i < f.gpus.size(); ++i) addGpu(body, i, f.gpus[i], f);
    }
    addOpenGl(body, f);
    addOpenCl(body, f);
    return true;
}

}  // namespace online
