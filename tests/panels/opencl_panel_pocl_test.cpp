// The OpenCL panel over the system's OpenCL loader (pocl on the build machine): its first device as discovery
// recorded it, offered to the demos of its type.
#include <QComboBox>

#include "app/app_log.h"
#include "app/panels/opencl_panel.h"
#include "compute/opencl_discovery.h"
#include "tests/panels/window_machine.h"

namespace {

class OpenClPanelOnPocl : public WindowMachine {
protected:
    void TearDown() override {
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
        WindowMachine::TearDown();
    }
};

TEST_F(OpenClPanelOnPocl, ShowsTheFirstDeviceAndOffersItToTheDemosOfItsType) {
    AppLog log;
    compute::discoverOpenCl(log);
    ASSERT_FALSE(compute::clPlatforms().empty()) << "this machine has no OpenCL platform";
    const compute::ClPlatformRecord& platform = compute::clPlatforms()[0];
    ASSERT_FALSE(platform.devices.empty());
    const compute::ClDeviceRecord& device = platform.devices[0];
    panels::OpenCLPanel panel(nullptr, state, start("amdgpu-rx6800"));

    EXPECT_EQ(panels::findControl<QComboBox>(&panel, 1183)->itemText(0), "1: " + QString::fromStdString(platform.name));
    EXPECT_EQ(text(&panel, 1199), device.type & 2 ? "CPU" : "GPU");
    EXPECT_EQ(text(&panel, 1209), QString::number(device.maxComputeUnits));
    EXPECT_EQ(text(&panel, 1215), QString("%1MB (Cache: %2KB)").arg(device.globalMemSize >> 20).arg(device.globalMemCacheSize >> 10));
    EXPECT_EQ(text(&panel, 1205), QString::fromStdString(device.version));
    EXPECT_EQ(panel.demoDeviceChoice().cpuOrdinal, compute::countCpuDevices(0) > 0 ? 0 : -1);
    EXPECT_EQ(panel.demoDeviceChoice().gpuOrdinal, compute::countGpuDevices(0) > 0 ? 0 : -1);
}

}  // namespace
