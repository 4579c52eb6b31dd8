// The CUDA and OpenCL panels over the fake drivers: the fields of each device in the panel's units, the
// states without driver, platform or device, the demo device combos and the detail dialog.
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
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
#include "window_machine.h"

namespace {

using panels::CudaPanel;
using panels::OpenCLPanel;

QStringList comboLines(const QWidget* panel, int id) {
    QStringList lines;
    const auto* combo = panels::findControl<QComboBox>(panel, id);
    for (int i = 0; combo && i < combo->count(); ++i) lines << combo->itemText(i);
    return lines;
}

QString lineText(const QWidget* panel, int id) {
    const auto* line = panels::findControl<QLabel>(panel, id);
    return line ? line->text() : QString();
}

// Discovery through the fake libraries, in a scenario of theirs ("" for their normal machine), and the
// records freed again after the test.
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
        std::remove(m_logPath.c_str());
        WindowMachine::TearDown();
    }
    void discoverCuda(const char* scenario) {
        setenv(fake_cuda::kScenarioVariable, scenario, 1);
        compute::discoverCuda(m_log, FAKE_COMPUTE_DIR "/libcuda.so.1");
    }
    void discoverOpenCl(const char* scenario) {
        setenv(fake_cl::kScenarioVariable, scenario, 1);
        compute::discoverOpenCl(m_log, FAKE_COMPUTE_DIR "/libOpenCL.so.1");
    }
    CudaPanel& openCudaPanel() {
        m_cuda = std::make_unique<CudaPanel>(nullptr, state, start("amdgpu-rx6800"));
        return *m_cuda;
    }
    OpenCLPanel& openOpenClPanel() {
        m_openCl = std::make_unique<OpenCLPanel>(nullptr, state, start("amdgpu-rx6800"));
        return *m_openCl;
    }
    QComboBox* combo(int id) const { return panels::findControl<QComboBox>(m_openCl.get(), id); }

    std::unique_ptr<CudaPanel> m_cuda;
    std::unique_ptr<OpenCLPanel> m_openCl;

private:
    std::string m_logPath = ::testing::TempDir() + "compute_panels_log_" + std::to_string(::getpid()) + ".txt";
    AppLog m_log{m_logPath.c_str()};
};

constexpr int kCudaFields[] = {1157, 1155, 1161, 1163, 1165, 1171, 1169, 1167, 1175, 1159, 1173, 1180, 1177};

TEST_F(ComputePanelTest, CudaPanelShowsEachDeviceInItsUnitsAndADeviceWithoutPropertiesAsZeros) {
    discoverCuda("");
    CudaPanel& panel = openCudaPanel();
    EXPECT_EQ(lineText(&panel, 1178), "Number of CUDA devices: 2");
    EXPECT_EQ(comboLines(&panel, 1153), QStringList({"1: Fake CUDA Device 0", "2: Fake CUDA Device 1"}));

    // The fake's property block: threads per block, block and grid dimensions, shared and constant memory,
    // registers and texture alignment; its attributes: warp size, clock and multiprocessors.
    const std::pair<int, const char*> first[] = {
        {1157, "Fake CUDA Device 0"}, {1155, "8.6"},         {1161, "1500 MHz"},    {1163, "20"},
        {1165, "32"},                 {1171, "4 x 5 x 6"},   {1169, "1 x 2 x 3"},   {1167, "1024"},
        {1175, "65535"},              {1159, "6144 MB"},     {1173, "48 KB"},       {1180, "64 KB"},
        {1177, "512 Bytes"},
    };
    for (const auto& [id, expected] : first) {
        EXPECT_EQ(text(&panel, id), expected) << id;
        EXPECT_TRUE(enabled(&panel, id)) << id;
    }

    panels::findControl<QComboBox>(&panel, 1153)->setCurrentIndex(1);
    const std::pair<int, const char*> second[] = {
        {1157, "Fake CUDA Device 1"}, {1155, "8.9"},       {1161, "1500 MHz"}, {1163, "21"},   {1165, "32"},
        {1171, "0 x 0 x 0"},          {1169, "0 x 0 x 0"}, {1167, "0"},        {1175, "0"},    {1159, "7168 MB"},
        {1173, "0 KB"},               {1180, "0 KB"},      {1177, "0 Bytes"},
    };
    for (const auto& [id, expected] : second) EXPECT_EQ(text(&panel, id), expected) << id;
}

TEST_F(ComputePanelTest, CudaPanelWithoutDriverOrDeviceCountsZeroAndGreysEverything) {
    for (const char* scenario : {"", fake_cuda::mode::kNoDevice, fake_cuda::mode::kNegativeCount}) {
        if (*scenario) discoverCuda(scenario);  // the first machine has no CUDA library at all
        CudaPanel& panel = openCudaPanel();
        EXPECT_EQ(lineText(&panel, 1178), "Number of CUDA devices: 0") << scenario;
        EXPECT_FALSE(enabled(&panel, 1153)) << scenario;
        EXPECT_TRUE(comboLines(&panel, 1153).isEmpty()) << scenario;
        for (int id : kCudaFields) {
            EXPECT_EQ(text(&panel, id), QString()) << id << " " << scenario;
            EXPECT_FALSE(enabled(&panel, id)) << id << " " << scenario;
            EXPECT_FALSE(labelOf(&panel, id)->isEnabled()) << id << " " << scenario;
        }
        m_cuda.reset();
        compute::freeCudaDevices();
        stop();
    }
}

TEST_F(ComputePanelTest, OpenClPanelWalksPlatformsAndDevicesAndKeepsTheLastDeviceForAnEmptyPlatform) {
    discoverOpenCl("");
    OpenCLPanel& panel = openOpenClPanel();
    const auto& platforms = compute::clPlatforms();
    ASSERT_EQ(platforms.size(), 2u);
    EXPECT_EQ(lineText(&panel, 1186), "Number of CL platforms: 2");
    EXPECT_EQ(comboLines(&panel, 1183), QStringList({"1: Fake Platform A", "2: Fake Platform B"}));
    EXPECT_EQ(text(&panel, 1188), QString::fromStdString(platforms[0].version + " " + platforms[0].profile));
    EXPECT_EQ(lineText(&panel, 1195), "Number of CL devices: 2");
    const QStringList devices = comboLines(&panel, 1194);
    ASSERT_EQ(devices.size(), 2);
    EXPECT_EQ(devices[0], "1: " + QString::fromStdString(platforms[0].devices[0].name));
    EXPECT_EQ(devices[0].size(), 3 + 127) << "names keep 127 characters";
    EXPECT_EQ(devices[1], QString("2: ") + fake_cl::kDevice1Name);

    // Device 0 is CPU and GPU at once: the type field names the CPU. Every number comes from its own query.
    const auto number = [](int device, uint32_t query, int shift = 0) {
        return QString::number(fake_cl::numericValue(device, query) >> shift);
    };
    EXPECT_EQ(text(&panel, 1199), "CPU");
    EXPECT_EQ(text(&panel, 1209), number(0, CL_DEVICE_MAX_COMPUTE_UNITS));
    EXPECT_EQ(text(&panel, 1211), number(0, CL_DEVICE_MAX_CLOCK_FREQUENCY) + "MHz");
    EXPECT_EQ(text(&panel, 1215), number(0, CL_DEVICE_GLOBAL_MEM_SIZE, 20) + "MB (Cache: " +
                                      number(0, CL_DEVICE_GLOBAL_MEM_CACHE_SIZE, 10) + "KB)");
    EXPECT_EQ(text(&panel, 1219), number(0, CL_DEVICE_LOCAL_MEM_SIZE, 10) + "KB");
    EXPECT_EQ(text(&panel, 1221), number(0, CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE, 10) + "KB");
    EXPECT_EQ(text(&panel, 1201), number(0, CL_DEVICE_IMAGE2D_MAX_WIDTH) + " x " + number(0, CL_DEVICE_IMAGE2D_MAX_HEIGHT));
    EXPECT_EQ(text(&panel, 1223), number(0, CL_DEVICE_IMAGE3D_MAX_WIDTH) + " x " + number(0, CL_DEVICE_IMAGE3D_MAX_HEIGHT) +
                                      " x " + number(0, CL_DEVICE_IMAGE3D_MAX_DEPTH));
    EXPECT_EQ(text(&panel, 1217), number(0, CL_DEVICE_MAX_SAMPLERS));
    EXPECT_EQ(text(&panel, 1190), number(0, CL_DEVICE_MAX_WORK_GROUP_SIZE));
    EXPECT_EQ(text(&panel, 1197), "11 x 22 x 33") << "the first three of four dimensions";
    EXPECT_EQ(text(&panel, 1192), QString::number(platforms[0].devices[0].extensions.size()));
    EXPECT_EQ(text(&panel, 1205), QString::fromStdString(platforms[0].devices[0].version));
    EXPECT_EQ(text(&panel, 1207), QString::fromStdString(platforms[0].devices[0].driverVersion));

    combo(1194)->setCurrentIndex(1);
    EXPECT_EQ(state.clShownDevice, 1u);
    EXPECT_EQ(text(&panel, 1209), number(1, CL_DEVICE_MAX_COMPUTE_UNITS));
    EXPECT_EQ(text(&panel, 1197), "1024 x 512 x 256");

    // Platform B has no device: a zero count, an empty combo, and the fields of the device shown before.
    combo(1183)->setCurrentIndex(1);
    EXPECT_EQ(state.clPlatformIndex, 1u);
    EXPECT_EQ(lineText(&panel, 1195), "Number of CL devices: 0");
    EXPECT_TRUE(comboLines(&panel, 1194).isEmpty());
    EXPECT_EQ(text(&panel, 1209), number(1, CL_DEVICE_MAX_COMPUTE_UNITS));
    EXPECT_EQ(state.clShownPlatform, 0u);
    EXPECT_EQ(state.clShownDevice, 1u);
}

TEST_F(ComputePanelTest, TypeFieldNamesOnlyCpuOrGpuAndKeepsItsTextForOtherTypes) {
    discoverOpenCl("");
    // A replayed machine: a GPU, then an accelerator.
    std::vector<compute::ClDeviceRecord>& devices = compute::openClState().platforms.at(0).devices;
    ASSERT_EQ(devices.size(), 2u);
    devices[0].type = 4;
    devices[1].type = 8;
    OpenCLPanel& panel = openOpenClPanel();
    EXPECT_EQ(text(&panel, 1199), "GPU");
    combo(1194)->setCurrentIndex(1);
    EXPECT_EQ(text(&panel, 1199), "GPU") << "an accelerator leaves the field as it was";

    m_openCl.reset();
    devices[0].type = 8;
    OpenCLPanel acceleratorFirst(nullptr, state, *Kalidornm::Kalidor::getInstance());
    EXPECT_EQ(text(&acceleratorFirst, 1199), QString());
    EXPECT_EQ(text(&acceleratorFirst, 1209), QString::number(fake_cl::numericValue(0, CL_DEVICE_MAX_COMPUTE_UNITS)));
}

TEST_F(ComputePanelTest, DemoDeviceCombosCountOrdinalsAmongDevicesOfExactlyOneType) {
    discoverOpenCl("");
    OpenCLPanel& panel = openOpenClPanel();
    // Platform A: a CPU-and-GPU device, which counts for neither, then a plain CPU at index 1, which is CPU
    // device 0.
    EXPECT_FALSE(combo(1237)->isEnabled());
    EXPECT_TRUE(comboLines(&panel, 1237).isEmpty());
    EXPECT_TRUE(combo(1238)->isEnabled());
    EXPECT_EQ(comboLines(&panel, 1238), QStringList({"dev 0"}));
    EXPECT_EQ(panel.demoDeviceChoice().gpuOrdinal, -1);
    EXPECT_EQ(panel.demoDeviceChoice().cpuOrdinal, 0);

    // Platform B has no CPU: the combo greys and keeps the line of platform A.
    state.clDeviceIndexForced = true;
    combo(1183)->setCurrentIndex(1);
    EXPECT_FALSE(combo(1238)->isEnabled());
    EXPECT_EQ(comboLines(&panel, 1238), QStringList({"dev 0"}));
    EXPECT_TRUE(state.clDeviceIndexForced) << "a refill is not the user's pick";

    combo(1183)->setCurrentIndex(0);
    EXPECT_TRUE(state.clDeviceIndexForced);
    combo(1238)->activated(0);  // what a pick in the open list sends
    EXPECT_FALSE(state.clDeviceIndexForced);
}

TEST_F(ComputePanelTest, WithoutPlatformOnlyTheDemoCombosStayUsable) {
    for (const char* scenario : {fake_cl::mode::kNoPlatforms, fake_cl::mode::kPlatformIdsFail}) {
        discoverOpenCl(scenario);
        OpenCLPanel& panel = openOpenClPanel();
        EXPECT_EQ(lineText(&panel, 1186), "Number of CL platforms: 0") << scenario;
        for (int id : {1183, 1188, 1194, 1144, 1193, 1199, 1209, 1215, 1197})
            EXPECT_FALSE(enabled(&panel, id)) << id << " " << scenario;
        EXPECT_FALSE(labelOf(&panel, 1209)->isEnabled());
        for (int id : {1237, 1238}) {
            EXPECT_TRUE(enabled(&panel, id)) << id << " " << scenario;
            EXPECT_TRUE(comboLines(&panel, id).isEmpty()) << id << " " << scenario;
        }
        EXPECT_EQ(panel.demoDeviceChoice().gpuOrdinal, -1);
        m_openCl.reset();
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
        stop();
    }
}

TEST_F(ComputePanelTest, MoreInformationListsTheDetailLinesOfTheShownDevice) {
    discoverOpenCl("");
    OpenCLPanel& panel = openOpenClPanel();
    combo(1194)->setCurrentIndex(1);
    QStringList shown;
    QString title;
    QTimer closer;
    closer.setInterval(10);
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (auto* dialog = dynamic_cast<panels::OpenClInfoDialog*>(QApplication::activeModalWidget())) {
            title = dialog->windowTitle();
            for (int i = 0; i < dialog->lines()->count(); ++i) shown << dialog->lines()->item(i)->text();
            dialog->accept();
        }
    });
    closer.start();
    QTest::mouseClick(panels::findControl(&panel, 1144), Qt::LeftButton);
    closer.stop();
    EXPECT_EQ(title, "Lumenscope - OpenCL Information");
    const std::vector<std::string> expected = compute::clDetailLines(0, 1);
    ASSERT_EQ(size_t(shown.size()), expected.size());
    EXPECT_TRUE(shown.contains("- CL_DEVICE_NAME: " + QString(fake_cl::kDevice1Name))) << shown.join('\n').toStdString();
}

}  // namespace
