#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "compute/cuda_records.h"
#include "compute/opencl_records.h"
#include "kalidor/machine_snapshot.h"
#include "vulkan/vulkan_records.h"

// Everything a report prints: the library's machine snapshot, the discovery records and the application
// state. The generators read nothing else, so a snapshot filled by hand replays any machine.
//
// Absent and zero differ where a reader can fail: such fields are std::optional. Texts a library accessor
// may give as null are optional too; an empty text is a text that exists.
namespace report {

// The machine's part is the library's snapshot, value for value.
using ReportSystem = Kalidornm::SystemFacts;
using ReportDisplayMode = Kalidornm::DisplayModeFacts;
using ReportPerfLevel = Kalidornm::PerfLevelFacts;
using ReportNvidiaClocks = Kalidornm::NvidiaClockFacts;
using ReportLiveReadings = Kalidornm::LiveSample;
using ReportGpu = Kalidornm::GpuSnapshot;

// Machine-level driver values of the primary device.
struct ReportDriver {
    std::optional<std::string> primaryDriverVersion;
    std::optional<std::string> primaryDriverText;  // the summary's driver line
    uint32_t nvDriverVersionNumber = 0;            // NVIDIA driver version x 100
    std::optional<std::string> nvDriverBranch;
};

using ReportGlCap = Kalidornm::GlCapFacts;
using ReportGlExtension = Kalidornm::GlExtensionFacts;
using ReportOpenGl = Kalidornm::OpenGlFacts;

// OpenCL and CUDA take discovery's own records: the field rows in compute/ say how each value is printed.
using ReportClDevice = compute::ClDeviceRecord;
using ReportClPlatform = compute::ClPlatformRecord;
using ReportCudaDevice = compute::CudaDeviceRecord;

// The legacy NVIDIA control panel values; absent where that interface does not exist.
struct ReportNvidiaControlPanel {
    int32_t coreTemperatureC = 0;
    std::string displayAdapter, displayBoard, displayDriver, busMode;
    int32_t busTransferRate = 0;
    int32_t videoMemoryMb = 0;
    long gpuCount = 0, sliGpuCount = 0;
    std::string sliRenderingMode;
};

struct ReportLink {
    std::string key;  // reviews only: text searched for in the adapter's name
    std::string url;
};

// The web-link tables chosen by the tools panel; a batch run never has them.
struct ReportLinks {
    std::vector<ReportLink> drivers;
    std::vector<ReportLink> reviews;
};

struct ReportSnapshot {
    // Banner
    std::string programName;
    std::string programVersion;  // "major.minor.patch.build"
    std::string homePage;

    ReportSystem system;
    bool hasDisplayDevice = false;
    ReportDisplayMode displayMode;
    std::string primaryDisplayDeviceString;  // display device 0
    bool primaryIsNvidia = false;             // primary vendor kind
    ReportDriver driver;
    std::vector<ReportGpu> gpus;
    ReportOpenGl gl;
    std::vector<ReportCudaDevice> cudaDevices;
    std::vector<ReportClPlatform> clPlatforms;
    vulkan::VulkanInfo vulkan;
    std::optional<ReportNvidiaControlPanel> nvidiaControlPanel;
    std::optional<ReportLinks> links;
};


}  // namespace report
