// The CUDA and OpenCL panels over the fake drivers: each device's fields in the panel's units, the states
// without driver, platform or device, the demo device combos and the detail dialog.
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QTest>
#include <QTimer>
#include <cstdlib>

#include "app/app_log.h"
#include "app/panels/cuda_panel.h"
#include "app/panels/opencl_info_dialog.h"
#include "app/panels/opencl_panel.h"
#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "compute/opencl_state.h"
#include "fakes/compute/fake_cuda_values.h"
#include "fakes/compute/fake_opencl_values.h"
#include "tests/panels/window_machine.h"

namespace {

QStringList lines(const QWidget* panel, int id) {
    QStringList result;
    if (const auto* combo = panels::findControl<QComboBox>(panel, id))
        for (int i = 0; i < combo->count(); ++i) result << combo->itemText(i);
    if (const auto* label = panels::findControl<QLabel>(panel, id)) result << label->text();
    return result;
}

// Discovery through the fake libraries in one of their scenarios ("" for their normal machine); the records
// are freed after the test.
class ComputePanelTest : public WindowMachine {
protected:
    void TearDown() override {
        m_cuda.reset();
        m_openCl.reset();
        compute::freeCudaDevices();
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
        unsetenv(fake_cuda::kScenarioVariable);
        unsetenv(fake_cl::kScenarioVariable);
        WindowMachine::TearDown();
    }
    panels::CudaPanel& cudaPanel(const char* scenario) {
        setenv(fake_cuda::kScenarioVariable, scenario, 1);
        compute::discoverCuda(m_log, FAKE_COMPUTE_DIR "/libcuda.so.1");
        m_cuda = std::make_unique<panels::CudaPanel>(nullptr, state, start("amdgpu-rx6800"));
        return *m_cuda;
    }
    void discoverOpenCl(const char* scenario) {
        setenv(fake_cl::kScenarioVariable, scenario, 1);
        compute::discoverOpenCl(m_log, FAKE_COMPUTE_DIR "/libOpenCL.so.1");
    }
    panels::OpenCLPanel& openClPanel() {
        m_openCl = std::make_unique<panels::OpenCLPanel>(nullptr, state, start("amdgpu-rx6800"));
        return *m_openCl;
    }
    QComboBox* combo(int id) const { return panels::findControl<QComboBox>(m_openCl.get(), id); }

    std::unique_ptr<panels::CudaPanel> m_cuda;
    std::unique_ptr<panels::OpenCLPanel> m_openCl;
    AppLog m_log;  // no file: discovery's lines are not looked at here
};

TEST_F(ComputePanelTest, CudaPanelShowsEachDeviceInItsUnitsAndADeviceWithoutPropertiesAsZeros) {
    panels::CudaPanel& panel = cudaPanel("");
    EXPECT_EQ(lines(&panel, 1178), QStringList({"Number of CUDA devices: 2"}));
    EXPECT_EQ(lines(&panel, 1153), QStringList({"1: Fake CUDA Device 0", "2: Fake CUDA Device 1"}));
    // Name, compute capability, clock, multiprocessors, warp, grid, block, threads and registers per block,
    // memory, shared and constant memory, texture alignment: the fake's property block and attributes.
    const int ids[] = {1157, 1155, 1161, 1163, 1165, 1171, 1169, 1167, 1175, 1159, 1173, 1180, 1177};
    const char* first[] = {"Fake CUDA Device 0", "8.6", "1500 MHz", "20", "32", "4 x 5 x 6", "1 x 2 x 3",
                           "1024", "65535", "6144 MB", "48 KB", "64 KB", "512 Bytes"};
    const char* second[] = {"Fake CUDA Device 1", "8.9", "1500 MHz", "21", "32", "0 x 0 x 0", "0 x 0 x 0",
                            "0", "0", "7168 MB", "0 KB", "0 KB", "0 Bytes"};
    for (size_t i = 0; i < std::size(ids); ++i) EXPECT_EQ(text(&panel, ids[i]), first[i]) << ids[i];
    panels::findControl<QComboBox>(&panel, 1153)->setCurrentIndex(1);
    for (size_t i = 0; i < std::size(ids); ++i) EXPECT_EQ(text(&panel, ids[i]), second[i]) << ids[i];

    m_cuda.reset();
    compute::freeCudaDevices();
    stop();
    panels::CudaPanel& none = cudaPanel(fake_cuda::mode::kNoDevice);
    EXPECT_EQ(lines(&none, 1178), QStringList({"Number of CUDA devices: 0"}));
    EXPECT_FALSE(enabled(&none, 1153));
    for (int id : ids) {
        EXPECT_EQ(text(&none, id), QString()) << id;
        EXPECT_FALSE(enabled(&none, id) || labelOf(&none, id)->isEnabled()) << id;
    }
}

TEST_F(ComputePanelTest, OpenClPanelWalksPlatformsAndDevicesAndKeepsTheLastDeviceForAnEmptyPlatform) {
    discoverOpenCl("");
    panels::OpenCLPanel& panel = openClPanel();
    const compute::ClPlatformRecord& a = compute::clPlatforms().at(0);
    EXPECT_EQ(lines(&panel, 1186), QStringList({"Number of CL platforms: 2"}));
    EXPECT_EQ(lines(&panel, 1183), QStringList({"1: Fake Platform A", "2: Fake Platform B"}));
    EXPECT_EQ(text(&panel, 1188), QString::fromStdString(a.version + " " + a.profile));
    EXPECT_EQ(lines(&panel, 1194), QStringList({"1: " + QString::fromStdString(a.devices[0].name),
                                                QString("2: ") + fake_cl::kDevice1Name}));
    // Device 0 is CPU and GPU at once, which the type field reads as CPU; each number has its own query.
    const auto number = [](int device, uint32_t query, int shift = 0) {
        return QString::number(fake_cl::numericValue(device, query) >> shift);
    };
    EXPECT_EQ(text(&panel, 1199), "CPU");
    EXPECT_EQ(text(&panel, 1211), number(0, CL_DEVICE_MAX_CLOCK_FREQUENCY) + "MHz");
    EXPECT_EQ(text(&panel, 1215), number(0, CL_DEVICE_GLOBAL_MEM_SIZE, 20) + "MB (Cache: " +
                                      number(0, CL_DEVICE_GLOBAL_MEM_CACHE_SIZE, 10) + "KB)");
    EXPECT_EQ(text(&panel, 1221), number(0, CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE, 10) + "KB");
    EXPECT_EQ(text(&panel, 1223), number(0, CL_DEVICE_IMAGE3D_MAX_WIDTH) + " x " + number(0, CL_DEVICE_IMAGE3D_MAX_HEIGHT) +
                                      " x " + number(0, CL_DEVICE_IMAGE3D_MAX_DEPTH));
    EXPECT_EQ(text(&panel, 1197), "11 x 22 x 33") << "the first three of four dimensions";
    EXPECT_EQ(text(&panel, 1192), QString::number(a.devices[0].extensions.size()));

    combo(1194)->setCurrentIndex(1);
    EXPECT_EQ(text(&panel, 1209), number(1, CL_DEVICE_MAX_COMPUTE_UNITS));
    combo(1183)->setCurrentIndex(1);
    EXPECT_EQ(state.clPlatformIndex, 1u);
    EXPECT_EQ(lines(&panel, 1195), QStringList({"Number of CL devices: 0"}));
    EXPECT_TRUE(lines(&panel, 1194).isEmpty());
    EXPECT_EQ(text(&panel, 1209), number(1, CL_DEVICE_MAX_COMPUTE_UNITS));
    EXPECT_EQ(state.clShownPlatform, 0u);
    EXPECT_EQ(state.clShownDevice, 1u);

    // The detail dialog lists the device shown last.
    QStringList detail;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (auto* dialog = dynamic_cast<panels::OpenClInfoDialog*>(QApplication::activeModalWidget())) {
            for (int i = 0; i < dialog->lines()->count(); ++i) detail << dialog->lines()->item(i)->text();
            dialog->accept();
        }
    });
    closer.start(10);
    QTest::mouseClick(panels::findControl(&panel, 1144), Qt::LeftButton);
    EXPECT_EQ(size_t(detail.size()), compute::clDetailLines(0, 1).size());
    EXPECT_TRUE(detail.contains("- CL_DEVICE_NAME: " + QString(fake_cl::kDevice1Name)));
}

TEST_F(ComputePanelTest, TypeFieldNamesOnlyCpuOrGpuAndKeepsItsTextForOtherTypes) {
    discoverOpenCl("");
    std::vector<compute::ClDeviceRecord>& devices = compute::openClState().platforms.at(0).devices;
    devices[0].type = 4;  // a GPU, then an accelerator
    devices[1].type = 8;
    panels::OpenCLPanel& panel = openClPanel();
    EXPECT_EQ(text(&panel, 1199), "GPU");
    combo(1194)->setCurrentIndex(1);
    EXPECT_EQ(text(&panel, 1199), "GPU");
    m_openCl.reset();
    devices[0].type = 8;
    EXPECT_EQ(text(&openClPanel(), 1199), QString()) << "an accelerator shown first";
}

TEST_F(ComputePanelTest, DemoDeviceCombosCountOrdinalsAmongDevicesOfExactlyOneType) {
    discoverOpenCl("");
    panels::OpenCLPanel& panel = openClPanel();
    // Platform A: a CPU-and-GPU device, which counts for neither, then a plain CPU, which is CPU device 0.
    EXPECT_FALSE(combo(1237)->isEnabled());
    EXPECT_EQ(lines(&panel, 1238), QStringList({"dev 0"}));
    EXPECT_EQ(panel.demoDeviceChoice().gpuOrdinal, -1);
    EXPECT_EQ(panel.demoDeviceChoice().cpuOrdinal, 0);

    state.demo.clDeviceIndexForced = true;
    combo(1183)->setCurrentIndex(1);  // no CPU there: greyed, with the line of platform A
    EXPECT_FALSE(combo(1238)->isEnabled());
    EXPECT_EQ(lines(&panel, 1238), QStringList({"dev 0"}));
    combo(1183)->setCurrentIndex(0);
    EXPECT_TRUE(state.demo.clDeviceIndexForced) << "a refill is not the user's pick";
    combo(1238)->activated(0);  // what a pick in the open list sends
    EXPECT_FALSE(state.demo.clDeviceIndexForced);
}

TEST_F(ComputePanelTest, WithoutPlatformOnlyTheDemoCombosStayUsable) {
    discoverOpenCl(fake_cl::mode::kPlatformIdsFail);
    panels::OpenCLPanel& panel = openClPanel();
    EXPECT_EQ(lines(&panel, 1186), QStringList({"Number of CL platforms: 0"}));
    for (int id : {1183, 1188, 1194, 1144, 1193, 1199, 1209, 1215, 1197}) EXPECT_FALSE(enabled(&panel, id)) << id;
    EXPECT_FALSE(labelOf(&panel, 1209)->isEnabled());
    for (int id : {1237, 1238}) EXPECT_TRUE(enabled(&panel, id) && lines(&panel, id).isEmpty()) << id;
}

}  // namespace
