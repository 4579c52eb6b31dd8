// The OpenCL panel over the system's OpenCL loader (pocl on the build machine): a CPU platform whose device
// the panel shows as the API describes it, and whose demo choice is CPU device 0.
#include <QComboBox>
#include <QLabel>

#include "app/app_log.h"
#include "app/panels/opencl_panel.h"
#include "compute/opencl_discovery.h"
#include "window_machine.h"

namespace {

class OpenClPanelOnPocl : public WindowMachine {
protected:
    void TearDown() override {
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
        WindowMachine::TearDown();
    }
};

TEST_F(OpenClPanelOnPocl, ShowsTheCpuDeviceAndOffersItToTheCpuDemosOnly) {
    AppLog log;
    compute::discoverOpenCl(log);
    const auto& platforms = compute::clPlatforms();
    ASSERT_FALSE(platforms.empty()) << "this machine has no OpenCL platform";
    panels::OpenCLPanel panel(nullptr, state, start("amdgpu-rx6800"));

    const compute::ClPlatformRecord& platform = platforms[0];
    ASSERT_FALSE(platform.devices.empty());
    const compute::ClDeviceRecord& device = platform.devices[0];
    EXPECT_EQ(panels::findControl<QComboBox>(&panel, 1183)->itemText(0), "1: " + QString::fromStdString(platform.name));
    EXPECT_EQ(panels::findControl<QLabel>(&panel, 1195)->text(),
              QString("Number of CL devices: %1").arg(platform.devices.size()));
    EXPECT_EQ(text(&panel, 1199), device.type & 2 ? "CPU" : "GPU");
    EXPECT_EQ(text(&panel, 1209), QString::number(device.maxComputeUnits));
    EXPECT_EQ(text(&panel, 1211), QString("%1MHz").arg(device.maxClockMhz));
    EXPECT_EQ(text(&panel, 1215), QString("%1MB (Cache: %2KB)").arg(device.globalMemSize >> 20).arg(device.globalMemCacheSize >> 10));
    EXPECT_EQ(text(&panel, 1192), QString::number(device.extensions.size()));
    EXPECT_EQ(text(&panel, 1205), QString::fromStdString(device.version));

    const bool onlyCpus = compute::countGpuDevices(0) == 0;
    if (onlyCpus) {
        EXPECT_FALSE(panels::findControl(&panel, 1237)->isEnabled());
        EXPECT_EQ(panel.demoDeviceChoice().gpuOrdinal, -1);
    }
    EXPECT_EQ(panel.demoDeviceChoice().cpuOrdinal, compute::countCpuDevices(0) > 0 ? 0 : -1);
}

}  // namespace
