#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "compute/opencl_discovery.h"
#include "integration/program_runner.h"
#include "unit/compute_test_log.h"

// Discovery through the system's OpenCL loader (pocl on the build machine), checked against what the
// OpenCL API answers when asked directly.
namespace {

using namespace compute;

template <typename T>
T directValue(cl_device_id device, cl_device_info param) {
    T value{};
    EXPECT_EQ(::clGetDeviceInfo(device, param, sizeof value, &value, nullptr), CL_SUCCESS) << std::hex << param;
    return value;
}

std::string directText(cl_device_id device, cl_device_info param) {
    size_t size = 0;
    ::clGetDeviceInfo(device, param, 0, nullptr, &size);
    std::string text(size, '\0');
    ::clGetDeviceInfo(device, param, size, text.data(), nullptr);
    return text.c_str();
}

std::string cut(const std::string& text) { return text.substr(0, kClMaxTextLength); }

cl_uint directPlatformCount() {
    cl_uint count = 0;
    if (::clGetPlatformIDs(0, nullptr, &count) != CL_SUCCESS) return 0;
    return count;
}

class OpenClPocl : public ::testing::Test {
protected:
    void TearDown() override {
        releaseOpenCl();
        freeOpenClPlatforms();
    }
    TestLog log;
};

TEST_F(OpenClPocl, FindsACpuDeviceWhoseFieldsMatchTheApi) {
    discoverOpenCl(log.log());

    const cl_uint platforms = directPlatformCount();
    ASSERT_GT(platforms, 0u) << "this machine has no OpenCL platform";
    ASSERT_EQ(getClPlatformCount(), platforms);
    const std::vector<std::string> messages = log.messages();
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages[0], "Found " + std::to_string(platforms) + " OpenCL-capable platform.");

    const ClDeviceRecord* cpu = nullptr;
    const ClPlatformRecord* owner = nullptr;
    for (const ClPlatformRecord& platform : clPlatforms())
        for (const ClDeviceRecord& device : platform.devices)
            if (!cpu && (device.type & CL_DEVICE_TYPE_CPU)) cpu = &device, owner = &platform;
    ASSERT_NE(cpu, nullptr) << "no CPU device found";
    std::printf("platform \"%s\" (%s), CPU device \"%s\", %llu compute units, %llu MHz, %llu MB\n",
                owner->name.c_str(), owner->version.c_str(), cpu->name.c_str(),
                (unsigned long long)cpu->maxComputeUnits, (unsigned long long)cpu->maxClockMhz,
                (unsigned long long)(cpu->globalMemSize >> 20));
    EXPECT_NE(std::find(messages.begin(), messages.end(),
                        "Found " + std::to_string(owner->deviceCount) + " OpenCL-capable devices for platform " +
                            owner->name + "."),
              messages.end());

    const cl_device_id id = cpu->deviceId;
    EXPECT_EQ(cpu->name, cut(directText(id, CL_DEVICE_NAME)));
    EXPECT_EQ(cpu->vendor, cut(directText(id, CL_DEVICE_VENDOR)));
    EXPECT_EQ(cpu->driverVersion, cut(directText(id, CL_DRIVER_VERSION)));
    EXPECT_EQ(cpu->profile, cut(directText(id, CL_DEVICE_PROFILE)));
    EXPECT_EQ(cpu->version, cut(directText(id, CL_DEVICE_VERSION)));
    EXPECT_EQ(cpu->type, directValue<cl_device_type>(id, CL_DEVICE_TYPE));
    EXPECT_EQ(cpu->vendorId, directValue<cl_uint>(id, CL_DEVICE_VENDOR_ID));
    EXPECT_EQ(cpu->maxComputeUnits, directValue<cl_uint>(id, CL_DEVICE_MAX_COMPUTE_UNITS));
    EXPECT_EQ(cpu->maxClockMhz, directValue<cl_uint>(id, CL_DEVICE_MAX_CLOCK_FREQUENCY));
    EXPECT_EQ(cpu->maxWorkGroupSize, directValue<size_t>(id, CL_DEVICE_MAX_WORK_GROUP_SIZE));
    EXPECT_EQ(cpu->globalMemSize, directValue<cl_ulong>(id, CL_DEVICE_GLOBAL_MEM_SIZE));
    EXPECT_EQ(cpu->maxMemAllocSize, directValue<cl_ulong>(id, CL_DEVICE_MAX_MEM_ALLOC_SIZE));
    EXPECT_EQ(cpu->localMemSize, directValue<cl_ulong>(id, CL_DEVICE_LOCAL_MEM_SIZE));
    EXPECT_EQ(cpu->globalMemCacheSize, directValue<cl_ulong>(id, CL_DEVICE_GLOBAL_MEM_CACHE_SIZE));
    EXPECT_EQ(cpu->image2dMaxWidth, directValue<size_t>(id, CL_DEVICE_IMAGE2D_MAX_WIDTH));
    EXPECT_EQ(cpu->image3dMaxDepth, directValue<size_t>(id, CL_DEVICE_IMAGE3D_MAX_DEPTH));
    EXPECT_EQ(cpu->preferredVectorWidthFloat, directValue<cl_uint>(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT));
    EXPECT_EQ(cpu->preferredVectorWidthDouble, directValue<cl_uint>(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE));

    const cl_uint dimensions = directValue<cl_uint>(id, CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS);
    EXPECT_EQ(cpu->maxWorkItemDimensions, dimensions);
    std::vector<size_t> sizes(std::max<cl_uint>(dimensions, 3), 0);
    ::clGetDeviceInfo(id, CL_DEVICE_MAX_WORK_ITEM_SIZES, dimensions * sizeof(size_t), sizes.data(), nullptr);
    for (size_t i = 0; i < 3; ++i) EXPECT_EQ(cpu->maxWorkItemSizes[i], sizes[i]) << i;

    const std::string extensions = directText(id, CL_DEVICE_EXTENSIONS);
    EXPECT_EQ(cpu->extensions, tokeniseClExtensions(extensions.c_str()));
    // pocl ends the string with a name and no blank: the JSON report's list keeps it.
    EXPECT_EQ(cpu->reportedExtensions, splitClExtensions(extensions.c_str()));
    if (!extensions.empty() && extensions.back() != ' ') {
        EXPECT_EQ(cpu->reportedExtensions.size(), cpu->extensions.size() + 1) << extensions;
    }
    EXPECT_FALSE(cpu->extensions.empty());
    EXPECT_FALSE(clDetailLines(0, 0).empty());
}

// The program runs discovery at start-up unless told not to.
TEST(OpenClProgram, LogsThePlatformCountUnlessSupportIsDisabled) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / ("compute_run_" + std::to_string(getpid()));
    fs::create_directories(dir);
    const std::string expected = "Found " + std::to_string(directPlatformCount()) + " OpenCL-capable platform.";
    const auto hasLine = [&](const ProgramRun& run) {
        return std::any_of(run.logLines.begin(), run.logLines.end(),
                           [&](const std::string& line) { return logMessage(line) == expected; });
    };
    const ProgramRun enabled = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report", "/no_online_check"});
    EXPECT_EQ(enabled.exitCode, 0);
    EXPECT_TRUE(hasLine(enabled));
    const ProgramRun disabled =
        runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report", "/no_online_check", "/disable_cl_support"});
    EXPECT_EQ(disabled.exitCode, 0);
    EXPECT_FALSE(hasLine(disabled));
    fs::remove_all(dir);
}

}  // namespace
