// A stand-in for the Vulkan loader, libvulkan.so.1: two physical devices, a modern one with every structure
// and a 1.0 one. LUMENSCOPE_FAKE_VULKAN turns it into another machine or a broken loader
// (fake_vulkan_values.h lists the modes). Only vkGetInstanceProcAddr is exported, as callers are meant to use.
#define VK_NO_PROTOTYPES
#include <vulkan/vulkan_core.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/fakes/vulkan/fake_vulkan_values.h"

namespace {

using namespace fake_vulkan;

bool isMode(const char* name) {
    const char* value = std::getenv(kScenarioVariable);
    return value && std::strcmp(value, name) == 0;
}

struct FakeInstance {
    int unused = 0;
} gInstance;
struct FakeDevice {
    bool modern;
};
FakeDevice gDevices[2] = {{true}, {false}};

const FakeDevice& deviceOf(VkPhysicalDevice handle) { return *reinterpret_cast<const FakeDevice*>(handle); }

// A name into a driver's array: cut with a terminator normally, filling every byte in the unterminated mode.
template <size_t N>
void putName(char (&out)[N], const std::string& name) {
    if (isMode(mode::kUnterminated)) {
        std::memset(out, 'U', N);
        return;
    }
    std::snprintf(out, N, "%s", name.c_str());
}

// The two-call enumeration as a loader does it, with the modes' faults: `fill(i, item)` writes item i.
template <typename T, typename Fill>
VkResult enumerate(uint32_t available, uint32_t* count, T* items, Fill fill) {
    static uint32_t growth = 0;
    if (isMode(mode::kErrors)) {
        *count = 7;
        return VK_ERROR_INITIALIZATION_FAILED;
    }
    if (isMode(mode::kHugeCounts)) available = INT_MAX;
    if (isMode(mode::kIncomplete)) available += ++growth;
    if (!items) {
        *count = available;
        return VK_SUCCESS;
    }
    const uint32_t written = *count < available ? *count : available;
    for (uint32_t i = 0; i < written; ++i) fill(i, items[i]);
    *count = written;
    return written < available ? VK_INCOMPLETE : VK_SUCCESS;
}

VKAPI_ATTR VkResult VKAPI_CALL enumerateInstanceVersion(uint32_t* version) {
    if (isMode(mode::kErrors)) return VK_ERROR_OUT_OF_HOST_MEMORY;
    *version = kLoaderVersion;
    return VK_SUCCESS;
}

VKAPI_ATTR VkResult VKAPI_CALL enumerateInstanceExtensionProperties(const char*, uint32_t* count,
                                                                    VkExtensionProperties* items) {
    return enumerate(kInstanceExtensionCount, count, items, [](uint32_t i, VkExtensionProperties& e) {
        auto& [name, revision] = e;
        putName(name, i == 0 ? "VK_KHR_surface" : "VK_FAKE_instance_" + std::to_string(i));
        revision = 25 + i;
    });
}

VKAPI_ATTR VkResult VKAPI_CALL enumerateInstanceLayerProperties(uint32_t* count, VkLayerProperties* items) {
    return enumerate(kLayerCount, count, items, [](uint32_t i, VkLayerProperties& l) {
        auto& [name, apiVersion, implementation, description] = l;
        putName(name, "VK_LAYER_FAKE_" + std::to_string(i));
        putName(description, "A fake layer");
        apiVersion = kModernApiVersion;
        implementation = 1;
    });
}

void logCreateInstance() {
    const char* path = std::getenv(kCallLogVariable);
    if (!path) return;
    if (FILE* log = std::fopen(path, "a")) {
        const char* filter = std::getenv("VK_LOADER_DRIVERS_DISABLE");
        const char* layers = std::getenv("VK_LOADER_LAYERS_DISABLE");
        std::fprintf(log, "vkCreateInstance %s layers %s\n", filter ? filter : "-", layers ? layers : "-");
        std::fclose(log);
    }
}

VKAPI_ATTR VkResult VKAPI_CALL createInstance(const VkInstanceCreateInfo*, const VkAllocationCallbacks*,
                                              VkInstance* instance) {
    logCreateInstance();
    if (isMode(mode::kInstanceFails)) return VK_ERROR_INCOMPATIBLE_DRIVER;
    *instance = reinterpret_cast<VkInstance>(&gInstance);
    return VK_SUCCESS;
}

VKAPI_ATTR void VKAPI_CALL destroyInstance(VkInstance, const VkAllocationCallbacks*) {}

VKAPI_ATTR VkResult VKAPI_CALL enumeratePhysicalDevices(VkInstance, uint32_t* count, VkPhysicalDevice* items) {
    const uint32_t available = isMode(mode::kNoDevices) ? 0 : 2;
    return enumerate(available, count, items, [](uint32_t i, VkPhysicalDevice& d) {
        d = reinterpret_cast<VkPhysicalDevice>(&gDevices[i % 2]);
    });
}

VKAPI_ATTR void VKAPI_CALL getProperties(VkPhysicalDevice handle, VkPhysicalDeviceProperties* p) {
    const bool modern = deviceOf(handle).modern;
    *p = VkPhysicalDeviceProperties{};
    p->apiVersion = modern ? kModernApiVersion : kOldApiVersion;
    p->driverVersion = modern ? kModernDriverVersion : 1;
    p->vendorID = modern ? kModernVendorId : 0x1234;
    p->deviceID = modern ? kModernDeviceId : 0x5678;
    p->deviceType = modern ? VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU : VK_PHYSICAL_DEVICE_TYPE_OTHER;
    putName(p->deviceName, modern ? kModernName : kOldName);
    for (uint32_t i = 0; i < VK_UUID_SIZE; ++i) p->pipelineCacheUUID[i] = uint8_t(i * 17);
    p->limits.maxImageDimension2D = kMaxImageDimension2D;
    p->limits.pointSizeGranularity = kPointSizeGranularity;
    p->limits.framebufferColorSampleCounts = VK_SAMPLE_COUNT_1_BIT | VK_SAMPLE_COUNT_4_BIT;
    p->sparseProperties.residencyStandard2DBlockShape = VK_TRUE;
}

VKAPI_ATTR void VKAPI_CALL getProperties2(VkPhysicalDevice handle, VkPhysicalDeviceProperties2* p) {
    getProperties(handle, &p->properties);
    for (auto* s = static_cast<VkBaseOutStructure*>(p->pNext); s; s = s->pNext) {
        switch (s->sType) {
            case VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_DRIVER_PROPERTIES: {
                auto* d = reinterpret_cast<VkPhysicalDeviceDriverProperties*>(s);
                d->driverID = VK_DRIVER_ID_MESA_RADV;
                putName(d->driverName, kDriverName);
                putName(d->driverInfo, kDriverInfo);
                d->conformanceVersion = {1, 3, 5, 0};
                break;
            }
            case VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PCI_BUS_INFO_PROPERTIES_EXT: {
                auto* b = reinterpret_cast<VkPhysicalDevicePCIBusInfoPropertiesEXT*>(s);
                b->pciDomain = kPciDomain, b->pciBus = kPciBus, b->pciDevice = kPciDevice;
                b->pciFunction = kPciFunction;
                break;
            }
            case VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_PROPERTIES: {
                auto* v = reinterpret_cast<VkPhysicalDeviceVulkan12Properties*>(s);
                v->driverID = VK_DRIVER_ID_MESA_RADV;
                putName(v->driverName, kDriverName);
                putName(v->driverInfo, kDriverInfo);
                v->supportedDepthResolveModes = VK_RESOLVE_MODE_SAMPLE_ZERO_BIT | VK_RESOLVE_MODE_MAX_BIT;
                break;
            }
            case VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_PROPERTIES:
                reinterpret_cast<VkPhysicalDeviceVulkan13Properties*>(s)->maxInlineUniformBlockSize = 4096;
                break;
            default: break;
        }
    }
}

VKAPI_ATTR void VKAPI_CALL getFeatures(VkPhysicalDevice, VkPhysicalDeviceFeatures* f) {
    *f = VkPhysicalDeviceFeatures{};
    f->geometryShader = VK_TRUE;
    f->samplerAnisotropy = VK_TRUE;
}

VKAPI_ATTR void VKAPI_CALL getFeatures2(VkPhysicalDevice handle, VkPhysicalDeviceFeatures2* f) {
    getFeatures(handle, &f->features);
    for (auto* s = static_cast<VkBaseOutStructure*>(f->pNext); s; s = s->pNext)
        if (s->sType == VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES)
            reinterpret_cast<VkPhysicalDeviceVulkan13Features*>(s)->dynamicRendering = VK_TRUE;
}

VKAPI_ATTR VkResult VKAPI_CALL enumerateDeviceExtensionProperties(VkPhysicalDevice handle, const char*,
                                                                  uint32_t* count, VkExtensionProperties* items) {
    const uint32_t available = deviceOf(handle).modern ? kExtensionCount : 0;
    return enumerate(available, count, items, [](uint32_t i, VkExtensionProperties& e) {
        static const char* const names[] = {VK_EXT_PCI_BUS_INFO_EXTENSION_NAME, VK_EXT_MEMORY_BUDGET_EXTENSION_NAME,
                                            VK_KHR_SWAPCHAIN_EXTENSION_NAME};
        auto& [name, revision] = e;
        putName(name, i < 3 ? names[i] : "VK_FAKE_extension_" + std::to_string(i));
        revision = 1 + i;
    });
}

VKAPI_ATTR void VKAPI_CALL getMemoryProperties(VkPhysicalDevice, VkPhysicalDeviceMemoryProperties* m) {
    *m = VkPhysicalDeviceMemoryProperties{};
    m->memoryHeapCount = 2;
    m->memoryHeaps[0] = {kHeapSizes[0], VK_MEMORY_HEAP_DEVICE_LOCAL_BIT};
    m->memoryHeaps[1] = {kHeapSizes[1], 0};
    m->memoryTypeCount = kMemoryTypeCount;
    m->memoryTypes[0] = {VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT, 0};
    m->memoryTypes[1] = {VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT, 1};
    m->memoryTypes[2] = {VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT | VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT, 0};
    if (isMode(mode::kMemoryCounts)) m->memoryHeapCount = m->memoryTypeCount = 1000;
}

VKAPI_ATTR void VKAPI_CALL getMemoryProperties2(VkPhysicalDevice handle, VkPhysicalDeviceMemoryProperties2* m) {
    getMemoryProperties(handle, &m->memoryProperties);
    for (auto* s = static_cast<VkBaseOutStructure*>(m->pNext); s; s = s->pNext)
        if (s->sType == VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_MEMORY_BUDGET_PROPERTIES_EXT) {
            auto* b = reinterpret_cast<VkPhysicalDeviceMemoryBudgetPropertiesEXT*>(s);
            for (int i = 0; i < 2; ++i) b->heapBudget[i] = kHeapBudgets[i], b->heapUsage[i] = kHeapUsages[i];
        }
}

VKAPI_ATTR void VKAPI_CALL getQueueFamilyProperties(VkPhysicalDevice, uint32_t* count,
                                                    VkQueueFamilyProperties* items) {
    if (isMode(mode::kErrors)) {
        *count = 0;  // this call has no result to fail with
        return;
    }
    enumerate(kQueueFamilyCount, count, items, [](uint32_t i, VkQueueFamilyProperties& q) {
        q.queueFlags = i == 0 ? VK_QUEUE_GRAPHICS_BIT | VK_QUEUE_COMPUTE_BIT | VK_QUEUE_TRANSFER_BIT
                              : VK_QUEUE_TRANSFER_BIT;
        q.queueCount = i == 0 ? 1 : 2;
        q.timestampValidBits = 64;
        q.minImageTransferGranularity = {1, 1, 1};
    });
}

VKAPI_ATTR void VKAPI_CALL getFormatProperties(VkPhysicalDevice, VkFormat format, VkFormatProperties* p) {
    *p = VkFormatProperties{};
    if (format < kSupportedFormatsBelow) {
        p->optimalTilingFeatures = VK_FORMAT_FEATURE_SAMPLED_IMAGE_BIT | VK_FORMAT_FEATURE_TRANSFER_DST_BIT;
        p->bufferFeatures = VK_FORMAT_FEATURE_VERTEX_BUFFER_BIT;
    }
}

struct EntryPoint {
    const char* name;
    PFN_vkVoidFunction function;
    bool leftOutWhenMissing;  // absent in the missing-entry-points mode
};

#define FAKE_ENTRY(name, function, beyond) {name, reinterpret_cast<PFN_vkVoidFunction>(function), beyond}
const EntryPoint kEntryPoints[] = {
    FAKE_ENTRY("vkEnumerateInstanceVersion", enumerateInstanceVersion, false),
    FAKE_ENTRY("vkEnumerateInstanceExtensionProperties", enumerateInstanceExtensionProperties, false),
    FAKE_ENTRY("vkEnumerateInstanceLayerProperties", enumerateInstanceLayerProperties, false),
    FAKE_ENTRY("vkCreateInstance", createInstance, false),
    FAKE_ENTRY("vkDestroyInstance", destroyInstance, false),
    FAKE_ENTRY("vkEnumeratePhysicalDevices", enumeratePhysicalDevices, false),
    FAKE_ENTRY("vkGetPhysicalDeviceProperties", getProperties, false),
    FAKE_ENTRY("vkGetPhysicalDeviceProperties2", getProperties2, true),
    FAKE_ENTRY("vkGetPhysicalDeviceFeatures", getFeatures, false),
    FAKE_ENTRY("vkGetPhysicalDeviceFeatures2", getFeatures2, true),
    FAKE_ENTRY("vkEnumerateDeviceExtensionProperties", enumerateDeviceExtensionProperties, true),
    FAKE_ENTRY("vkGetPhysicalDeviceMemoryProperties", getMemoryProperties, true),
    FAKE_ENTRY("vkGetPhysicalDeviceMemoryProperties2", getMemoryProperties2, true),
    FAKE_ENTRY("vkGetPhysicalDeviceQueueFamilyProperties", getQueueFamilyProperties, true),
    FAKE_ENTRY("vkGetPhysicalDeviceFormatProperties", getFormatProperties, true),
};
#undef FAKE_ENTRY

}  // namespace

extern "C" __attribute__((visibility("default"))) PFN_vkVoidFunction vkGetInstanceProcAddr(VkInstance,
                                                                                          const char* name) {
    if (!name) return nullptr;
    if (isMode(mode::kNoCreateInstance) && std::strcmp(name, "vkCreateInstance") == 0) return nullptr;
    for (const EntryPoint& e : kEntryPoints) {
        if (std::strcmp(e.name, name) != 0) continue;
        if (e.leftOutWhenMissing && isMode(mode::kMissingEntryPoints)) return nullptr;
        return e.function;
    }
    return nullptr;
}
