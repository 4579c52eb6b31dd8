#pragma once

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QWidget>
#include <filesystem>
#include <memory>
#include <string>

#include "app/app_state.h"
#include "app/panels/controls.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/vendors/amd_reader.h"
#include "unit/fake_nvml_machine.h"

// One machine under the windows: the library started on a fixture sysfs tree (and the fake management library
// when NVIDIA settings are given), and an application state set as start-up sets it.
class WindowMachine : public ::testing::Test {
protected:
    static std::string fixture(const std::string& machine) { return std::string(SYSFS_FIXTURES) + "/" + machine; }

    // A copy of a fixture tree that a test may change; removed with the test.
    std::string copyOfFixture(const std::string& machine) {
        namespace fs = std::filesystem;
        const fs::path copy = fs::path(::testing::TempDir()) /
                              ("window_" + std::to_string(::getpid()) + "_" + machine + "_" + std::to_string(++m_copies));
        fs::remove_all(copy);
        fs::copy(fixture(machine), copy, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        m_copiesMade.push_back(copy.string());
        return copy.string();
    }

    Kalidornm::Kalidor& startOn(const std::string& rootDir, const std::string& nvmlSettings = "") {
        Kalidornm::KalidorSources sources;
        sources.rootDir = rootDir;
        sources.pciIdsFile = std::string(SYSFS_FIXTURES) + "/pci.ids";
        sources.eglLibrary = "";
        sources.nvmlLibrary = nvmlSettings.empty() ? "" : FakeNvmlMachine::library();
        sources.monotonicMicroseconds = monotonicClock;
        return startFrom(sources, nvmlSettings, 0, 0);
    }

    Kalidornm::Kalidor& start(const std::string& machine, const std::string& nvmlSettings = "") {
        return startOn(fixture(machine), nvmlSettings);
    }

    // This machine itself with the OpenGL context of a real start: Mesa's llvmpipe where there is no GPU, as on
    // the build machine. Fixture trees have no OpenGL driver. NVIDIA's library stays out of it.
    Kalidornm::Kalidor& startWithOpenGl() {
        Kalidornm::KalidorSources sources;
        sources.pciIdsFile = std::string(SYSFS_FIXTURES) + "/pci.ids";
        sources.nvmlLibrary = "";
        return startFrom(sources, "", 4, 5);
    }

private:
    Kalidornm::Kalidor& startFrom(const Kalidornm::KalidorSources& sources, const std::string& nvmlSettings,
                                  int glMajor, int glMinor) {
        if (!nvmlSettings.empty()) m_nvml = std::make_unique<FakeNvmlMachine>(nvmlSettings);
        Kalidornm::Kalidor::setSources(sources);
        m_library = Kalidornm::Kalidor::getInstance();
        EXPECT_NE(m_library, nullptr);
        EXPECT_TRUE(m_library->startup(0, 0, 64, 64, glMajor, glMinor, true));
        initAppState(state);
        state.gpuCount = m_library->getGpuCount();
        state.cpuSpeedMhz = 2600;  // start-up measures it for a second; the windows only show it
        // The main window's start would ask our web server for a newer version, from a thread that the test
        // process then leaves running into its exit.
        state.onlineCheckEnabled = false;
        state.headerTextColour = 0xFFFFFF;
        state.headerBackColour = 0xAF712A;
        return *m_library;
    }

protected:
    void TearDown() override { stop(); }

    // Shuts the library down and forgets the machine, so that a test can start another.
    void stop() {
        using namespace Kalidornm;
        if (m_library && !m_library->shutdown()) {
            gGlobals.gpus.clear();
            gGlobals.windows.clear();
            gGlobals.mainWindow = nullptr;
            Kalidor::destroyInstance();
        }
        gGlobals.summary = GpuSummary{};
        gGlobals.snapshot.reset();
        gGlobals.gpu_db_index = -1;
        gGlobals.hasDisplayDevice = false;
        Kalidor::setSources(KalidorSources{});
        m_library = nullptr;
        m_nvml.reset();
        for (const std::string& copy : m_copiesMade) std::filesystem::remove_all(copy);
        m_copiesMade.clear();
    }

    static QString text(const QWidget* panel, int id) { return panels::fieldText(panel, id); }
    static bool enabled(const QWidget* panel, int id) {
        const QWidget* control = panels::findControl(panel, id);
        return control && control->isEnabled();
    }
    // The label beside a field, which greys with it.
    static const QWidget* labelOf(const QWidget* panel, int id) {
        const QWidget* field = panels::findControl(panel, id);
        return field ? qobject_cast<const QWidget*>(field->property("label").value<QObject*>()) : nullptr;
    }

    AppState state;
    // The clock the library takes rates of counters over; null for the system's.
    int64_t (*monotonicClock)() = nullptr;

private:
    Kalidornm::Kalidor* m_library = nullptr;
    std::unique_ptr<FakeNvmlMachine> m_nvml;
    std::vector<std::string> m_copiesMade;
    int m_copies = 0;
};

// The RTX 3090 of the nvidia-desktop fixture as the fake management library serves it; `extra` adds lines.
inline std::string rtx3090(const std::string& extra = "") {
    return "driver 550.54.15\n"
           "gpu 0 pci_device 0x220410DE\n"
           "gpu 0 pci_subsystem 0x403B1458\n"
           "gpu 0 bus 1\n"
           "gpu 0 name NVIDIA GeForce RTX 3090\n"
           "gpu 0 memory_mb 24576\n"
           "gpu 0 free_mb 20000\n"
           "gpu 0 vbios 94.02.26.08.1C\n"
           "gpu 0 cores 10496\n"
           "gpu 0 bus_width 384\n"
           "gpu 0 temp 52\n"
           "gpu 0 fan 41\n"
           "gpu 0 util_gpu 17\n"
           "gpu 0 clock_gfx 1395\n"
           "gpu 0 clock_mem 9751\n"
           "gpu 0 max_gfx 2100\n"
           "gpu 0 max_mem 9751\n"
           "gpu 0 app_gfx 1395\n"
           "gpu 0 app_mem 9751\n"
           "gpu 0 pstate 2\n"
           "gpu 0 power 175000\n"
           "gpu 0 enforced 350000\n"
           "gpu 0 limit 350000\n"
           "gpu 0 default_limit 350000\n"
           "gpu 0 min_limit 100000\n"
           "gpu 0 max_limit 400000\n" +
           extra;
}
