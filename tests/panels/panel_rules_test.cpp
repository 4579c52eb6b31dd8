// The GPU panel's and the tools panel's rules over plain facts: board names, board makers, the machine
// summary lines, the review-link filter and the active-applications text.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "app/panels/active_apps_text.h"
#include "app/panels/board_names.h"
#include "app/panels/machine_summary.h"
#include "app/panels/web_links.h"

namespace {

using namespace panels;

TEST(RetailBoards, NeedAllFourIdsToMatch) {
    const PciIds asusGtx580{0x10DE, 0x1080, 0x1043, 0x83BB};
    ASSERT_NE(retailBoardName(asusGtx580), nullptr);
    EXPECT_STREQ(retailBoardName(asusGtx580), "ASUS ROG MATRIX GTX 580");
    EXPECT_STREQ(retailBoardName({0x1002, 0x6758, 0x1043, 0x03EA}), "ASUS EAH6670/DIS/1GD5");
    EXPECT_EQ(retailBoardName({0x10DE, 0x1080, 0x1043, 0x83BC}), nullptr);  // same chip, another board
    EXPECT_EQ(retailBoardName({0x10DE, 0x1080, 0x10DE, 0x83BB}), nullptr);  // NVIDIA's own board
    EXPECT_EQ(retailBoardName({0x1002, 0x1080, 0x1043, 0x83BB}), nullptr);
    EXPECT_EQ(retailBoardName({}), nullptr);
}

TEST(BoardVendor, NamesTheMakerWithFourHexDigitsEach) {
    char text[64];
    formatBoardVendor(0x1458, 0x403B, text, sizeof text);
    EXPECT_STREQ(text, "Gigabyte (1458 - 403B)");
    formatBoardVendor(0x10DE, 0x96A, text, sizeof text);
    EXPECT_STREQ(text, "NVIDIA (10DE-096A)");
    formatBoardVendor(0x1025, 0x1, text, sizeof text);
    EXPECT_STREQ(text, "Acer (1025 - 0001)");
    formatBoardVendor(0x1A03, 0x2000, text, sizeof text);
    EXPECT_STREQ(text, "1A03 - 2000");

    char small[8];
    std::memset(small, 'x', sizeof small);
    formatBoardVendor(0x1458, 0x403B, small, sizeof small);
    EXPECT_STREQ(small, "Gigabyt");
    formatBoardVendor(0x1458, 0x403B, nullptr, 16);  // nowhere to write: nothing happens
}

TEST(PhysxLine, GpuPhysxNeedsAQualifyingGpuAndOnlyNotInstalledGreys) {
    EXPECT_EQ(physxLine(9, "GeForce GTX 680").text, "PhysX 9, GPU PhysX (GeForce GTX 680)");
    EXPECT_EQ(physxLine(9, "").text, "PhysX 9, GPU PhysX");
    EXPECT_EQ(physxLine(0, "GeForce GTX 680").text, "GPU PhysX (GeForce GTX 680)");
    EXPECT_EQ(physxLine(-1, "").text, "GPU PhysX");
    EXPECT_EQ(physxLine(9, nullptr).text, "PhysX 9, CPU PhysX");
    const SummaryLine none = physxLine(0, nullptr);
    EXPECT_EQ(none.text, "PhysX not installed");
    EXPECT_FALSE(none.enabled);
    for (const SummaryLine& line : {physxLine(9, "x"), physxLine(0, "x"), physxLine(9, nullptr)})
        EXPECT_TRUE(line.enabled) << line.text;
}

TEST(MultiGpuLine, SliCrossFireOrNone) {
    // Two NVIDIA GPUs that the driver joins into one logical GPU.
    MultiGpuFacts sli{1, 2, 2, 0, 1, 0, 0};
    EXPECT_EQ(multiGpuLine(sli).text, "SLI enabled (2 physical GPUs)");
    EXPECT_TRUE(multiGpuLine(sli).enabled);
    MultiGpuFacts mixed{1, 3, 2, 0, 1, 0, 0};
    EXPECT_EQ(multiGpuLine(mixed).text, "SLI enabled (2 NV GPUs, 3 total GPUs)");
    MultiGpuFacts separate{1, 2, 2, 0, 2, 0, 0};  // as many logical GPUs as physical ones
    EXPECT_EQ(multiGpuLine(separate).text, "no multi-GPU support (2 physical GPUs)");
    EXPECT_FALSE(multiGpuLine(separate).enabled);

    MultiGpuFacts crossfire{2, 2, 0, 2, 2, 2, 2};
    EXPECT_EQ(multiGpuLine(crossfire).text, "CrossFire ON (2 GPUs)");
    MultiGpuFacts oneCrossfireGpu{2, 2, 0, 2, 2, 2, 1};
    EXPECT_EQ(multiGpuLine(oneCrossfireGpu).text, "no multi-GPU support (2 physical GPUs)");
    MultiGpuFacts amdFactsOnNvidiaPrimary{1, 2, 0, 2, 2, 2, 2};
    EXPECT_EQ(multiGpuLine(amdFactsOnNvidiaPrimary).text, "no multi-GPU support (2 physical GPUs)");
    EXPECT_EQ(multiGpuLine({}).text, "no multi-GPU support (0 physical GPUs)");
}

compute::ClDeviceRecord clDevice(uint64_t type, const char* name, const char* version, uint32_t units,
                                 uint32_t mhz) {
    compute::ClDeviceRecord device;
    device.type = type;
    device.name = name;
    device.version = version;
    device.maxComputeUnits = units;
    device.maxClockMhz = mhz;
    return device;
}

compute::ClPlatformRecord clPlatform(const char* vendor, std::vector<compute::ClDeviceRecord> devices) {
    compute::ClPlatformRecord platform;
    platform.vendor = vendor;
    platform.devices = std::move(devices);
    platform.deviceCount = uint32_t(platform.devices.size());
    return platform;
}

TEST(OpenClLine, PrefersGpu0sVendorThenAnyGpuThenACpu) {
    const auto intel = clPlatform("Intel(R) Corporation", {clDevice(4, "Iris Xe", "OpenCL 3.0 NEO", 96, 1300)});
    const auto amd = clPlatform("Advanced Micro Devices, Inc.", {clDevice(4, "gfx1030", "OpenCL 2.0 AMD-APP", 36, 2475)});
    const auto pocl = clPlatform("The pocl project", {clDevice(2, "cpu-haswell", "OpenCL 3.0 PoCL", 16, 3600)});

    EXPECT_EQ(openClLine({intel, amd}, 0x1002, true).text, "OpenCL 2.0, gfx1030 compute units:36@2475MHz");
    EXPECT_EQ(openClLine({intel, amd}, 0x1002, false).text, "OpenCL 3.0, Iris Xe compute units:96@1300MHz");
    // GPU 0 is NVIDIA but only AMD's platform is there: its GPU is described anyway.
    EXPECT_EQ(openClLine({pocl, amd}, 0x10DE, true).text, "OpenCL 2.0, gfx1030 compute units:36@2475MHz");
    const SummaryLine cpu = openClLine({pocl}, 0x10DE, true);
    EXPECT_EQ(cpu.text, "OpenCL 3.0, CPU compute units:16@3600MHz");
    EXPECT_TRUE(cpu.enabled);

    // The vendor's platform without a GPU device leads to the next GPU elsewhere.
    const auto nvidiaCpuOnly = clPlatform("NVIDIA Corporation", {clDevice(2, "host", "OpenCL 1.2 CUDA", 8, 100)});
    EXPECT_EQ(openClLine({nvidiaCpuOnly, intel}, 0x10DE, true).text, "OpenCL 3.0, Iris Xe compute units:96@1300MHz");
    // "AMD" alone names the vendor too.
    const auto amdShort = clPlatform("AMD", {clDevice(4, "gfx90a", "OpenCL 2.1", 110, 1700)});
    EXPECT_EQ(openClLine({intel, amdShort}, 0x1002, true).text, "OpenCL 2.1, gfx90a compute units:110@1700MHz");
}

TEST(OpenClLine, TypesCountOnlyWhenExactAndNothingGreys) {
    const auto both = clPlatform("Mixed", {clDevice(6, "cpu+gpu", "OpenCL 1.2", 4, 100)});
    const SummaryLine none = openClLine({both}, 0x10DE, true);
    EXPECT_EQ(none.text, "No GPU support (see the OpenCL panel for more details)");
    EXPECT_FALSE(none.enabled);
    EXPECT_FALSE(openClLine({}, 0, true).enabled);
    const auto empty = clPlatform("NVIDIA Corporation", {});
    EXPECT_FALSE(openClLine({empty}, 0x10DE, true).enabled);
}

TEST(CudaLine, DescribesDevice0OrGreys) {
    compute::CudaDeviceRecord device;
    device.name = "NVIDIA GeForce RTX 3090";
    device.computeMajor = 8;
    device.computeMinor = 6;
    device.multiprocessorCount = 82;
    device.clockRate = 1695999;  // kHz, shown in whole MHz
    compute::CudaDeviceRecord second = device;
    second.multiprocessorCount = 1;
    const SummaryLine line = cudaLine({device, second});
    EXPECT_EQ(line.text, "NVIDIA GeForce RTX 3090 CC:8.6, multiprocessors:82@1695MHz");
    EXPECT_TRUE(line.enabled);
    const SummaryLine none = cudaLine({});
    EXPECT_EQ(none.text, "No CUDA support");
    EXPECT_FALSE(none.enabled);
}

std::vector<std::string> keysListedFor(int32_t kind, const char* cardName, const char* renderer = "") {
    std::vector<std::string> keys;
    for (const ReviewLinkRow* row : listedReviewRows(webLinkTablesFor(kind).reviews, cardName, renderer))
        keys.push_back(row->key);
    return keys;
}

TEST(ReviewLinks, ListEveryKeyFoundInTheCardNameLongestKeysFirst) {
    const auto ti = keysListedFor(1, "GeForce GTX 560 Ti");
    ASSERT_EQ(ti.size(), 4u);
    EXPECT_EQ(ti[0], "GTX 560 Ti");
    EXPECT_EQ(ti[1], "GTX 560 Ti");
    EXPECT_EQ(ti[2], "GTX 560");
    EXPECT_EQ(ti[3], "GTX 560");

    // "8800 GT" is a piece of "8800 GTX" too; "8800 GTS" is not.
    const auto gtx = keysListedFor(1, "GeForce 8800 GTX");
    ASSERT_FALSE(gtx.empty());
    EXPECT_EQ(gtx.front(), "8800 GTX");
    EXPECT_EQ(gtx.back(), "8800");
    for (const std::string& key : gtx) EXPECT_TRUE(key == "8800 GTX" || key == "8800 GT" || key == "8800") << key;

    for (const std::string& key : keysListedFor(1, "GeForce 8800 Ultra")) EXPECT_NE(key, "8800 ULtra");
    // The match is case-sensitive: lower-case names find nothing.
    EXPECT_TRUE(keysListedFor(1, "geforce gtx 680").empty());
    EXPECT_TRUE(keysListedFor(1, "Quadro RTX 8000").empty());
}

TEST(ReviewLinks, RendererStandsInForAMissingCardName) {
    EXPECT_FALSE(keysListedFor(2, "", "AMD Radeon HD 7970").empty());
    EXPECT_TRUE(keysListedFor(2, "Radeon Pro", "AMD Radeon HD 7970").empty());
    EXPECT_TRUE(keysListedFor(2, nullptr, nullptr).empty());
    EXPECT_TRUE(listedReviewRows(nullptr, "GTX 680", "").empty());
}

TEST(ReviewLinks, OtherVendorsGetTheOneGenericRowAlways) {
    for (int32_t kind : {0, 4, 5, 99}) {
        const WebLinkTables tables = webLinkTablesFor(kind);
        EXPECT_EQ(listedReviewRows(tables.reviews, "anything at all", "").size(), 1u) << kind;
        EXPECT_EQ(listedReviewRows(tables.reviews, "", "").size(), 1u) << kind;
    }
}

TEST(ActiveAppsText, OneLinePerApplicationBetweenHeadingAndHint) {
    EXPECT_EQ(activeAppsText({{"glxgears", 1234}, {"", 99999}}),
              "Current active 3D applications:\n\r-glxgears (PID: 1234)\n\r- (PID: 99999)"
              "\n\r\n\rReal time monitoring available in Ferritewatch!");
}

TEST(ActiveAppsText, StaysWithinItsBufferWhateverTheApplicationsAre) {
    std::vector<ActiveApp> apps(128, ActiveApp{std::string(300, 'n'), 4294967295u});
    const std::string text = activeAppsText(apps);
    EXPECT_LE(text.size(), kActiveAppsTextLimit);
    const std::string hint = "Real time monitoring available in Ferritewatch!";
    EXPECT_EQ(text.rfind(hint), text.size() - hint.size());
    // Each line is cut at the 255 characters of its buffer.
    const size_t firstLine = text.find("\n\r-");
    const size_t secondLine = text.find("\n\r-", firstLine + 1);
    EXPECT_EQ(secondLine - firstLine, 255u);
}

}  // namespace
