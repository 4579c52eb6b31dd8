// The GPU panel on fixture machines: what each field says and which are greyed, at selection and at ticks.
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "app/app_log.h"
#include "app/panels/gpu_panel.h"
#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "tests/panels/window_machine.h"
#include "tests/panels/window_wait.h"

namespace {

using panels::GpuPanel;
using panels::kGpuLiveFields;

class GpuPanelTest : public WindowMachine {
protected:
    GpuPanel& openPanel(Kalidornm::Kalidor& library) {
        m_panel = std::make_unique<GpuPanel>(nullptr, state, library);
        m_panel->initGpuPanel();
        return *m_panel;
    }
    void TearDown() override {
        m_panel.reset();
        WindowMachine::TearDown();
    }
    QStringList comboRows() const {
        QStringList rows;
        auto* combo = panels::findControl<QComboBox>(m_panel.get(), 1268);
        for (int i = 0; combo && i < combo->count(); ++i) rows << combo->itemText(i);
        return rows;
    }
    void expectBlankAndGreyed(int id, const char* when) const {
        EXPECT_EQ(text(m_panel.get(), id), QString()) << id << " " << when;
        EXPECT_FALSE(enabled(m_panel.get(), id)) << id << " " << when;
        const QWidget* label = labelOf(m_panel.get(), id);
        ASSERT_NE(label, nullptr) << id;  // every live field has its caption, greyed with it
        EXPECT_FALSE(label->isEnabled()) << id << " " << when;
    }

    std::unique_ptr<GpuPanel> m_panel;
};

TEST_F(GpuPanelTest, NvidiaCardShowsItsDriverValuesAndFanPercentWithoutRpm) {
    GpuPanel& panel = openPanel(start("nvidia-desktop", rtx3090("gpu 0 fail DeviceGetFanSpeedRPM\n")));
    ASSERT_EQ(comboRows().size(), 1);
    EXPECT_TRUE(comboRows()[0].startsWith("GPU 1: ")) << comboRows()[0].toStdString();
    EXPECT_EQ(text(&panel, 1012), "41%");
    EXPECT_TRUE(enabled(&panel, 1012));
    EXPECT_EQ(text(&panel, 1008), "10DE - 2204");
    EXPECT_EQ(text(&panel, 1009), "Gigabyte (1458 - 403B)");
    EXPECT_EQ(text(&panel, 1006), "94.02.26.08.1C");
    EXPECT_TRUE(text(&panel, 1003).startsWith("R550.54 (r550) / ")) << text(&panel, 1003).toStdString();
    EXPECT_STREQ(state.driverDisplayText, text(&panel, 1003).toUtf8().constData());
    EXPECT_TRUE(text(&panel, 1007).startsWith("Cores: 10496")) << text(&panel, 1007).toStdString();
    EXPECT_EQ(text(&panel, 1004).left(7), "24576MB");
    EXPECT_TRUE(text(&panel, 1004).contains(", bus width: 384-bit"));
    EXPECT_EQ(text(&panel, 1015), QString::fromUtf8("52.0\u00B0C / 125.6\u00B0F"));
    EXPECT_EQ(text(&panel, 1013), "17.0%");
    EXPECT_EQ(text(&panel, 1137), "core: 1395 MHz, mem: 9751 MHz");
    EXPECT_EQ(text(&panel, 1140), "base: 1395 MHz, boost: 2100 MHz, mem: 9751 MHz");
    EXPECT_EQ(text(&panel, 1014), "current: 50.0 % TDP, target: 100.0 % TDP");
    EXPECT_EQ(text(&panel, 1041), "GPU PhysX (NVIDIA GeForce RTX 3090)");
    EXPECT_STREQ(state.cardNameText, "NVIDIA GeForce RTX 3090");
    // The driver has no voltage call: the field stays empty and greyed with its label.
    expectBlankAndGreyed(1129, "at selection");

    stop();
    openPanel(start("nvidia-desktop", rtx3090("gpu 0 fail DeviceGetFanSpeed\ngpu 0 fail DeviceGetFanSpeedRPM\n")));
    expectBlankAndGreyed(1012, "with neither fan reading");
    m_panel->refreshOnTick();
    expectBlankAndGreyed(1012, "after a tick");
}

TEST_F(GpuPanelTest, AmdCardWithSensorsShowsEveryLiveValue) {
    GpuPanel& panel = openPanel(start("amdgpu-rx6800"));
    EXPECT_EQ(text(&panel, 1008), "1002 - 73BF");
    EXPECT_EQ(text(&panel, 1009), "AMD (1002 - 0E3A)");
    EXPECT_EQ(text(&panel, 1012), "30% / 1100 RPM");
    EXPECT_EQ(text(&panel, 1013), "12.0%");
    EXPECT_EQ(text(&panel, 1137), "core: 1815 MHz, mem: 1000 MHz");
    EXPECT_TRUE(text(&panel, 1140).startsWith("core: 2475 MHz, mem: ")) << text(&panel, 1140).toStdString();
    EXPECT_EQ(text(&panel, 1014), "PowerTune - cur: 100%, default: 100%");
    EXPECT_EQ(text(&panel, 1015), QString::fromUtf8("45.0\u00B0C / 113.0\u00B0F"));
    // No Catalyst version: the driver text alone, without an empty version in front.
    EXPECT_FALSE(text(&panel, 1003).startsWith("Catalyst")) << text(&panel, 1003).toStdString();
    EXPECT_FALSE(text(&panel, 1003).isEmpty());
    for (int id : {1012, 1013, 1014, 1015, 1137, 1140}) EXPECT_TRUE(enabled(&panel, id)) << id;
}

TEST_F(GpuPanelTest, AmdCardWithoutSensorsLeavesTheirFieldsBlankAndGreyed) {
    // A card whose temperature file is missing: the other sensors still show, at selection and at ticks.
    const std::string root = copyOfFixture("amdgpu-rx6800");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.path().filename() == "temp1_input") std::filesystem::remove(entry.path());
    GpuPanel& panel = openPanel(startOn(root));
    for (int tick = 0; tick < 2; ++tick) {
        const char* when = tick == 0 ? "at selection" : "after a tick";
        expectBlankAndGreyed(1015, when);
        EXPECT_EQ(text(&panel, 1012), "30% / 1100 RPM") << when;
        EXPECT_EQ(text(&panel, 1137), "core: 1815 MHz, mem: 1000 MHz") << when;
        for (int id : {1012, 1013, 1014, 1137, 1140}) EXPECT_TRUE(enabled(&panel, id)) << id << " " << when;
        panel.refreshOnTick();
    }

    // A card without any sensor directory: nothing live can be read, the fixed values are there.
    stop();
    GpuPanel& bare = openPanel(start("amdgpu-no-hwmon"));
    EXPECT_EQ(text(&bare, 1008), "1002 - 67DF");
    EXPECT_EQ(text(&bare, 1009), "ASUS (1043 - 04B0)");
    for (int tick = 0; tick < 2; ++tick) {
        for (int id : kGpuLiveFields) expectBlankAndGreyed(id, tick == 0 ? "at selection" : "after a tick");
        bare.refreshOnTick();
    }
}

TEST_F(GpuPanelTest, IntelGpuHasStaticFieldsAndNoLiveValueAtAnyTick) {
    GpuPanel& panel = openPanel(start("two-identical"));
    ASSERT_GE(state.gpuCount, 1u);
    EXPECT_EQ(text(&panel, 1008), "8086 - 56A0");
    EXPECT_EQ(text(&panel, 1009), "Intel (8086 - 1020)");
    EXPECT_TRUE(text(&panel, 1007).startsWith("Cores: 512")) << text(&panel, 1007).toStdString();
    EXPECT_EQ(text(&panel, 1036), "225W");
    for (int tick = 0; tick < 3; ++tick) {
        for (int id : kGpuLiveFields) expectBlankAndGreyed(id, tick == 0 ? "at selection" : "after a tick");
        panel.refreshOnTick();
    }
}

int64_t gPanelMicroseconds = 0;
int64_t panelClock() { return gPanelMicroseconds; }

// Intel GPUs show what their driver gives: the package temperature, the fan's RPM, the GT clock, the
// voltage, and from the second tick on the load and the power in watts, each from the fixture's own files.
TEST_F(GpuPanelTest, IntelCardsShowTheirLiveValuesAndPowerInWattsFromTheSecondTick) {
    const std::string root = copyOfFixture("xe-b580");
    const std::string device = root + "/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0";
    auto number = [](const std::string& path) {
        std::ifstream in(path);
        double value = -1;
        in >> value;
        return value;
    };
    const std::string hwmon = device + "/hwmon/hwmon2/", gt = device + "/tile0/gt0/";
    monotonicClock = &panelClock;
    GpuPanel& panel = openPanel(startOn(root));
    EXPECT_EQ(text(&panel, 1008), "8086 - E20B");
    EXPECT_EQ(text(&panel, 1015), panels::temperatureText(float(number(hwmon + "temp2_input") / 1000.0)));
    EXPECT_EQ(text(&panel, 1012), QString::asprintf("%d RPM", int(number(hwmon + "fan1_input"))));
    EXPECT_EQ(text(&panel, 1137), QString::asprintf("core: %d MHz", int(number(gt + "freq0/act_freq"))));
    EXPECT_EQ(text(&panel, 1129), QString::asprintf("%.3fV", number(hwmon + "in1_input") / 1000.0));
    // One read of the counters so far: no rate yet.
    expectBlankAndGreyed(1013, "at selection");
    expectBlankAndGreyed(1014, "at selection");

    const int64_t energy = int64_t(number(hwmon + "energy1_input")), idle = int64_t(number(gt + "gtidle/idle_residency_ms"));
    std::ofstream(hwmon + "energy1_input") << energy + 120'000'000 << '\n';
    std::ofstream(gt + "gtidle/idle_residency_ms") << idle + 1500 << '\n';
    gPanelMicroseconds += 2'000'000;
    panel.refreshOnTick();
    EXPECT_EQ(text(&panel, 1014), "60.0 W");  // 120 J in 2 s
    EXPECT_EQ(text(&panel, 1013), "25.0%");   // idle 1.5 s of 2 s
    for (int id : {1012, 1013, 1014, 1015, 1129, 1137}) EXPECT_TRUE(enabled(&panel, id)) << id;

    // The laptop's integrated GPU has no sensors of its own: its clock shows, the rest stays greyed.
    stop();
    const std::string laptop = fixture("i915-laptop") + "/sys/devices/pci0000:00/0000:00:02.0/drm/card1/";
    GpuPanel& igpu = openPanel(start("i915-laptop"));
    EXPECT_EQ(text(&igpu, 1137), QString::asprintf("core: %d MHz", int(number(laptop + "gt_act_freq_mhz"))));
    for (int id : {1012, 1014, 1015, 1129}) expectBlankAndGreyed(id, "on the laptop");
}

TEST_F(GpuPanelTest, RetailBoardNameStandsInTheComboOnly) {
    const std::string asusGtx580 =
        "driver 390.157\n"
        "gpu 0 pci_device 0x108010DE\n"
        "gpu 0 pci_subsystem 0x83BB1043\n"
        "gpu 0 bus 1\n"
        "gpu 0 name NVIDIA GeForce GTX 580\n"
        "gpu 0 memory_mb 1536\n"
        "gpu 0 temp 40\n";
    GpuPanel& panel = openPanel(start("nvidia-desktop", asusGtx580));
    ASSERT_EQ(comboRows(), QStringList{"GPU 1: ASUS ROG MATRIX GTX 580"});
    for (QLineEdit* field : panel.findChildren<QLineEdit*>())
        EXPECT_FALSE(field->text().contains("MATRIX")) << field->objectName().toStdString();
    EXPECT_EQ(text(&panel, 1009), "ASUS (1043 - 83BB)");
}

// Without its management library an NVIDIA card keeps the record the PCI layer and the database give it,
// and nothing live.
TEST_F(GpuPanelTest, NvidiaCardWithoutItsManagementLibraryShowsItsRecordAndNoLiveValue) {
    GpuPanel& panel = openPanel(start("nvidia-desktop"));
    ASSERT_EQ(state.gpuCount, 1u);
    // The display device's string names the card in the combo, as for every card with a display device.
    EXPECT_EQ(comboRows(), QStringList{"GPU 1: NVIDIA Corporation GA102 [GeForce RTX 3090]"});
    EXPECT_EQ(text(&panel, 1008), "10DE - 2204");
    EXPECT_EQ(text(&panel, 1009), "Gigabyte (1458 - 403B)");
    EXPECT_EQ(text(&panel, 1005), "GA102");
    EXPECT_EQ(text(&panel, 1036), "350W");
    for (int id : kGpuLiveFields) expectBlankAndGreyed(id, "without the library");
    panel.refreshOnTick();
    for (int id : kGpuLiveFields) expectBlankAndGreyed(id, "after a tick");
}

TEST_F(GpuPanelTest, MachineWithoutDisplayDeviceShowsTheNoDriverState) {
    Kalidornm::Kalidor& library = start("nothing");
    ASSERT_FALSE(library.hasDisplayDevice());
    GpuPanel& panel = openPanel(library);
    EXPECT_EQ(text(&panel, 1003), "No graphics driver detected!");
    EXPECT_STREQ(state.driverDisplayText, "No graphics driver detected!");
    EXPECT_EQ(text(&panel, 1035), QString::asprintf("Core: %d.%d", library.getGlMajorVersion(), library.getGlMinorVersion()));
    for (int id : {1008, 1005, 1004, 1006, 1038, 1040}) EXPECT_EQ(text(&panel, id), QString()) << id;
    for (int id : kGpuLiveFields) expectBlankAndGreyed(id, "without a driver");
    EXPECT_TRUE(state.noDriverState);
    EXPECT_FALSE(state.temperatureRefreshEnabled);
    EXPECT_TRUE(comboRows().isEmpty());
    // Once in this state the panel stays in it.
    panel.initGpuPanel();
    panel.refreshOnTick();
    EXPECT_EQ(text(&panel, 1003), "No graphics driver detected!");
}

TEST_F(GpuPanelTest, OneCardHasNoMultiGpuSupport) {
    GpuPanel& panel = openPanel(start("amdgpu-rx6800"));
    EXPECT_EQ(text(&panel, 1042), "no multi-GPU support (1 physical GPUs)");
    EXPECT_FALSE(enabled(&panel, 1042));
    EXPECT_FALSE(labelOf(&panel, 1042)->isEnabled());
    EXPECT_EQ(text(&panel, 1041), "PhysX not installed");
    EXPECT_FALSE(enabled(&panel, 1041));
}

TEST_F(GpuPanelTest, OpenClAndCudaLinesComeFromTheDiscoveryRecords) {
    const std::string logPath = ::testing::TempDir() + "gpu_panel_compute_log.txt";
    AppLog log(logPath.c_str());
    compute::discoverOpenCl(log, FAKE_COMPUTE_DIR "/libOpenCL.so.1");
    compute::discoverCuda(log, FAKE_COMPUTE_DIR "/libcuda.so.1");
    ASSERT_GT(compute::getClPlatformCount(), 0u);
    ASSERT_GT(compute::getCudaDeviceCount(), 0);
    GpuPanel& panel = openPanel(start("amdgpu-rx6800"));
    // The fake's first device is CPU and GPU at once, which counts as neither; its CPU device is described.
    EXPECT_TRUE(text(&panel, 1038).contains(", CPU compute units:")) << text(&panel, 1038).toStdString();
    EXPECT_TRUE(enabled(&panel, 1038));
    EXPECT_TRUE(text(&panel, 1040).contains(" CC:")) << text(&panel, 1040).toStdString();
    EXPECT_TRUE(text(&panel, 1040).endsWith("@1500MHz")) << text(&panel, 1040).toStdString();
    EXPECT_TRUE(enabled(&panel, 1040));
    m_panel.reset();
    compute::releaseOpenCl();
    compute::freeOpenClPlatforms();
    compute::freeCudaDevices();
    std::remove(logPath.c_str());
}

TEST_F(GpuPanelTest, MoreGpuInfoStartsTheCompanionScriptOfTheWorkingDirectoryIfThereIsOne) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::path(::testing::TempDir()) / ("companion_" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(dir.string())));
    GpuPanel& panel = openPanel(start("amdgpu-rx6800"));

    QTest::mouseClick(panels::findControl(&panel, 1142), Qt::LeftButton);  // no script: nothing happens
    std::ofstream(dir / "ferritewatch.sh") << "touch started\n";
    QTest::mouseClick(panels::findControl(&panel, 1142), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return fs::exists(dir / "started"); }));

    QDir::setCurrent(previous);
    fs::remove_all(dir);
}

}  // namespace
