#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include <gtest/gtest.h>

// One machine served by the fake management library: the settings are written to a file that the fake reads
// at every init, through FAKE_NVML_CONFIG.
class FakeNvmlMachine {
public:
    explicit FakeNvmlMachine(const std::string& settings) {
        static int serial = 0;
        m_path = ::testing::TempDir() + "fake_nvml_" + std::to_string(::getpid()) + "_" + std::to_string(++serial);
        if (FILE* file = std::fopen(m_path.c_str(), "w")) {
            std::fputs(settings.c_str(), file);
            std::fclose(file);
        }
        ::setenv("FAKE_NVML_CONFIG", m_path.c_str(), 1);
    }
    ~FakeNvmlMachine() {
        ::unsetenv("FAKE_NVML_CONFIG");
        std::remove(m_path.c_str());
    }
    FakeNvmlMachine(const FakeNvmlMachine&) = delete;
    // The settings file, for a library started elsewhere.
    const std::string& path() const { return m_path; }
    FakeNvmlMachine& operator=(const FakeNvmlMachine&) = delete;

    // "full", "legacy" (first call versions only, no newer optional calls) or "broken" (a required call missing).
    static std::string library(const std::string& variant = "full") {
        return std::string(FAKE_NVML_DIR) + "/nvml_" + variant + "/libnvidia-ml.so.1";
    }

private:
    std::string m_path;
};

// A GTX 680 (in the GPU database) at P8 with every sensor answering.
inline const char* kBusyGtx680 =
    "driver 550.54.15\n"
    "gpu 0 pci_device 0x118010DE\n"
    "gpu 0 pci_subsystem 0x096910DE\n"
    "gpu 0 bus 3\n"
    "gpu 0 name NVIDIA GeForce GTX 680\n"
    "gpu 0 memory_mb 2048\n"
    "gpu 0 free_mb 512\n"
    "gpu 0 vbios 80.04.09.00.01\n"
    "gpu 0 cores 1536\n"
    "gpu 0 bus_width 256\n"
    "gpu 0 pcie_width 16\n"
    "gpu 0 irq 42\n"
    "gpu 0 board_id 0x0300\n"
    "gpu 0 temp 45\n"
    "gpu 0 mem_temp 60\n"
    "gpu 0 fan 35\n"
    "gpu 0 rpm 1500\n"
    "gpu 0 util_gpu 12\n"
    "gpu 0 util_mem 7\n"
    "gpu 0 decoder 3\n"
    "gpu 0 clock_gfx 405\n"
    "gpu 0 clock_mem 810\n"
    "gpu 0 max_gfx 1110\n"
    "gpu 0 max_mem 3004\n"
    "gpu 0 app_gfx 1006\n"
    "gpu 0 app_mem 3004\n"
    "gpu 0 pstate 8\n"
    "gpu 0 power 150000\n"
    "gpu 0 enforced 300000\n"
    "gpu 0 limit 200000\n"
    "gpu 0 default_limit 250000\n"
    "gpu 0 min_limit 100000\n"
    "gpu 0 max_limit 350000\n"
    "gpu 0 reasons 0x24\n"
    "gpu 0 gpc_offset -50\n"
    "gpu 0 mem_offset 200\n"
    "gpu 0 pids 1234,99999\n";
