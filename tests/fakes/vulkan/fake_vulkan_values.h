#pragma once

#include <cstdint>

// What the fake Vulkan loader answers, shared by the fake and the tests that read it back.
namespace fake_vulkan {

// The machine: unset for the normal one, or one of the modes below; a name the fake does not know is the
// normal machine.
constexpr const char* kScenarioVariable = "LUMENSCOPE_FAKE_VULKAN";
// Where the fake appends one line per vkCreateInstance: "vkCreateInstance <drivers> layers <layers>", the
// driver and layer filters the loader would read then ("-" when unset).
constexpr const char* kCallLogVariable = "FAKE_VULKAN_CALL_LOG";

namespace mode {
constexpr const char* kNoDevices = "no_devices";
constexpr const char* kInstanceFails = "instance_fails";  // no driver: VK_ERROR_INCOMPATIBLE_DRIVER
constexpr const char* kHugeCounts = "huge_counts";        // every count INT_MAX; a full buffer is VK_INCOMPLETE
constexpr const char* kIncomplete = "incomplete";         // every filled list VK_INCOMPLETE, growing each time
constexpr const char* kMissingEntryPoints = "missing_entry_points";  // only the core properties and features
constexpr const char* kNoCreateInstance = "no_create_instance";      // a loader without vkCreateInstance
constexpr const char* kUnterminated = "unterminated";  // every name fills its array without a terminator
constexpr const char* kErrors = "errors";              // every enumeration fails
constexpr const char* kMemoryCounts = "memory_counts";  // heap and type counts beyond the arrays
}  // namespace mode

constexpr uint32_t kLoaderVersion = (1u << 22) | (3u << 12) | 250u;  // 1.3.250
// The normal machine: a discrete 1.3 GPU with every structure, then a 1.0 GPU with the core ones only.
constexpr const char* kModernName = "Fake Radeon RX 7600";
constexpr const char* kOldName = "Fake Old GPU";
constexpr uint32_t kModernApiVersion = (1u << 22) | (3u << 12) | 246u;
constexpr uint32_t kOldApiVersion = (1u << 22) | 0u;
constexpr uint32_t kModernDriverVersion = (23u << 22) | (2u << 12) | 1u;  // Mesa 23.2.1
constexpr uint32_t kModernVendorId = 0x1002, kModernDeviceId = 0x7480;
constexpr const char* kDriverName = "radv";
constexpr const char* kDriverInfo = "Mesa 23.2.1";
constexpr uint32_t kPciDomain = 0, kPciBus = 3, kPciDevice = 0, kPciFunction = 0;
constexpr uint32_t kMaxImageDimension2D = 16384;
constexpr float kPointSizeGranularity = 0.125f;
constexpr uint64_t kHeapSizes[] = {8ull << 30, 16ull << 30};
constexpr uint64_t kHeapBudgets[] = {7ull << 30, 12ull << 30};
constexpr uint64_t kHeapUsages[] = {1ull << 28, 1ull << 20};
constexpr uint32_t kMemoryTypeCount = 3;
constexpr uint32_t kQueueFamilyCount = 2;
constexpr uint32_t kExtensionCount = 3;  // the modern device's; the old one has none
constexpr uint32_t kInstanceExtensionCount = 2;
constexpr uint32_t kLayerCount = 1;
// Formats the fake supports: every core format below this value.
constexpr int kSupportedFormatsBelow = 10;

}  // namespace fake_vulkan
