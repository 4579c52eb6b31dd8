#include "report/json_report.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "report/json_vulkan.h"
#include "report/report_file.h"
#include "compute/cuda_device_fields.h"
#include "compute/opencl_device_fields.h"

namespace report {

namespace {

using Json = nlohmann::ordered_json;

// A single-precision reading as the shortest decimal that reads back to it, not its double expansion
// (472.14 rather than 472.1400146484375).
double number(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", double(value));
    return std::strtod(text, nullptr);
}

Json text(const std::optional<std::string>& value) {
    return value && !value->empty() ? Json(*value) : Json(nullptr);
}
Json text(const std::string& value) { return value.empty() ? Json(nullptr) : Json(value); }
Json number(const std::optional<float>& value) { return value ? Json(number(*value)) : Json(nullptr); }
template <typename T>
Json positive(T value) {
    return value > 0 ? Json(value) : Json(nullptr);
}

Json system(const ReportSnapshot& s) {
    const ReportSystem& sys = s.system;
    return Json{
        {"cpu_name", text(sys.cpuName)},
        {"cpu_speed_mhz", positive(sys.cpuSpeedMhz)},
        {"cpu_logical_cores", positive(sys.logicalCores)},
        {"cpu_family", sys.cpuName ? Json(sys.cpuFamily) : Json(nullptr)},
        {"cpu_model", sys.cpuName ? Json(sys.cpuModel) : Json(nullptr)},
        {"cpu_stepping", sys.cpuName ? Json(sys.cpuStepping) : Json(nullptr)},
        {"installed_memory_mb", positive(sys.installedMemoryMb)},
        {"total_memory_kb", positive(sys.totalMemoryKb)},
        {"os_description", text(sys.systemOsDescription)},
        {"physx_version", positive(sys.physxVersion)},
    };
}

// Named readings as an object by name. `{}` where the backend read the GPU and it named nothing, null where
// nothing was read (a sleeping GPU, or one without a vendor reader).
Json byName(const std::vector<Kalidornm::NamedReading>& readings, bool read) {
    if (readings.empty() && !read) return nullptr;
    Json object = Json::object();
    for (const Kalidornm::NamedReading& r : readings) object[r.name] = number(r.value);
    return object;
}

// The same for a list of names: `[]` only where the driver gave a status that names nothing.
Json names(const std::vector<std::string>& list, bool read) {
    if (list.empty() && !read) return nullptr;
    return Json(list);
}

template <typename T>
Json count(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json joules(const std::optional<double>& value) { return value ? Json(*value) : Json(nullptr); }

Json pciId(bool known, uint32_t value) { return known ? Json(value) : Json(nullptr); }

// A level's clocks are its highest where the driver gives a range, and the range's low end stands beside them.
// NVIDIA's driver gives no voltage: its levels' 0 V is unknown.
Json performanceLevel(const ReportPerfLevel& l, uint32_t vendorId) {
    constexpr uint32_t kVendorNvidia = 0x10DE;
    return Json{{"id", l.id},
                {"gpu_clock_mhz", number(l.gpuClockMhz)},
                {"min_gpu_clock_mhz", number(l.minGpuClockMhz)},
                {"memory_clock_mhz", number(l.memClockMhz)},
                {"min_memory_clock_mhz", number(l.minMemClockMhz)},
                {"shader_clock_mhz", number(l.shaderClockMhz)},
                {"vddc_volts", vendorId == kVendorNvidia ? Json(nullptr) : Json(number(l.vddcVolts))}};
}

Json gpu(const ReportGpu& g) {
    Json levels = Json::array();
    for (const ReportPerfLevel& l : g.perfLevels) levels.push_back(performanceLevel(l, g.vendorId));
    const ReportNvidiaClocks& c = g.nvidia;
    const ReportLiveReadings& live = g.live;
    return Json{
        {"name", text(g.name)},
        {"codename", text(g.codename)},
        {"vendor_id", pciId(g.hasPciIds, g.vendorId)},
        {"device_id", pciId(g.hasPciIds, g.deviceId)},
        {"subvendor_id", pciId(g.hasPciIds, g.subvendorId)},
        {"subdevice_id", pciId(g.hasPciIds, g.subdeviceId)},
        {"bus_id", g.busId >= 0 ? Json(g.busId) : Json(nullptr)},
        {"driver_version", text(g.driverVersion)},
        {"catalyst_version", text(g.catalystVersion)},
        {"crimson_driver", g.catalystVersion ? Json(g.isCrimson) : Json(nullptr)},
        {"shader_cores", positive(g.shaderCores)},
        {"texture_units", positive(g.textureUnits)},
        {"rop_units", positive(g.ropUnits)},
        {"tdp_watts", positive(g.tdpWatts)},
        {"bios_version", text(g.biosVersion)},
        {"memory_size_mb", positive(g.memorySizeMb)},
        {"memory_type", text(g.memoryType)},
        {"memory_bus_width_bits", g.memoryBusWidthBits ? Json(*g.memoryBusWidthBits) : Json(nullptr)},
        {"memory_location", text(g.memoryLocation)},
        {"base_clock_mhz", number(c.baseClockMhz)},
        {"boost_clock_mhz", number(c.boostClockMhz)},
        {"memory_clock_mhz", number(c.memoryClockMhz)},
        {"power_target_percent", number(c.powerTargetPercent)},
        {"min_power_target_percent", number(c.minPowerTargetPercent)},
        {"max_power_target_percent", number(c.maxPowerTargetPercent)},
        {"performance_levels", levels},
        {"live",
         Json{
             {"core_temperature_c", number(live.coreTemperatureC)},
             {"board_temperature_c", number(live.boardTemperatureC)},
             {"memory_temperature_c", number(live.memoryTemperatureC)},
             {"vrm_temperature_c", number(live.vrmTemperatureC)},
             {"fan_percent", number(live.fanPercent)},
             {"fan_rpm", number(live.fanRpm)},
             {"gpu_load_percent", number(live.gpuLoadPercent)},
             {"frame_buffer_load_percent", number(live.frameBufferLoadPercent)},
             {"current_pstate", live.currentPstate ? Json(*live.currentPstate) : Json(nullptr)},
             {"current_gpu_clock_mhz", number(live.currentGpuClockMhz)},
             {"current_memory_clock_mhz", number(live.currentMemClockMhz)},
             {"current_shader_clock_mhz", number(live.currentShaderClockMhz)},
             {"current_volts", number(live.currentVolts)},
             {"hotspot_temperature_c", number(live.hotspotTemperatureC)},
             {"temperatures_c", byName(live.temperaturesC, live.moreRead)},
             {"voltages_v", byName(live.voltagesV, live.moreRead)},
             {"power_watts", number(live.powerWatts)},
             {"power_limit_watts", number(live.powerLimitWatts)},
             {"energy_joules", joules(live.energyJoules)},
             {"memory_used_mb", count(live.memoryUsedMb)},
             {"memory_total_mb", count(live.memoryTotalMb)},
             {"throttle_reasons", names(live.throttleReasons, live.throttleRead)},
         }},
    };
}

Json capValue(const ReportGlCap& c) {
    switch (c.valueType) {
        case 1: return c.intValue;
        case 2: return number(c.floatValue);
        case 4: return c.int64Value;
        case 5: return Json::array({c.tripleValue[0], c.tripleValue[1], c.tripleValue[2]});
        default: return nullptr;
    }
}

const char* capType(int32_t valueType) {
    switch (valueType) {
        case 1: return "integer";
        case 2: return "float";
        case 4: return "integer64";
        case 5: return "integer3";
        default: return "none";
    }
}

Json openGl(const ReportOpenGl& gl) {
    Json extensions = Json::array();
    for (const ReportGlExtension& e : gl.extensions)
        extensions.push_back(Json{{"name", e.name}, {"note", text(e.note)}});
    Json catalogue = Json::array();
    for (const ReportGlCap& c : gl.catalogue) {
        if (c.valueType == 0 && c.group.empty()) continue;  // the separator between core and extensions
        catalogue.push_back(
            Json{{"name", c.name}, {"group", text(c.group)}, {"type", capType(c.valueType)}, {"value", capValue(c)}});
    }
    return Json{
        {"vendor", text(gl.vendor)},
        {"renderer", text(gl.renderer)},
        {"version", text(gl.version)},
        {"glsl_version", text(gl.glslVersion)},
        {"arb_texture_units", gl.arbTextureUnits},
        {"vertex_texture_units", gl.vertexTextureUnits},
        {"pixel_texture_units", gl.pixelTextureUnits},
        {"geometry_texture_units", gl.geometryTextureUnits},
        {"max_texture_size", gl.maxTextureSize},
        {"max_anisotropy", number(gl.maxAnisotropy)},
        {"max_point_sprite_size", number(gl.maxPointSpriteSize)},
        {"max_dynamic_lights", gl.maxDynamicLights},
        {"max_viewport_size", gl.maxViewportSize},
        {"max_vertex_uniform_components", gl.maxVertexUniformComponents},
        {"max_fragment_uniform_components", gl.maxFragmentUniformComponents},
        {"max_geometry_uniform_components", gl.maxGeometryUniformComponents},
        {"max_varying_floats", gl.maxVaryingFloats},
        {"max_vertex_bindable_uniforms", gl.maxVertexBindableUniforms},
        {"max_fragment_bindable_uniforms", gl.maxFragmentBindableUniforms},
        {"max_geometry_bindable_uniforms", gl.maxGeometryBindableUniforms},
        {"max_draw_buffers", gl.maxDrawBuffers},
        {"features",
         Json{{"fbo", gl.fbo},
              {"pbo", gl.pbo},
              {"s3tc", gl.s3tc},
              {"ati_3dc", gl.ati3dc},
              {"texture_rectangle", gl.textureRectangle},
              {"floating_point_textures", gl.floatTextures}}},
        {"msaa_sample_counts", gl.msaaSampleCounts},
        {"gl_extension_count", gl.glExtensionCount},
        {"wgl_extension_count", gl.wglExtensionCount},
        {"extensions", extensions},
        {"capabilities", catalogue},
    };
}

// Rows that do not apply to the device (NVIDIA's attributes elsewhere) are null. The extension list is every
// name the driver reported, the last one too, unlike the text and XML reports' list.
Json clValue(const compute::ClDeviceField& f, const ReportClDevice& d) {
    if (!compute::clFieldApplies(f, d)) return nullptr;
    switch (f.json) {
        case compute::ClJson::Text: return f.text ? d.*f.text : std::string();
        case compute::ClJson::Number: return compute::clFieldNumber(f, d);
        case compute::ClJson::Bool: return compute::clFieldNumber(f, d) != 0;
        case compute::ClJson::Numbers:
            return Json::array(
                {compute::clFieldNumber(f, d, 0), compute::clFieldNumber(f, d, 1), compute::clFieldNumber(f, d, 2)});
        case compute::ClJson::Extensions: return d.reportedExtensions;
    }
    return nullptr;
}

Json clDevice(const ReportClDevice& d) {
    Json device = Json::object();
    for (const compute::ClDeviceField* f : compute::clReportFieldOrder()) {
        if (!f->shows(compute::kClJsonReport)) continue;
        (f->jsonGroup ? device[f->jsonGroup][f->jsonName] : device[f->jsonName]) = clValue(*f, d);
    }
    return device;
}

Json openCl(const std::vector<ReportClPlatform>& platforms) {
    Json list = Json::array();
    for (const ReportClPlatform& p : platforms) {
        Json platform = Json::object();
        for (const compute::ClPlatformField& f : compute::clPlatformFields()) {
            if (!f.shows(compute::kClJsonReport)) continue;
            platform[f.jsonName] = f.text ? Json(p.*f.text) : Json(p.reportedExtensions);
        }
        Json devices = Json::array();
        for (const ReportClDevice& d : p.devices) devices.push_back(clDevice(d));
        platform["devices"] = std::move(devices);
        list.push_back(std::move(platform));
    }
    return list;
}

// The values of one line of rows (a block's dimensions) make one array.
Json cudaDevice(const ReportCudaDevice& d) {
    Json device = Json::object();
    const char* lineName = nullptr;
    for (const compute::CudaDeviceField& f : compute::cudaDeviceFields()) {
        if (!f.shows(compute::kCudaJsonReport)) continue;
        Json value = f.text ? Json(d.*f.text) : Json(compute::cudaFieldNumber(f, d));
        if (f.continuesLine() && lineName) {
            Json& line = device[lineName];
            if (!line.is_array()) line = Json::array({line});
            line.push_back(std::move(value));
        } else {
            lineName = f.jsonName;
            device[lineName] = std::move(value);
        }
    }
    return device;
}

Json cuda(const std::vector<ReportCudaDevice>& devices) {
    Json list = Json::array();
    for (const ReportCudaDevice& d : devices) list.push_back(cudaDevice(d));
    return list;
}

Json document(const ReportSnapshot& s) {
    Json gpus = Json::array();
    for (const ReportGpu& g : s.gpus) gpus.push_back(gpu(g));
    const ReportDisplayMode& m = s.displayMode;
    const bool hasMode = m.width > 0 && m.height > 0;
    return Json{
        {"schema_version", kJsonReportSchemaVersion},
        {"program", Json{{"name", s.programName},
                         {"version", s.programVersion},
                         {"home_page", s.homePage}}},
        {"system", system(s)},
        {"has_display_device", s.hasDisplayDevice},
        {"display_mode",
         hasMode ? Json{{"width", m.width},
                        {"height", m.height},
                        {"refresh_hz", positive(m.refreshHz)},
                        {"bits_per_pixel", positive(m.bitsPerPixel)}}
                 : Json(nullptr)},
        {"driver", Json{{"primary_driver_version", text(s.driver.primaryDriverVersion)},
                        {"primary_driver_text", text(s.driver.primaryDriverText)},
                        {"nvidia_driver_version", positive(s.driver.nvDriverVersionNumber)},
                        {"nvidia_driver_branch", text(s.driver.nvDriverBranch)}}},
        {"gpus", gpus},
        {"opengl", s.hasDisplayDevice ? openGl(s.gl) : Json(nullptr)},
        {"opencl", Json{{"platforms", openCl(s.clPlatforms)}}},
        {"cuda", Json{{"devices", cuda(s.cudaDevices)}}},
        {"vulkan", vulkanJson(s.vulkan)},
    };
}

}  // namespace

std::string jsonReportText(const ReportSnapshot& snapshot) {
    try {
        return document(snapshot).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
    } catch (const std::exception&) {
        return {};
    }
}

bool writeJsonReport(const ReportSnapshot& snapshot, const char* path, int* error) {
    const std::string text = jsonReportText(snapshot);
    if (text.empty()) {  // only running out of memory stops the document
        if (error) *error = ENOMEM;
        return false;
    }
    return writeReportFile(path, text, error);
}

}  // namespace report
