#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "integration/program_runner.h"

// report.json's Vulkan device against Debian's vulkaninfo on Mesa's software device (lavapipe): every limit,
// feature, property structure, extension with its revision, queue family and format from its profile file
// (vulkaninfo --json), and every memory heap and type from its text output, which the profile leaves out.
// Both programs are run here, so a machine without vulkaninfo or lavapipe fails the test.
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* kVulkanInfo = "/usr/bin/vulkaninfo";

struct Workspace {
    fs::path dir = fs::temp_directory_path() / ("vulkan_lavapipe_" + std::to_string(getpid()));
    Workspace() {
        fs::remove_all(dir);
        fs::create_directories(dir / "ours");
        fs::create_directories(dir / "theirs");
    }
    ~Workspace() { fs::remove_all(dir); }
    // vulkaninfo prints errors without a runtime folder.
    std::vector<std::pair<std::string, std::string>> env() const { return {{"XDG_RUNTIME_DIR", dir.string()}}; }
};

Json readJson(const fs::path& path) {
    std::ifstream in(path);
    return Json::parse(in, nullptr, false);
}

// Flag lists compare as sets of names: the two programs need not list bits in one order.
bool sameValue(const Json& ours, const Json& theirs) {
    if (ours.is_number() && theirs.is_number())
        return float(ours.get<double>()) == float(theirs.get<double>());
    if (ours.is_array() && theirs.is_array() && !ours.empty() && ours[0].is_string()) {
        return std::set<std::string>(ours.begin(), ours.end()) == std::set<std::string>(theirs.begin(), theirs.end());
    }
    if (ours.is_array() && theirs.is_array() && ours.size() == theirs.size()) {
        for (size_t i = 0; i < ours.size(); ++i)
            if (!sameValue(ours[i], theirs[i])) return false;
        return true;
    }
    return ours == theirs;
}

// Compares every key of their structure with ours; returns the number of values compared.
size_t compareStructure(const std::string& name, const Json& ours, const Json& theirs) {
    size_t compared = 0;
    EXPECT_TRUE(ours.is_object()) << name << " missing from report.json";
    if (!ours.is_object()) return 0;
    for (const auto& [key, value] : theirs.items()) {
        if (value.is_object() && (key == "limits" || key == "sparseProperties")) continue;  // groups of their own
        EXPECT_TRUE(ours.contains(key)) << name << "." << key << " missing from report.json";
        if (!ours.contains(key)) continue;
        EXPECT_TRUE(sameValue(ours[key], value)) << name << "." << key << ": ours " << ours[key] << ", theirs "
                                                 << value;
        ++compared;
    }
    return compared;
}

struct HeapText {
    uint64_t size = 0;
    std::set<std::string> flags;
};
struct TypeText {
    uint32_t heapIndex = 0;
    std::set<std::string> flags;
};

// The memory section of vulkaninfo's text output: heaps with size and flag names, types with heap index and
// flag names ("MEMORY_HEAP_DEVICE_LOCAL_BIT", without the VK_ prefix).
void parseMemory(const std::string& text, std::vector<HeapText>& heaps, std::vector<TypeText>& types) {
    std::istringstream in(text.substr(text.find("VkPhysicalDeviceMemoryProperties:")));
    const std::regex heap(R"(^\s*memoryHeaps\[\d+\]:)"), type(R"(^\s*memoryTypes\[\d+\]:)");
    const std::regex size(R"(^\s*size\s*=\s*(\d+))"), heapIndex(R"(^\s*heapIndex\s*=\s*(\d+))");
    const std::regex flagName(R"(^\s*((MEMORY_HEAP|MEMORY_PROPERTY)_\w+_BIT\w*)\s*$)");
    std::smatch m;
    for (std::string line; std::getline(in, line);) {
        if (line.find("VkPhysicalDeviceFeatures") != std::string::npos) break;
        if (std::regex_search(line, heap)) heaps.emplace_back();
        else if (std::regex_search(line, type)) types.emplace_back();
        else if (std::regex_search(line, m, size) && !heaps.empty()) heaps.back().size = std::stoull(m[1]);
        else if (std::regex_search(line, m, heapIndex) && !types.empty()) types.back().heapIndex = std::stoul(m[1]);
        else if (std::regex_search(line, m, flagName)) {
            if (m[2] == "MEMORY_HEAP" && !heaps.empty()) heaps.back().flags.insert("VK_" + m[1].str());
            if (m[2] == "MEMORY_PROPERTY" && !types.empty()) types.back().flags.insert("VK_" + m[1].str());
        }
    }
}

TEST(VulkanLavapipe, EveryFieldEqualsWhatVulkaninfoReports) {
    ASSERT_TRUE(fs::exists(kVulkanInfo)) << "vulkaninfo is missing: apt-get install vulkan-tools mesa-vulkan-drivers";
    Workspace work;
    const ProgramRun ours = runProgram(LUMENSCOPE_BINARY, work.dir / "ours", {"/exp_json_report"}, work.env());
    ASSERT_EQ(ours.exitCode, 0) << ours.errorText;
    const ProgramRun profile = runProgram(kVulkanInfo, work.dir / "theirs", {"--json"}, work.env());
    ASSERT_EQ(profile.exitCode, 0) << profile.errorText;
    const ProgramRun text = runProgram(kVulkanInfo, work.dir, {}, work.env());
    ASSERT_EQ(text.exitCode, 0) << text.errorText;

    const Json report = readJson(work.dir / "ours" / "report.json");
    ASSERT_FALSE(report.is_discarded());
    fs::path profilePath;
    for (const auto& entry : fs::directory_iterator(work.dir / "theirs"))
        if (entry.path().filename().string().rfind("VP_VULKANINFO_", 0) == 0) profilePath = entry.path();
    ASSERT_FALSE(profilePath.empty()) << "vulkaninfo --json wrote no profile file";
    const Json theirs = readJson(profilePath)["capabilities"]["device"];
    ASSERT_TRUE(theirs.is_object());

    const Json& vulkan = report["vulkan"];
    ASSERT_EQ(vulkan["status"], "read") << vulkan["status_text"];
    const std::string name = theirs["properties"]["VkPhysicalDeviceProperties"]["deviceName"];
    ASSERT_NE(name.find("llvmpipe"), std::string::npos) << "vulkaninfo's first device is not lavapipe: " << name;
    const Json* device = nullptr;
    for (const Json& d : vulkan["devices"])
        if (d["name"] == name) device = &d;
    ASSERT_NE(device, nullptr) << name << " is not among report.json's devices";
    const Json& structures = (*device)["structures"];

    size_t compared = 0;
    const Json& properties = theirs["properties"]["VkPhysicalDeviceProperties"];
    compared += compareStructure("VkPhysicalDeviceProperties", structures["VkPhysicalDeviceProperties"], properties);
    compared += compareStructure("VkPhysicalDeviceLimits", structures["VkPhysicalDeviceLimits"], properties["limits"]);
    EXPECT_EQ(properties["limits"].size(), structures["VkPhysicalDeviceLimits"].size());
    compared += compareStructure("VkPhysicalDeviceSparseProperties", structures["VkPhysicalDeviceSparseProperties"],
                                 properties["sparseProperties"]);
    for (const char* group : {"VkPhysicalDeviceDriverProperties", "VkPhysicalDeviceIDProperties",
                              "VkPhysicalDeviceVulkan11Properties", "VkPhysicalDeviceVulkan12Properties",
                              "VkPhysicalDeviceVulkan13Properties"}) {
        ASSERT_TRUE(theirs["properties"].contains(group)) << group;
        compared += compareStructure(group, structures[group], theirs["properties"][group]);
    }
    for (const char* group : {"VkPhysicalDeviceFeatures", "VkPhysicalDeviceVulkan11Features",
                              "VkPhysicalDeviceVulkan12Features", "VkPhysicalDeviceVulkan13Features"}) {
        ASSERT_TRUE(theirs["features"].contains(group)) << group;
        EXPECT_EQ(theirs["features"][group].size(), structures[group].size()) << group;
        compared += compareStructure(group, structures[group], theirs["features"][group]);
    }

    EXPECT_EQ((*device)["extensions"], theirs["extensions"]);
    compared += theirs["extensions"].size();

    const Json& families = (*device)["queue_families"];
    ASSERT_EQ(families.size(), theirs["queueFamiliesProperties"].size());
    for (size_t i = 0; i < families.size(); ++i)
        compared += compareStructure("VkQueueFamilyProperties", families[i],
                                     theirs["queueFamiliesProperties"][i]["VkQueueFamilyProperties"]);

    const Json& formats = (*device)["formats"];
    EXPECT_EQ(formats.size(), theirs["formats"].size());
    for (const auto& [format, value] : theirs["formats"].items()) {
        EXPECT_TRUE(formats.contains(format)) << format;
        if (formats.contains(format))
            compared += compareStructure(format, formats[format], value["VkFormatProperties"]);
    }

    std::vector<HeapText> heaps;
    std::vector<TypeText> types;
    parseMemory(text.outputText, heaps, types);
    const Json& memory = (*device)["memory"];
    ASSERT_FALSE(heaps.empty()) << "no memory heaps in vulkaninfo's text";
    ASSERT_EQ(memory["memoryHeaps"].size(), heaps.size());
    for (size_t i = 0; i < heaps.size(); ++i) {
        EXPECT_EQ(memory["memoryHeaps"][i]["size"], heaps[i].size) << "heap " << i;
        const Json& flags = memory["memoryHeaps"][i]["flags"];
        EXPECT_EQ(std::set<std::string>(flags.begin(), flags.end()), heaps[i].flags) << "heap " << i;
        compared += 2;
    }
    ASSERT_EQ(memory["memoryTypes"].size(), types.size());
    for (size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(memory["memoryTypes"][i]["heapIndex"], types[i].heapIndex) << "type " << i;
        const Json& flags = memory["memoryTypes"][i]["propertyFlags"];
        EXPECT_EQ(std::set<std::string>(flags.begin(), flags.end()), types[i].flags) << "type " << i;
        compared += 2;
    }
    std::printf("compared %zu values with vulkaninfo\n", compared);
    EXPECT_GT(compared, 106u + 55u);
}

}  // namespace
