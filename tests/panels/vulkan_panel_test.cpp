// The Vulkan tab over hand-filled records: the instance line, the device picker and each device's fields and
// extensions, the caps dialog's tree of the picked device, and the tab of a machine where Vulkan was not read.
#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>
#include <cstring>
#include <map>
#include <stdexcept>

#include "app/panels/vulkan_caps_dialog.h"
#include "app/panels/vulkan_panel.h"
#include "tests/panels/window_machine.h"
#include "tests/report/vulkan_records_by_hand.h"
#include "vulkan/vulkan_fields.h"

namespace {

constexpr int kInstanceLine = 1401, kPicker = 1402, kName = 1404, kType = 1405, kApi = 1406, kDriver = 1407,
              kDriverVersion = 1408, kConformance = 1409, kIds = 1410, kExtensions = 1412, kMoreCaps = 1413;

QStringList items(const QWidget* panel, int id) {
    QStringList result;
    if (const auto* combo = panels::findControl<QComboBox>(panel, id))
        for (int i = 0; i < combo->count(); ++i) result << combo->itemText(i);
    if (const auto* list = panels::findControl<QListWidget>(panel, id))
        for (int i = 0; i < list->count(); ++i) result << list->item(i)->text();
    return result;
}

// The tree's branches by their text, each with its leaves.
std::map<QString, QStringList> branches(const QTreeWidget* tree) {
    std::map<QString, QStringList> result;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* root = tree->topLevelItem(i);
        QStringList& leaves = result[root->text(0)];
        for (int j = 0; j < root->childCount(); ++j) leaves << root->child(j)->text(0);
    }
    return result;
}

const vulkan::VkFieldGroup& groupNamed(const char* name) {
    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups())
        if (std::string(group.name) == name) return group;
    throw std::runtime_error(name);
}

class VulkanPanelTest : public WindowMachine {};

TEST_F(VulkanPanelTest, EachDeviceShowsItsFieldsExtensionsAndCapsTree) {
    vulkan::VulkanDeviceRecord gpu;
    gpu.properties.apiVersion = VK_MAKE_API_VERSION(0, 1, 3, 275);
    gpu.properties.driverVersion = (535u << 22) | (154u << 14) | (5u << 6);  // NVIDIA's packing: 535.154.5.0
    gpu.properties.vendorID = 0x10DE;
    gpu.properties.deviceID = 0x2204;
    gpu.properties.deviceType = VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU;
    std::strcpy(gpu.properties.deviceName, "NVIDIA GeForce RTX 3090");
    gpu.extensions = {{"VK_KHR_swapchain", 70}};
    gpu.pciBus = VkPhysicalDevicePCIBusInfoPropertiesEXT{};
    gpu.pciBus->pciBus = 1;
    const vulkan::VulkanInfo info = vulkan_by_hand::instanceWith({vulkan_by_hand::softwareDevice(), gpu});
    panels::VulkanPanel panel(nullptr, state, start("amdgpu-rx6800"), info);

    EXPECT_EQ(items(&panel, kInstanceLine), QStringList());  // a label, read below
    EXPECT_EQ(panels::findControl<QLabel>(&panel, kInstanceLine)->text(), "Vulkan instance 1.3.239, 2 device(s)");
    EXPECT_EQ(items(&panel, kPicker),
              QStringList({"1: llvmpipe (LLVM 15.0.6, 256 bits)", "2: NVIDIA GeForce RTX 3090"}));
    EXPECT_EQ(text(&panel, kName), "llvmpipe (LLVM 15.0.6, 256 bits)");
    EXPECT_EQ(text(&panel, kType), "CPU");
    EXPECT_EQ(text(&panel, kApi), "1.3.230");
    EXPECT_EQ(text(&panel, kDriver), "llvmpipe (Mesa 22.3.6 (LLVM 15.0.6))");
    EXPECT_EQ(text(&panel, kDriverVersion), "0.0.1");
    EXPECT_EQ(text(&panel, kConformance), "1.3.1.1");
    EXPECT_EQ(text(&panel, kIds), "vendor 0x10005, device 0x0000");
    EXPECT_EQ(items(&panel, kExtensions), QStringList({"VK_KHR_maintenance1 (2)", "VK_EXT_memory_budget (1)"}));

    // The tree has a leaf per row of each group the device gave, then memory, queues and formats.
    auto* dialog = panel.showCapsDialog();
    ASSERT_NE(dialog, nullptr);
    std::map<QString, QStringList> tree = branches(dialog->tree());
    const vulkan::VkFieldGroup& limits = groupNamed("VkPhysicalDeviceLimits");
    EXPECT_EQ(size_t(tree["VkPhysicalDeviceLimits"].size()), limits.rows.size());
    EXPECT_TRUE(tree["VkPhysicalDeviceLimits"].contains("maxImageDimension2D: 16384"));
    EXPECT_TRUE(tree["VkPhysicalDeviceFeatures"].contains("geometryShader: true"));
    EXPECT_EQ(tree.count("VkPhysicalDeviceVulkan13Features"), 0u) << "a group the device did not give";
    const auto heapMb = vulkan_by_hand::kHeapBytes >> 20;
    EXPECT_EQ(tree["Memory heaps and types (1, 1)"],
              QStringList({QString("heap 0: %1 MB, VK_MEMORY_HEAP_DEVICE_LOCAL_BIT, budget %2 MB")
                               .arg(heapMb)
                               .arg(vulkan_by_hand::kBudgetBytes >> 20),
                           "type 0: heap 0, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT | VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT"}));
    EXPECT_EQ(tree["Queue families (1)"].size(), 1);
    EXPECT_EQ(tree["Formats (2)"].size(), 2);
    EXPECT_FALSE(dialog->tree()->topLevelItem(0)->isExpanded());

    // The other device: its own fields; what it did not give stays empty and greyed; the tree is made anew.
    panels::findControl<QComboBox>(&panel, kPicker)->setCurrentIndex(1);
    EXPECT_EQ(text(&panel, kName), "NVIDIA GeForce RTX 3090");
    EXPECT_EQ(text(&panel, kType), "discrete GPU");
    EXPECT_EQ(text(&panel, kDriverVersion), "535.154.5.0");
    EXPECT_EQ(text(&panel, kIds), "vendor 0x10DE, device 0x2204, PCI 0000:01:00.0");
    for (int id : {kDriver, kConformance}) {
        EXPECT_EQ(text(&panel, id), QString()) << id;
        EXPECT_FALSE(enabled(&panel, id)) << id;
    }
    EXPECT_EQ(items(&panel, kExtensions), QStringList({"VK_KHR_swapchain (70)"}));
    auto* second = panel.showCapsDialog();
    ASSERT_NE(second, nullptr);
    tree = branches(second->tree());
    EXPECT_EQ(tree.count("VkPhysicalDeviceDriverProperties"), 0u);
    EXPECT_EQ(tree.count("Memory heaps and types (0, 0)"), 0u) << "an empty branch is left out";
    EXPECT_TRUE(tree["VkPhysicalDeviceProperties"].contains("deviceName: NVIDIA GeForce RTX 3090"));
}

// The run frees discovery's record at its end; a caps dialog asked for after that opens nothing.
TEST_F(VulkanPanelTest, ARecordEmptiedAfterTheTabWasFilledOpensNoCapsDialog) {
    vulkan::VulkanInfo info = vulkan_by_hand::instanceWith({vulkan_by_hand::softwareDevice()});
    panels::VulkanPanel panel(nullptr, state, start("amdgpu-rx6800"), info);
    EXPECT_EQ(text(&panel, kName), "llvmpipe (LLVM 15.0.6, 256 bits)");
    info = vulkan::VulkanInfo{};
    EXPECT_EQ(panel.showCapsDialog(), nullptr);
}

TEST_F(VulkanPanelTest, WithoutVulkanTheTabSaysWhyAndGreysEverything) {
    vulkan::VulkanInfo info;
    info.status = vulkan::VulkanStatus::SkippedForSleepingGpu;
    info.statusText = "skipped: a sleeping GPU's driver also serves an awake GPU";
    panels::VulkanPanel panel(nullptr, state, start("hybrid-laptop"), info);
    EXPECT_EQ(panels::findControl<QLabel>(&panel, kInstanceLine)->text(), "Vulkan: " + QString::fromStdString(info.statusText));
    EXPECT_FALSE(enabled(&panel, kPicker));
    EXPECT_FALSE(enabled(&panel, kMoreCaps));
    for (int id : {kName, kType, kApi, kDriver, kDriverVersion, kConformance, kIds}) {
        EXPECT_EQ(text(&panel, id), QString()) << id;
        EXPECT_FALSE(enabled(&panel, id)) << id;
    }
    EXPECT_TRUE(items(&panel, kExtensions).isEmpty());
    EXPECT_EQ(panel.showCapsDialog(), nullptr);
}

}  // namespace
