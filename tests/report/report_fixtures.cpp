#include "tests/report/report_fixtures.h"

#include "tests/report/vulkan_records_by_hand.h"

namespace report_fixtures {

using namespace report;

namespace {

ReportSnapshot baseMachine() {
    ReportSnapshot s;
    s.programName = "Lumenscope";
    s.programVersion = "1.26.0.0";
    s.homePage = "https://lumenscope.example.org/";
    s.system.cpuName = "Fixture CPU 3000 @ 3.60GHz";
    s.system.cpuSpeedMhz = 3600;
    s.system.logicalCores = 8;
    s.system.cpuFamily = 6;
    s.system.cpuModel = 158;
    s.system.cpuStepping = 10;
    s.system.installedMemoryMb = 16384;
    s.system.totalMemoryKb = 16318464;
    s.system.osDescription = "Linux 6.1.0 x86_64 (Debian GNU/Linux 12)";
    s.system.systemOsDescription = s.system.osDescription;
    s.hasDisplayDevice = true;
    s.displayMode = {1920, 1080, 60, 24};
    return s;
}

ReportGlCap cap(const char* name, const char* group, int32_t type) {
    ReportGlCap c;
    c.name = name;
    c.group = group;
    c.valueType = type;
    return c;
}

// A short catalogue with each value type on both sides of the separator.
std::vector<ReportGlCap> catalogue() {
    std::vector<ReportGlCap> list;
    ReportGlCap c = cap("GL_MAX_LIGHTS", "GL_VERSION_1_0", 1);
    c.intValue = 8;
    list.push_back(c);
    c = cap("GL_MAX_TEXTURE_LOD_BIAS", "GL_VERSION_1_4", 2);
    c.floatValue = 15.0f;
    list.push_back(c);
    c = cap("GL_MAX_SERVER_WAIT_TIMEOUT", "GL_VERSION_3_2", 4);
    c.int64Value = 18446744073709551LL;
    list.push_back(c);
    c = cap("GL_MAX_COMPUTE_WORK_GROUP_COUNT", "GL_VERSION_4_3", 5);
    c.tripleValue[0] = 65535, c.tripleValue[1] = 65535, c.tripleValue[2] = 65535;
    list.push_back(c);
    list.push_back(cap("GL_CAP_SEPARATOR_01", "", 0));
    c = cap("GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT", "GL_EXT_texture_filter_anisotropic", 2);
    c.floatValue = 16.0f;
    list.push_back(c);
    c = cap("GL_MAX_PROGRAM_TEXEL_OFFSET", "", 1);
    c.intValue = 7;
    list.push_back(c);
    c = cap("GL_MAX_SHADER_BUFFER_ADDRESS_NV", "GL_NV_shader_buffer_load", 4);
    c.int64Value = 4294967296LL;
    list.push_back(c);
    return list;
}

void fillOpenGl(ReportOpenGl& gl, const char* vendor, const char* renderer, const char* version, const char* glsl) {
    gl.vendor = vendor;
    gl.renderer = renderer;
    gl.version = version;
    gl.glslVersion = glsl;
    gl.arbTextureUnits = 4;
    gl.vertexTextureUnits = 32;
    gl.pixelTextureUnits = 32;
    gl.geometryTextureUnits = 32;
    gl.maxTextureSize = 16384;
    gl.maxAnisotropy = 16.0f;
    gl.maxPointSpriteSize = 2047.0f;
    gl.maxDynamicLights = 8;
    gl.maxViewportSize = 16384;
    gl.maxVertexUniformComponents = 4096;
    gl.maxFragmentUniformComponents = 4096;
    gl.maxGeometryUniformComponents = 2048;
    gl.maxVaryingFloats = 124;
    gl.maxDrawBuffers = 8;
    gl.fbo = gl.pbo = gl.s3tc = gl.textureRectangle = gl.floatTextures = true;
    gl.msaaSampleCounts = {2, 4, 8};
    gl.extensions = {{"GL_ARB_framebuffer_object", "OpenGL 3.0"},
                     {"GL_EXT_texture_compression_s3tc", ""},
                     {"GLX_ARB_create_context", ""}};
    gl.glExtensionCount = 2;
    gl.wglExtensionCount = 1;
    gl.catalogue = catalogue();
}

ReportClDevice clDevice(const char* name, uint64_t type) {
    ReportClDevice d;
    d.name = name;
    d.driverVersion = "1.0";
    d.profile = "FULL_PROFILE";
    d.version = "OpenCL 3.0";
    d.type = type;
    d.maxComputeUnits = 8;
    d.maxClockMhz = 3600;
    d.addressBits = 64;
    d.maxMemAllocSize = 4294967296ULL;
    d.globalMemSize = 12884901888ULL;
    d.maxParameterSize = 1024;
    d.globalMemCachelineSize = 64;
    d.globalMemCacheSize = 262144;
    d.localMemType = "Global";
    d.localMemSize = 524288;
    d.maxConstantBufferSize = 524288;
    d.maxWorkItemDimensions = 3;
    d.maxWorkItemSizes[0] = d.maxWorkItemSizes[1] = d.maxWorkItemSizes[2] = 4096;
    d.maxWorkGroupSize = 4096;
    d.nativeKernels = true;
    d.imageSupport = 1;
    d.maxReadImageArgs = 128;
    d.maxWriteImageArgs = 64;
    d.image2dMaxWidth = d.image2dMaxHeight = 16384;
    d.image3dMaxWidth = d.image3dMaxHeight = d.image3dMaxDepth = 2048;
    d.maxSamplers = 16;
    d.preferredVectorWidthChar = 16;
    d.preferredVectorWidthShort = 8;
    d.preferredVectorWidthInt = 4;
    d.preferredVectorWidthLong = 2;
    d.preferredVectorWidthFloat = 4;
    d.preferredVectorWidthDouble = 2;
    d.extensions = {"cl_khr_byte_addressable_store", "cl_khr_fp64"};
    d.reportedExtensions = d.extensions;
    return d;
}

}  // namespace

ReportSnapshot nvidiaMachine() {
    ReportSnapshot s = baseMachine();
    s.primaryIsNvidia = true;
    s.primaryDisplayDeviceString = "NVIDIA GeForce GTX 680";
    s.driver.primaryDriverVersion = "535.183.01";
    s.driver.primaryDriverText = "535.183.01";
    s.driver.nvDriverVersionNumber = 53518;
    s.driver.nvDriverBranch = "r535_00";
    ReportGpu g;
    g.name = "NVIDIA GeForce GTX 680";
    g.codename = "GK104";
    g.hasPciIds = true;
    g.vendorId = 0x10DE, g.deviceId = 0x1180, g.subvendorId = 0x10DE, g.subdeviceId = 0x0969;
    g.busId = 1;
    g.shaderCores = 1536, g.textureUnits = 128, g.ropUnits = 32, g.tdpWatts = 195;
    g.biosVersion = "80.04.09.00.01";
    g.memorySizeMb = 2048;
    g.memoryType = "GDDR5";
    g.memoryBusWidthBits = 256;
    g.memoryLocation = "GPU dedicated";
    g.nvidia.baseClockMhz = 1006.0f;
    g.nvidia.boostClockMhz = 1058.5f;
    g.nvidia.powerTargetPercent = 100.0f;
    g.nvidia.minPowerTargetPercent = 32.0f;
    g.nvidia.maxPowerTargetPercent = 132.0f;
    g.perfLevels = {{0, 1006.0f, 3004.0f, 0.0f, 1.175f, 324.0f, 3004.0f},
                    {8, 324.0f, 162.0f, 0.0f, 0.987f, 324.0f, 162.0f}};
    g.live.coreTemperatureC = 41.0f;
    g.live.fanPercent = 30.0f;
    g.live.fanRpm = 1170.0f;
    s.gpus.push_back(g);
    fillOpenGl(s.gl, "NVIDIA Corporation", "NVIDIA GeForce GTX 680/PCIe/SSE2", "4.6.0 NVIDIA 535.183.01",
               "4.60 NVIDIA");
    s.gl.ati3dc = false;
    ReportCudaDevice cuda;
    cuda.name = "NVIDIA GeForce GTX 680";
    cuda.computeMajor = 3, cuda.computeMinor = 0;
    cuda.totalMemory = 2147483648ULL;
    cuda.clockRate = 1058500;
    cuda.multiprocessorCount = 8, cuda.warpSize = 32, cuda.maxThreadsPerBlock = 1024;
    cuda.maxThreadsDim[0] = 1024, cuda.maxThreadsDim[1] = 1024, cuda.maxThreadsDim[2] = 64;
    cuda.maxGridSize[0] = 2147483647, cuda.maxGridSize[1] = 65535, cuda.maxGridSize[2] = 65535;
    cuda.regsPerBlock = 65536, cuda.textureAlign = 512, cuda.totalConstantMemory = 65536;
    cuda.sharedMemPerBlock = 49152;
    s.cudaDevices.push_back(cuda);
    ReportClPlatform p;
    p.name = "NVIDIA CUDA";
    p.vendor = "NVIDIA Corporation";
    p.version = "OpenCL 3.0 CUDA 12.2.148";
    p.profile = "FULL_PROFILE";
    ReportClDevice d = clDevice("NVIDIA GeForce GTX 680", 4);
    d.vendor = "NVIDIA Corporation";
    d.vendorId = 0x10DE;
    d.errorCorrectionSupport = 0;
    d.localMemType = "Local (scratchpad)";
    d.nativeKernels = false;
    d.extensions.push_back("cl_nv_device_attribute_query");
    d.reportedExtensions = d.extensions;
    d.nvComputeCapabilityMajor = 3, d.nvRegistersPerBlock = 65536, d.nvWarpSize = 32, d.nvGpuOverlap = 1,
    d.nvKernelExecTimeout = 1;
    p.devices.push_back(d);
    s.clPlatforms.push_back(p);
    return s;
}

ReportSnapshot amdMachineWithoutCatalyst() {
    ReportSnapshot s = baseMachine();
    s.system.installedMemoryMb = 0;  // the memory line falls back to the kilobyte figure
    s.system.physxVersion = 0;
    s.primaryDisplayDeviceString = "AMD Radeon RX 580";
    s.driver.primaryDriverVersion = "23.0.4";
    s.driver.primaryDriverText = "23.0.4 (2023-06-01)";
    ReportGpu g;
    g.name = "AMD Radeon RX 580";
    g.codename = "Polaris 20";
    g.hasPciIds = true;
    g.vendorId = 0x1002, g.deviceId = 0x67DF, g.subvendorId = 0x1DA2, g.subdeviceId = 0xE366;
    g.driverVersion = "23.0.4";
    g.busId = 3;
    g.shaderCores = 2304, g.textureUnits = 144, g.ropUnits = 32, g.tdpWatts = 185;
    g.memorySizeMb = 8192;
    g.memoryType = "GDDR5";
    g.nvidia.baseClockMhz = 1257.0f;  // not NVIDIA: these never make a gtx600 element
    g.nvidia.boostClockMhz = 1340.0f;
    g.nvidia.powerTargetPercent = 100.0f;
    g.perfLevels = {{0, 300.0f, 300.0f, 0.0f, 0.75f, std::nullopt, std::nullopt},
                    {1, 1340.0f, 2000.0f, 0.0f, 1.15f, std::nullopt, std::nullopt}};
    g.live.coreTemperatureC = 38.0f;
    s.gpus.push_back(g);
    fillOpenGl(s.gl, "AMD", "AMD Radeon RX 580 Series (radeonsi, polaris10, LLVM 15.0.6, DRM 3.49)",
               "4.6 (Compatibility Profile) Mesa 22.3.6", "");
    s.gl.ati3dc = true;
    ReportClPlatform p;
    p.name = "Portable Computing Language";
    p.vendor = "The pocl project";
    p.version = "OpenCL 3.0 PoCL 3.1";
    p.profile = "FULL_PROFILE";
    ReportClDevice d = clDevice("cpu-haswell-Fixture CPU 3000", 2);
    d.vendor = "GenuineIntel";
    d.vendorId = 0x8086;
    p.devices.push_back(d);
    s.clPlatforms.push_back(p);
    return s;
}

ReportSnapshot noDriverMachine() {
    ReportSnapshot s = baseMachine();
    s.hasDisplayDevice = false;
    s.gl.renderer = "n.a.";
    return s;
}

ReportSnapshot intelSoftwareMachine() {
    ReportSnapshot s = baseMachine();
    s.system.physxVersion = 0;
    s.primaryDisplayDeviceString = "";
    s.driver.primaryDriverText = "Mesa 22.3.6";
    ReportGpu g;
    g.name = "Intel UHD Graphics 630";
    g.codename = "";
    g.hasPciIds = true;
    g.vendorId = 0x8086, g.deviceId = 0x3E92, g.subvendorId = 0x1043, g.subdeviceId = 0x8694;
    g.busId = 0;
    g.memorySizeMb = 0;
    s.gpus.push_back(g);
    fillOpenGl(s.gl, "Mesa", "llvmpipe (LLVM 15.0.6, 256 bits)", "4.5 (Compatibility Profile) Mesa 22.3.6",
               "4.50");
    s.gl.s3tc = false;
    s.gl.msaaSampleCounts.clear();
    ReportClPlatform p;
    p.name = "Portable Computing Language";
    p.vendor = "The pocl project";
    p.version = "OpenCL 3.0 PoCL 3.1+debian  Linux, None+Asserts, RELOC, LLVM 15.0.6, SLEEF, DISTRO, POCL_DEBUG";
    p.profile = "FULL_PROFILE";
    ReportClDevice d = clDevice("cpu-haswell-Fixture CPU 3000", 2 | 1);
    d.vendor = "GenuineIntel";
    d.vendorId = 0x8086;
    p.devices.push_back(d);
    s.clPlatforms.push_back(p);
    s.vulkan = vulkan_by_hand::instanceWith({vulkan_by_hand::softwareDevice()});
    return s;
}

}  // namespace report_fixtures
