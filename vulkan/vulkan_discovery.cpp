#include "vulkan/vulkan_discovery.h"

#include <cstdlib>
#include <cstring>

#include "base/text_format.h"
#include "vulkan/vulkan_device_reader.h"
#include "vulkan/vulkan_enumerate.h"
#include "vulkan/vulkan_sleep_filter.h"
#include "vulkan/vulkan_texts.h"

namespace vulkan {
namespace {

// The newest version whose structures discovery knows; the instance asks for no more.
constexpr uint32_t kNewestKnownVersion = VK_API_VERSION_1_3;

VulkanInfo& state() {
    static VulkanInfo info;
    return info;
}

std::string joined(const std::vector<std::string>& names) {
    std::string out;
    for (const std::string& name : names) out += (out.empty() ? "" : ", ") + name;
    return out;
}

// A loader setting (a list of names) with ours added, for this process; restore() puts the user's own back.
class LoaderSetting {
public:
    LoaderSetting(const char* variable, const std::string& ours) : m_variable(variable) {
        if (ours.empty()) return;
        if (const char* existing = std::getenv(variable)) m_previous = existing;
        m_set = true;
        ::setenv(variable, combinedFilter(m_previous ? m_previous->c_str() : nullptr, ours).c_str(), 1);
    }
    void restore() {
        if (!m_set) return;
        if (m_previous)
            ::setenv(m_variable, m_previous->c_str(), 1);
        else
            ::unsetenv(m_variable);
        m_set = false;
    }

private:
    const char* m_variable;
    std::optional<std::string> m_previous;
    bool m_set = false;
};

// The instance is made without the implicit layers (the device selection layer, overlays and capture layers
// other programs install): discovery reads what the drivers say, and those layers cost time or worse. They
// are still listed, because the setting is made only around vkCreateInstance.
constexpr const char* kLayerFilterVariable = "VK_LOADER_LAYERS_DISABLE";
constexpr const char* kImplicitLayers = "~implicit~";

VulkanInfo stopped(VulkanInfo info, VulkanStatus status, std::string text, base::LogSink& log) {
    info.status = status;
    info.statusText = std::move(text);
    base::logTo(log, "Vulkan: %s", info.statusText.c_str());
    return info;
}

std::vector<VulkanExtension> instanceExtensions(const VulkanGlobalCalls& g, std::vector<std::string>& problems) {
    std::vector<VulkanExtension> out;
    const auto extensions = enumerateCapped<VkExtensionProperties>(
        [&](uint32_t* count, VkExtensionProperties* items) {
            return g.enumerateInstanceExtensionProperties(nullptr, count, items);
        },
        kMaxVulkanExtensions, "vkEnumerateInstanceExtensionProperties", problems,
        kInstanceExtensionsFirstRoom);
    for (const VkExtensionProperties& extension : extensions) {
        const auto& [name, revision] = extension;
        out.push_back({std::string(name, strnlen(name, sizeof name)), revision});
    }
    return out;
}

std::vector<VulkanLayer> instanceLayers(const VulkanGlobalCalls& g, std::vector<std::string>& problems) {
    std::vector<VulkanLayer> out;
    const auto layers = enumerateCapped<VkLayerProperties>(
        [&](uint32_t* count, VkLayerProperties* items) { return g.enumerateInstanceLayerProperties(count, items); },
        kMaxVulkanLayers, "vkEnumerateInstanceLayerProperties", problems, kInstanceLayersFirstRoom);
    for (const VkLayerProperties& layer : layers) {
        const auto& [name, apiVersion, implementation, description] = layer;
        out.push_back({std::string(name, strnlen(name, sizeof name)),
                       std::string(description, strnlen(description, sizeof description)), apiVersion,
                       implementation});
    }
    return out;
}

// The calls a missing one of which is worth a line: the *2 forms only where the instance has them.
void noteMissing(const std::vector<std::string>& missing, uint32_t apiVersion, std::vector<std::string>& problems) {
    for (const std::string& name : missing) {
        if (apiVersion < VK_API_VERSION_1_1 && name.back() == '2') continue;
        problems.push_back(name + ": not offered by the loader");
    }
}

void logDevices(const VulkanInfo& info, base::LogSink& log) {
    base::logTo(log, "Found %d Vulkan device(s).", int(info.devices.size()));
    for (size_t i = 0; i < info.devices.size(); ++i) {
        const VulkanDeviceRecord& d = info.devices[i];
        const std::string driver =
            d.driver ? base::formatText(", driver %s %s", d.driver->driverName, d.driver->driverInfo) : "";
        base::logTo(log, "- Vulkan device %d: %s, Vulkan %s%s", int(i), d.properties.deviceName,
                    vkVersionText(d.properties.apiVersion).c_str(), driver.c_str());
    }
    for (const std::string& problem : info.problems) base::logTo(log, "- Vulkan: %s", problem.c_str());
}

VulkanInfo discover(const Kalidornm::MachineSnapshot& machine, base::LogSink& log, const char* loaderName) {
    VulkanInfo info;
    const DriverFilterDecision decision = decideDriverFilter(machine);
    if (decision.skipReason)
        return stopped(std::move(info), VulkanStatus::SkippedForSleepingGpu,
                       "discovery skipped: " + *decision.skipReason + ".", log);
    LoaderSetting filter(kDriverFilterVariable, decision.disable());

    const VulkanLoader loader(loaderName);
    if (!loader.isLoaded()) {
        filter.restore();
        return stopped(std::move(info), VulkanStatus::NoLoader,
                       loader.hasLibrary()
                           ? base::formatText("%s has no vkGetInstanceProcAddr.", loaderName)
                           : base::formatText("could not find %s.", loaderName),
                       log);
    }
    if (!loader.missingGlobals().empty()) {
        filter.restore();
        return stopped(std::move(info), VulkanStatus::NoLoader,
                       "the loader lacks " + joined(loader.missingGlobals()) + ".", log);
    }
    const VulkanGlobalCalls& g = loader.global();
    uint32_t loaderVersion = VK_API_VERSION_1_0;
    if (g.enumerateInstanceVersion) {
        const VkResult result = g.enumerateInstanceVersion(&loaderVersion);
        if (result != VK_SUCCESS) {
            info.problems.push_back("vkEnumerateInstanceVersion: " + vkResultText(result));
            loaderVersion = VK_API_VERSION_1_0;
        }
    }
    info.instanceVersion = loaderVersion;
    if (!decision.sleeping.empty()) {
        if (loaderVersion < kDriverFilterLoaderVersion) {
            filter.restore();
            return stopped(std::move(info), VulkanStatus::SkippedForSleepingGpu,
                           base::formatText("discovery skipped: a GPU sleeps and the loader (%s) is older "
                                            "than its driver filter (%s).",
                                            vkVersionText(loaderVersion).c_str(),
                                            vkVersionText(kDriverFilterLoaderVersion).c_str()),
                           log);
        }
        base::logTo(log, "Vulkan: drivers of sleeping GPUs left out: %s", decision.sleeping.c_str());
    }
    if (!decision.absent.empty())
        base::logTo(log, "Vulkan: drivers of vendors without a GPU here left out: %s", decision.absent.c_str());

    info.instanceExtensions = instanceExtensions(g, info.problems);
    info.layers = instanceLayers(g, info.problems);

    const uint32_t apiVersion = std::min(VK_MAKE_API_VERSION(0, VK_API_VERSION_MAJOR(loaderVersion),
                                                             VK_API_VERSION_MINOR(loaderVersion), 0),
                                         kNewestKnownVersion);
    auto application = vkStructure<VkApplicationInfo>(VK_STRUCTURE_TYPE_APPLICATION_INFO);
    application.pApplicationName = "Lumenscope";
    application.apiVersion = apiVersion;
    auto create = vkStructure<VkInstanceCreateInfo>(VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO);
    create.pApplicationInfo = &application;
    VkInstance handle = VK_NULL_HANDLE;
    LoaderSetting withoutImplicitLayers(kLayerFilterVariable, kImplicitLayers);
    const VkResult created = g.createInstance(&create, nullptr, &handle);
    withoutImplicitLayers.restore();
    if (created != VK_SUCCESS || handle == VK_NULL_HANDLE)
        return stopped(std::move(info), VulkanStatus::InstanceFailed,
                       "no instance (" + vkResultText(created) + "): no driver could be used.", log);

    std::vector<std::string> missingCalls;
    const VulkanInstanceCalls calls = loader.instanceCalls(handle, missingCalls);
    VulkanInstance instance(handle, calls.destroyInstance);
    noteMissing(missingCalls, apiVersion, info.problems);
    info.status = VulkanStatus::Read;
    if (calls.enumeratePhysicalDevices) {
        const auto devices = enumerateCapped<VkPhysicalDevice>(
            [&](uint32_t* count, VkPhysicalDevice* items) {
                return calls.enumeratePhysicalDevices(handle, count, items);
            },
            kMaxVulkanDevices, "vkEnumeratePhysicalDevices", info.problems);
        for (VkPhysicalDevice device : devices) info.devices.push_back(readVulkanDevice(calls, device, apiVersion));
    }
    logDevices(info, log);
    return info;
}

}  // namespace

void discoverVulkan(const Kalidornm::MachineSnapshot& machine, base::LogSink& log, const char* loaderName) {
    state() = discover(machine, log, loaderName);
}

const VulkanInfo& vulkanInfo() { return state(); }

void freeVulkanInfo() { state() = VulkanInfo{}; }

}  // namespace vulkan
