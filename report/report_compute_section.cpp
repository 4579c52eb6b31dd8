#include "report_sections.h"

namespace report {

namespace {

// A CUDA row: text with a tab and a dash, 4-tab attribute.
void addCudaRow(ReportBuffers& b, const std::string& text, const char* attribute, const std::string& value) {
    addReportLine(b, "%s", text.c_str());
    addXmlAttribute(b, 4, attribute, value);
}

void addCudaInt(ReportBuffers& b, const char* textFormat, const char* attribute, int value) {
    addCudaRow(b, formatText(textFormat, value), attribute, formatText("%d", value));
}

// An OpenCL device row: "\t- NAME: value" and the attribute NAME with the same value.
void addClRow(ReportBuffers& b, const char* name, const std::string& value, const char* unit = "") {
    addReportLine(b, "\t- %s: %s%s", name, value.c_str(), unit);
    addXmlAttribute(b, 4, name, value);
}

void addClInt(ReportBuffers& b, const char* name, uint64_t value) { addClRow(b, name, formatText("%d", int(value))); }

std::string deviceTypeWords(uint64_t type) {
    std::string words;
    const struct {
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

bool hasExtension(const ReportClDevice& d, const char* name) {
    for (const std::string& e : d.extensions)
        if (e == name) return true;
    return false;
}

void addClDevice(ReportBuffers& b, const ReportClDevice& d) {
    addReportXml(b, "\n\t\t\t<device ");
    addBlankLine(b);
    addClRow(b, "CL_DEVICE_NAME", d.name);
    addClRow(b, "CL_DEVICE_VENDOR", d.vendor);
    addClRow(b, "CL_DRIVER_VERSION", d.driverVersion);
    addClRow(b, "CL_DEVICE_PROFILE", d.profile);
    addClRow(b, "CL_DEVICE_VERSION", d.version);
    addClRow(b, "CL_DEVICE_TYPE", deviceTypeWords(d.type));
    addClRow(b, "CL_DEVICE_VENDOR_ID", formatText("0x%.4X", d.vendorId));
    addClInt(b, "CL_DEVICE_MAX_COMPUTE_UNITS", d.maxComputeUnits);
    addReportLine(b, "\t- CL_DEVICE_MAX_CLOCK_FREQUENCY: %dMHz", int(d.maxClockMhz));
    addXmlAttribute(b, 4, "CL_DEVICE_MAX_CLOCK_FREQUENCY_MHZ", formatText("%d", int(d.maxClockMhz)));
    if (hasExtension(d, "cl_nv_device_attribute_query")) {
        addClInt(b, "CL_NV_DEVICE_COMPUTE_CAPABILITY_MAJOR", d.nvComputeCapabilityMajor);
        addClInt(b, "CL_NV_DEVICE_COMPUTE_CAPABILITY_MINOR", d.nvComputeCapabilityMinor);
        addClInt(b, "CL_NV_DEVICE_REGISTERS_PER_BLOCK", d.nvRegistersPerBlock);
        addClInt(b, "CL_NV_DEVICE_WARP_SIZE", d.nvWarpSize);
        addClInt(b, "CL_NV_DEVICE_GPU_OVERLAP", d.nvGpuOverlap);
        addClInt(b, "CL_NV_DEVICE_KERNEL_EXEC_TIMEOUT", d.nvKernelExecTimeout);
        addClInt(b, "CL_NV_DEVICE_INTEGRATED_MEMORY", d.nvIntegratedMemory);
    }
    addClInt(b, "CL_DEVICE_ADDRESS_BITS", d.addressBits);
    addReportLine(b, "\t- CL_DEVICE_MAX_MEM_ALLOC_SIZE: %dKB", int(d.maxMemAllocSize >> 10));
    addXmlAttribute(b, 4, "CL_DEVICE_MAX_MEM_ALLOC_SIZE_KB", formatText("%d", int(d.maxMemAllocSize >> 10)));
    addReportLine(b, "\t- CL_DEVICE_GLOBAL_MEM_SIZE: %dMB", int(d.globalMemSize >> 20));
    addXmlAttribute(b, 4, "CL_DEVICE_GLOBAL_MEM_SIZE_MB", formatText("%d", int(d.globalMemSize >> 20)));
    addClInt(b, "CL_DEVICE_MAX_PARAMETER_SIZE", d.maxParameterSize);
    addClRow(b, "CL_DEVICE_GLOBAL_MEM_CACHELINE_SIZE", formatText("%d", int(d.globalMemCachelineSize)), " Bytes");
    addClRow(b, "CL_DEVICE_GLOBAL_MEM_CACHE_SIZE", formatText("%d", int(d.globalMemCacheSize >> 10)), "KB");
    addClRow(b, "CL_DEVICE_ERROR_CORRECTION_SUPPORT", d.errorCorrectionSupport ? "YES" : "NO");
    addClRow(b, "CL_DEVICE_LOCAL_MEM_TYPE", d.localMemType);
    addReportLine(b, "\t- CL_DEVICE_LOCAL_MEM_SIZE: %dKB", int(d.localMemSize >> 10));
    addXmlAttribute(b, 4, "CL_DEVICE_LOCAL_MEM_SIZE_KB", formatText("%d", int(d.localMemSize >> 10)));
    addReportLine(b, "\t- CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE: %dKB", int(d.maxConstantBufferSize >> 10));
    addXmlAttribute(b, 4, "CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE_KB",
                    formatText("%d", int(d.maxConstantBufferSize >> 10)));
    addClInt(b, "CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS", d.maxWorkItemDimensions);
    addClRow(b, "CL_DEVICE_MAX_WORK_ITEM_SIZES",
             formatText("[%d ; %d ; %d]", int(d.maxWorkItemSizes[0]), int(d.maxWorkItemSizes[1]),
                        int(d.maxWorkItemSizes[2])));
    addClInt(b, "CL_DEVICE_MAX_WORK_GROUP_SIZE", d.maxWorkGroupSize);
    const int nativeRaw = d.nativeKernels ? 1 : 0;
    addReportLine(b, "\t- CL_EXEC_NATIVE_KERNEL: %s", nativeRaw == 1 ? "YES" : "NO");
    addXmlAttribute(b, 4, "CL_EXEC_NATIVE_KERNEL", formatText("%d", nativeRaw));
    addClRow(b, "CL_DEVICE_IMAGE_SUPPORT", d.imageSupport ? "YES" : "NO");
    addClInt(b, "CL_DEVICE_MAX_READ_IMAGE_ARGS", d.maxReadImageArgs);
    addClInt(b, "CL_DEVICE_MAX_WRITE_IMAGE_ARGS", d.maxWriteImageArgs);
    addClInt(b, "CL_DEVICE_IMAGE2D_MAX_WIDTH", d.image2dMaxWidth);
    addClInt(b, "CL_DEVICE_IMAGE2D_MAX_HEIGHT", d.image2dMaxHeight);
    addClInt(b, "CL_DEVICE_IMAGE3D_MAX_WIDTH", d.image3dMaxWidth);
    addClInt(b, "CL_DEVICE_IMAGE3D_MAX_HEIGHT", d.image3dMaxHeight);
    addClInt(b, "CL_DEVICE_IMAGE3D_MAX_DEPTH", d.image3dMaxDepth);
    addClInt(b, "CL_DEVICE_MAX_SAMPLERS", d.maxSamplers);
    addClInt(b, "CL_DEVICE_PREFERRED_VECTOR_WIDTH_CHAR", d.preferredVectorWidthChar);
    addClInt(b, "CL_DEVICE_PREFERRED_VECTOR_WIDTH_SHORT", d.preferredVectorWidthShort);
    addClInt(b, "CL_DEVICE_PREFERRED_VECTOR_WIDTH_INT", d.preferredVectorWidthInt);
    addClInt(b, "CL_DEVICE_PREFERRED_VECTOR_WIDTH_LONG", d.preferredVectorWidthLong);
    addClInt(b, "CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT", d.preferredVectorWidthFloat);
    addClInt(b, "CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE", d.preferredVectorWidthDouble);
    addClInt(b, "CL_DEVICE_EXTENSIONS", d.extensions.size());
    addReportXml(b, "\t\t\t >");
    if (!d.extensions.empty()) {
        addReportLine(b, "\t- Extensions:");
        addReportXml(b, "\n\t\t\t\t<extensions>");
        for (const std::string& e : d.extensions) {
            addReportLine(b, "\t\t- %s", e.c_str());
            addReportXml(b, "\n\t\t\t\t\t<li>%s</li>", xmlEscaped(e).c_str());
        }
        addReportXml(b, "\n\t\t\t\t</extensions>");
    }
    addReportXml(b, "\n\t\t\t</device>");
}

}  // namespace

void addCudaSection(ReportBuffers& b, const ReportSnapshot& s) {
    if (s.cudaDevices.empty()) return;
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "NVIDIA CUDA Capabilities");
    addReportXml(b, "\n\t\t<nvidia_cuda>");
    for (size_t i = 0; i < s.cudaDevices.size(); ++i) {
        const ReportCudaDevice& d = s.cudaDevices[i];
        addReportLine(b, "- CUDA Device %d", int(i));
        addReportXml(b, "\n\t\t\t<cuda_device ");
        addCudaRow(b, formatText("\t- Device name: %s", d.name.c_str()), "name", d.name);
        addCudaRow(b, formatText("\t- Compute Capability: %d.%d", d.computeMajor, d.computeMinor), "compute_capability",
                   formatText("%d.%d", d.computeMajor, d.computeMinor));
        addCudaInt(b, "\t- Total Memory: %d MB", "total_memory_mb", int(d.totalMemoryBytes >> 20));
        addCudaInt(b, "\t- Shader Clock Rate: %d MHz", "shader_clock_mhz", d.clockRateKhz / 1000);
        addCudaInt(b, "\t- Multiprocessors: %d", "multiprocessors", d.multiprocessorCount);
        addCudaInt(b, "\t- Warp Size: %d", "warp_size", d.warpSize);
        addCudaInt(b, "\t- Max Threads Per Block: %d", "max_threads_per_block", d.maxThreadsPerBlock);
        addReportLine(b, "\t- Threads Per Block: %d x %d x %d", d.maxThreadsDim[0], d.maxThreadsDim[1],
                      d.maxThreadsDim[2]);
        addXmlAttribute(b, 4, "max_threads_per_block_x", formatText("%d", d.maxThreadsDim[0]));
        addXmlAttribute(b, 4, "max_threads_per_block_y", formatText("%d", d.maxThreadsDim[1]));
        addXmlAttribute(b, 4, "max_threads_per_block_z", formatText("%d", d.maxThreadsDim[2]));
        addReportLine(b, "\t- Grid Size: %d x %d x %d", d.maxGridSize[0], d.maxGridSize[1], d.maxGridSize[2]);
        addXmlAttribute(b, 4, "grid_size_x", formatText("%d", d.maxGridSize[0]));
        addXmlAttribute(b, 4, "grid_size_y", formatText("%d", d.maxGridSize[1]));
        addXmlAttribute(b, 4, "grid_size_z", formatText("%d", d.maxGridSize[2]));
        addCudaInt(b, "\t- Registers Per Block: %d", "registers_per_block", d.registersPerBlock);
        addCudaInt(b, "\t- Texture Alignment: %d byte", "texture_alignment_bytes", d.textureAlignBytes);
        addCudaInt(b, "\t- Total Constant Memory: %d Kb", "total_constant_memory_kb", d.totalConstantMemoryBytes / 1024);
        addReportXml(b, "\t\t\t />");
    }
    addReportXml(b, "\n\t\t</nvidia_cuda>");
}

void addOpenClSection(ReportBuffers& b, const ReportSnapshot& s) {
    if (s.clPlatforms.empty()) return;
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "OpenCL Capabilities");
    addReportXml(b, "\n\t\t<opencl num_platforms=\"%d\">", int(s.clPlatforms.size()));
    addReportLine(b, "- Num OpenCL platforms: %d", int(s.clPlatforms.size()));
    for (const ReportClPlatform& p : s.clPlatforms) {
        addReportXml(b, "\n\t\t<platform ");
        const std::pair<const char*, const std::string*> rows[] = {{"CL_PLATFORM_NAME", &p.name},
                                                                   {"CL_PLATFORM_VENDOR", &p.vendor},
                                                                   {"CL_PLATFORM_VERSION", &p.version},
                                                                   {"CL_PLATFORM_PROFILE", &p.profile}};
        for (const auto& [name, value] : rows) {
            addReportLine(b, "- %s: %s", name, value->c_str());
            addXmlAttribute(b, 3, name, *value);
        }
        addReportLine(b, "- Num devices: %d", int(p.devices.size()));
        addXmlAttribute(b, 3, "devices", formatText("%d", int(p.devices.size())));
        addReportXml(b, "\n\t\t />");
        for (const ReportClDevice& d : p.devices) addClDevice(b, d);
    }
    addReportXml(b, "\n\t\t</opencl>");
}

}  // namespace report
