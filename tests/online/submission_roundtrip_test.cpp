#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "compute/opencl_discovery.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "online/form_fields.h"
#include "online/validation_server_process.h"
#include "report/online/submission_facts_from_snapshot.h"
#include "report/online/submit_body.h"
#include "report/online/text_filters.h"
#include "report/online/validation_submission.h"
#include "unit/compute_test_log.h"
#include "unit/fake_nvml_machine.h"

namespace {

using namespace online;
using Kalidornm::Kalidor;

// The desktop of the fixture tree with its RTX 3090 answered by the fake management library, and the fake
// OpenCL driver's two platforms.
constexpr const char* kRtx3090 =
    "driver 550.54.15\n"
    "gpu 0 pci_device 0x220410DE\n"
    "gpu 0 pci_subsystem 0x403B1458\n"
    "gpu 0 bus 1\n"
    "gpu 0 name NVIDIA GeForce RTX 3090\n"
    "gpu 0 memory_mb 24576\n"
    "gpu 0 vbios 94.02.26.08.1C\n"
    "gpu 0 cores 10496\n"
    "gpu 0 bus_width 384\n"
    "gpu 0 temp 52\n"
    "gpu 0 mem_temp 70\n"
    "gpu 0 fan 41\n"
    "gpu 0 rpm 1650\n"
    "gpu 0 util_gpu 23\n"
    "gpu 0 util_mem 11\n"
    "gpu 0 clock_gfx 1395\n"
    "gpu 0 clock_mem 9751\n"
    "gpu 0 max_gfx 2100\n"
    "gpu 0 max_mem 9751\n"
    "gpu 0 app_gfx 1395\n"
    "gpu 0 app_mem 9751\n"
    "gpu 0 pstate 0\n"
    "gpu 0 power 280000\n"
    "gpu 0 limit 350000\n"
    "gpu 0 default_limit 350000\n"
    "gpu 0 min_limit 100000\n"
    "gpu 0 max_limit 400000\n"
    "gpu 0 mem_offset 500\n";

// The one value measured on this machine's processor rather than read from the fixture, masked in the golden
// body.
constexpr const char* kMachineFields[] = {"cpu_speed_mhz"};

std::string percentDecoded(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
            std::isxdigit(static_cast<unsigned char>(text[i + 2]))) {
            out += char(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            out += text[i] == '+' ? ' ' : text[i];
        }
    }
    return out;
}

std::string readText(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class SubmissionRoundTrip : public ::testing::Test {
protected:
    void SetUp() override {
        m_nvml = std::make_unique<FakeNvmlMachine>(kRtx3090);
        Kalidornm::KalidorSources sources;
        sources.rootDir = std::string(SYSFS_FIXTURES) + "/nvidia-desktop";
        sources.pciIdsFile = std::string(SYSFS_FIXTURES) + "/pci.ids";
        sources.eglLibrary = "";
        sources.nvmlLibrary = FakeNvmlMachine::library();
        Kalidor::setSources(sources);
        m_library = Kalidor::getInstance();
        ASSERT_NE(m_library, nullptr);
        ASSERT_TRUE(m_library->startup(0, 0, 64, 64, 0, 0, true));
        compute::discoverOpenCl(m_log.log(), FAKE_OPENCL_LIBRARY);
    }
    void TearDown() override {
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
        if (m_library && !m_library->shutdown()) {
            Kalidornm::gGlobals.gpus.clear();
            Kalidor::destroyInstance();
        }
        Kalidornm::gGlobals.summary = Kalidornm::GpuSummary{};
        Kalidornm::gGlobals.snapshot.reset();
        Kalidornm::gGlobals.gpu_db_index = -1;
        Kalidornm::gGlobals.hasDisplayDevice = false;
        Kalidor::setSources(Kalidornm::KalidorSources{});
    }

    Kalidor& library() { return *m_library; }

private:
    std::unique_ptr<FakeNvmlMachine> m_nvml;
    TestLog m_log;
    Kalidor* m_library = nullptr;
};

TEST_F(SubmissionRoundTrip, StoredRowHoldsTheFacadesValuesFieldByField) {
    ValidationServerProcess server;
    ASSERT_TRUE(server.started());
    Kalidor& k = library();
    ASSERT_EQ(k.getGpuCount(), 1u);
    ASSERT_GE(compute::getClPlatformCount(), 1u);

    const SubmissionFacts facts = gatherSubmissionFacts(k);
    const SubmitReply reply = submitValidation(server.hosts(), facts, "Jane Doe", "s3cret pw", {});
    ASSERT_EQ(reply.result, 1);
    const nlohmann::json stored = nlohmann::json::parse(server.storedSubmissionJson(1), nullptr, false);
    ASSERT_TRUE(stored.is_object()) << server.storedSubmissionJson(1);
    const nlohmann::json& fields = stored["fields"];
    const auto field = [&](const char* name) {
        return fields.contains(name) ? fields[name].get<std::string>() : std::string("(absent)");
    };
    const auto number = [](double value) { return std::to_string(int(value)); };

    uint32_t vendor = 0, device = 0, subvendor = 0, subdevice = 0;
    ASSERT_TRUE(k.getGpuPciIds(0, &vendor, &device, &subvendor, &subdevice));
    float baseMhz = 0, boostMhz = 0, memMhz = 0, core = 0, board = 0, memory = 0, vrm = 0, fan = 0, rpm = 0,
          load = 0, memoryLoad = 0, target = 0;
    ASSERT_TRUE(k.readGpuClockFrequencies(0, 1, &baseMhz, &memMhz));
    ASSERT_TRUE(k.readGpuClockFrequencies(0, 2, &boostMhz, &memMhz));
    ASSERT_TRUE(k.readGpuTemperatures(0, &core, &board, &memory, &vrm));
    ASSERT_TRUE(k.readGpuFanSpeed(0, &fan, &rpm));
    ASSERT_TRUE(k.readGpuLoad(0, &load, &memoryLoad));
    ASSERT_TRUE(k.readGpuPowerTarget(0, &target, nullptr));
    uint32_t busWidth = 0;
    k.getGpuMemoryBusWidth(0, &busWidth, nullptr);

    const std::map<std::string, std::string> expected = {
        {"cpu_speed_mhz", std::to_string(k.getCpuSpeedMhz())},
        {"cpu_mem_size_mb", std::to_string(k.getTotalMemoryKb() >> 10)},
        {"os", percentDecoded(sanitizeForUrl(k.getOsDescription()))},
        {"screen_name", "Jane Doe"},
        {"submit_password", "s3cretpw"},
        {"gpu0_vendor_id", std::to_string(vendor)},
        {"gpu0_device_id", std::to_string(device)},
        {"gpu0_subdevice_id", std::to_string(subdevice)},
        {"gpu0_graphics_drivers", k.getGpuDriverVersion(0)},
        {"gpu0_core_clock_base_mhz", number(baseMhz)},
        {"gpu0_core_clock_boost_mhz", number(boostMhz)},
        {"gpu0_nv_power_target_percent", number(target)},
        {"gpu0_name", k.getGpuName(0)},
        {"gpu0_cores", std::to_string(k.getGpuShaderCores(0))},
        {"gpu0_bios", k.getGpuBiosVersion(0)},
        {"gpu0_mem_size", std::to_string(k.getGpuMemorySizeMb(0))},
        {"gpu0_mem_bus_width", std::to_string(busWidth)},
        {"gpu0_bus_id", std::to_string(k.getGpuBusId(0))},
        {"gpu0_core_temp", number(core)},
        {"gpu0_fan_speed_percent", number(fan)},
        {"gpu0_core_usage", number(load)},
        {"opencl_p0_CL_PLATFORM_NAME", compute::clPlatforms()[0].name},
        {"opencl_p0_d0_CL_DEVICE_NAME", compute::clPlatforms()[0].devices.at(0).name},
        {"opencl_p0_d0_CL_DEVICE_EXTENSIONS", std::to_string(compute::clPlatforms()[0].devices.at(0).extensions.size())},
    };
    for (const auto& [name, value] : expected) EXPECT_EQ(field(name.c_str()), value) << name;

    // Every item of the body was stored, under its name, decoded, in the order sent.
    std::string body;
    ASSERT_TRUE(buildSubmitBody(facts, "Jane%20Doe", "s3cretpw", body));
    const online_test::FormFields sent = online_test::splitForm(body);
    ASSERT_EQ(fields.size(), sent.items.size());
    for (const auto& [name, value] : sent.items) EXPECT_EQ(field(name.c_str()), percentDecoded(value)) << name;
}

TEST_F(SubmissionRoundTrip, BodyMatchesTheGoldenOneButForTheMeasuredProcessorSpeed) {
    std::string body;
    ASSERT_TRUE(buildSubmitBody(gatherSubmissionFacts(library()), "Jane%20Doe", "", body));
    std::string lines;
    for (auto [name, value] : online_test::splitForm(body).items) {
        for (const char* masked : kMachineFields)
            if (name == masked) value = "<this machine>";
        lines += name + "=" + value + "\n";
    }
    const std::filesystem::path golden = std::filesystem::path(ONLINE_GOLDEN_DIR) / "nvidia_desktop_body.txt";
    const std::string expected = readText(golden);
    if (lines != expected) {
        const std::filesystem::path actual = std::filesystem::path(::testing::TempDir()) / "nvidia_desktop_body.txt";
        std::ofstream(actual, std::ios::binary) << lines;
        ADD_FAILURE() << "the body differs from " << golden << "; this run's body is in " << actual;
    }
}

}  // namespace
