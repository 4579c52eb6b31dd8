#include <gtest/gtest.h>

#include <cstring>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "vulkan/vulkan_fields.h"
#include "vulkan/vulkan_names.h"

// The field rows reach the right member of each structure and print it as its type asks.
namespace {

using namespace vulkan;

const VkFieldRow& rowOf(const char* group, const char* name) {
    for (const VkFieldGroup& g : vkFieldGroups())
        if (std::strcmp(g.name, group) == 0)
            for (const VkFieldRow& row : g.rows)
                if (std::strcmp(row.name, name) == 0) return row;
    ADD_FAILURE() << group << "." << name << " has no row";
    static const VkFieldRow none{"", 0, VkFieldType::Uint32};
    return none;
}

// Each row's offset and size stay inside its structure, no two rows of a group share a member, and every
// group but the properties' own is found where its record keeps it.
TEST(VulkanFieldRows, EveryRowLiesInsideItsStructureAndEveryGroupIsFound) {
    VulkanDeviceRecord device;
    device.driver.emplace();
    device.ids.emplace();
    device.pciBus.emplace();
    device.features11.emplace();
    device.features12.emplace();
    device.features13.emplace();
    device.properties11.emplace();
    device.properties12.emplace();
    device.properties13.emplace();
    size_t rows = 0;
    for (const VkFieldGroup& group : vkFieldGroups()) {
        ASSERT_NE(group.locate(device), nullptr) << group.name;
        std::set<size_t> offsets;
        for (const VkFieldRow& row : group.rows) {
            EXPECT_TRUE(offsets.insert(row.offset).second) << group.name << "." << row.name;
            ++rows;
        }
    }
    EXPECT_EQ(rowOf("VkPhysicalDeviceLimits", "maxComputeWorkGroupSize").count, 3);
    EXPECT_EQ(rowOf("VkPhysicalDeviceProperties", "deviceName").count, VK_MAX_PHYSICAL_DEVICE_NAME_SIZE);
    EXPECT_GT(rows, 106u + 55u);
    // An empty record has only the core structures.
    const VulkanDeviceRecord bare;
    size_t present = 0;
    for (const VkFieldGroup& group : vkFieldGroups()) present += group.locate(bare) != nullptr;
    EXPECT_EQ(present, 4u);  // properties, limits, sparse properties, features
}

TEST(VulkanFieldRows, ValuesPrintAsTheirTypesAsk) {
    VkPhysicalDeviceProperties p{};
    p.apiVersion = VK_MAKE_API_VERSION(0, 1, 3, 246);
    p.deviceType = VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU;
    for (uint32_t i = 0; i < VK_UUID_SIZE; ++i) p.pipelineCacheUUID[i] = uint8_t(0xA0 + i);
    std::memset(p.deviceName, 'N', sizeof p.deviceName);  // no terminator at all
    p.limits.maxComputeWorkGroupSize[0] = 1024, p.limits.maxComputeWorkGroupSize[1] = 512;
    p.limits.maxComputeWorkGroupSize[2] = 64;
    p.limits.viewportBoundsRange[0] = -32768.0f, p.limits.viewportBoundsRange[1] = 32767.5f;
    p.limits.lineWidthGranularity = 0.0078125f;
    p.limits.minTexelOffset = -8;
    p.limits.bufferImageGranularity = 1ull << 40;
    p.limits.storageImageSampleCounts = VK_SAMPLE_COUNT_1_BIT | VK_SAMPLE_COUNT_8_BIT | 0x1000;
    p.sparseProperties.residencyAlignedMipSize = VK_TRUE;

    auto text = [&](const char* group, const char* name, const void* s) { return vkFieldText(rowOf(group, name), s); };
    auto json = [&](const char* group, const char* name, const void* s) {
        return nlohmann::json::parse(vkFieldJson(rowOf(group, name), s));
    };
    const char* P = "VkPhysicalDeviceProperties";
    const char* L = "VkPhysicalDeviceLimits";
    EXPECT_EQ(text(P, "apiVersion", &p), "1.3.246");
    EXPECT_EQ(json(P, "apiVersion", &p), p.apiVersion);
    EXPECT_EQ(text(P, "deviceType", &p), "VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU");
    EXPECT_EQ(text(P, "pipelineCacheUUID", &p), "a0a1a2a3-a4a5-a6a7-a8a9-aaabacadaeaf");
    EXPECT_EQ(json(P, "pipelineCacheUUID", &p)[15], 0xAF);
    EXPECT_EQ(text(P, "deviceName", &p), std::string(VK_MAX_PHYSICAL_DEVICE_NAME_SIZE, 'N'));
    EXPECT_EQ(json(P, "deviceName", &p), std::string(VK_MAX_PHYSICAL_DEVICE_NAME_SIZE, 'N'));
    EXPECT_EQ(text(L, "maxComputeWorkGroupSize", &p.limits), "1024, 512, 64");
    EXPECT_EQ(json(L, "maxComputeWorkGroupSize", &p.limits), nlohmann::json({1024, 512, 64}));
    EXPECT_EQ(text(L, "viewportBoundsRange", &p.limits), "-32768, 32767.5");
    EXPECT_EQ(text(L, "lineWidthGranularity", &p.limits), "0.0078125");
    EXPECT_EQ(text(L, "minTexelOffset", &p.limits), "-8");
    EXPECT_EQ(text(L, "bufferImageGranularity", &p.limits), std::to_string(1ull << 40));
    EXPECT_EQ(text(L, "storageImageSampleCounts", &p.limits),
              "VK_SAMPLE_COUNT_1_BIT | VK_SAMPLE_COUNT_8_BIT | 0x1000");
    EXPECT_EQ(json(L, "storageImageSampleCounts", &p.limits),
              nlohmann::json({"VK_SAMPLE_COUNT_1_BIT", "VK_SAMPLE_COUNT_8_BIT", 0x1000}));
    EXPECT_EQ(text("VkPhysicalDeviceSparseProperties", "residencyAlignedMipSize", &p.sparseProperties), "true");
    EXPECT_EQ(json("VkPhysicalDeviceSparseProperties", "residencyStandard3DBlockShape", &p.sparseProperties),
              false);

    VkPhysicalDeviceDriverProperties d{};
    d.driverID = VkDriverId(9999);  // newer than the tables
    std::strcpy(d.driverInfo, "quote \" and\ttab");
    d.conformanceVersion = {1, 3, 5, 2};
    const char* D = "VkPhysicalDeviceDriverProperties";
    EXPECT_EQ(text(D, "driverID", &d), "9999");
    EXPECT_EQ(json(D, "driverInfo", &d), "quote \" and\ttab");
    EXPECT_EQ(text(D, "conformanceVersion", &d), "1.3.5.2");
    EXPECT_EQ(json(D, "conformanceVersion", &d), nlohmann::json({{"major", 1}, {"minor", 3}, {"subminor", 5},
                                                                 {"patch", 2}}));
    EXPECT_EQ(vkFlagsText(VkNameTable::Queue, 0), "0");
    EXPECT_EQ(vkResultText(VK_ERROR_DEVICE_LOST), "VK_ERROR_DEVICE_LOST");
    EXPECT_EQ(vkResultText(VkResult(-424242)), "VkResult -424242");
}

// NVIDIA packs 10.8.8.6 bits, Intel's Windows driver 18.14, everyone else the API's 7.10.12 bits; the driver
// id decides where there is one, NVIDIA's vendor id otherwise.
TEST(VulkanFieldRows, DriverVersionsAreDecodedTheWayEachVendorPacksThem) {
    VulkanDeviceRecord d;
    const uint32_t nvidia = (535u << 22) | (113u << 14) | (1u << 6) | 2u;
    d.properties.driverVersion = nvidia;
    d.properties.vendorID = 0x10DE;
    EXPECT_EQ(vkDriverVersionText(d), "535.113.1.2");
    d.driver.emplace();
    d.driver->driverID = VK_DRIVER_ID_MESA_NVK;  // the open driver on NVIDIA hardware packs the API's way
    EXPECT_EQ(vkDriverVersionText(d), "23.452.66");  // 535 & 0x7F, the 10 bits below, the low 12
    d.driver->driverID = VK_DRIVER_ID_INTEL_PROPRIETARY_WINDOWS;
    d.properties.driverVersion = (100u << 14) | 9466u;
    EXPECT_EQ(vkDriverVersionText(d), "100.9466");
    d.driver->driverID = VK_DRIVER_ID_MESA_RADV;
    d.properties.driverVersion = VK_MAKE_API_VERSION(0, 23, 2, 1);
    EXPECT_EQ(vkDriverVersionText(d), "23.2.1");
}

}  // namespace
