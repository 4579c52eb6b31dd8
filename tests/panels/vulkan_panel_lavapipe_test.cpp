// The Vulkan tab over the system's Vulkan loader and Mesa's software device, lavapipe (Debian's
// mesa-vulkan-drivers): its name in the picker and the fields, and a caps tree with a leaf for every limit.
#include <QComboBox>
#include <QTreeWidget>

#include "app/panels/vulkan_caps_dialog.h"
#include "app/panels/vulkan_panel.h"
#include "tests/panels/window_machine.h"
#include "vulkan/vulkan_discovery.h"
#include "vulkan/vulkan_fields.h"

namespace {

class VulkanPanelOnLavapipe : public WindowMachine {
protected:
    void TearDown() override {
        vulkan::freeVulkanInfo();
        WindowMachine::TearDown();
    }
};

TEST_F(VulkanPanelOnLavapipe, ShowsTheDeviceNameAndATreeLeafForEveryLimit) {
    vulkan::discoverVulkan(Kalidornm::MachineSnapshot{});  // no GPU of this machine needs keeping asleep
    const vulkan::VulkanInfo& info = vulkan::vulkanInfo();
    ASSERT_EQ(info.status, vulkan::VulkanStatus::Read) << info.statusText << " (libvulkan1 is needed)";
    int lavapipe = -1;
    for (size_t i = 0; i < info.devices.size() && lavapipe < 0; ++i)
        if (std::string(info.devices[i].properties.deviceName).find("llvmpipe") == 0) lavapipe = int(i);
    ASSERT_GE(lavapipe, 0) << "no llvmpipe device: lavapipe (mesa-vulkan-drivers) is needed";
    const vulkan::VulkanDeviceRecord& device = info.devices[size_t(lavapipe)];
    const QString name = QString::fromUtf8(device.properties.deviceName);

    panels::VulkanPanel panel(nullptr, state, start("amdgpu-rx6800"), info);
    auto* picker = panels::findControl<QComboBox>(&panel, 1402);
    ASSERT_NE(picker, nullptr);
    EXPECT_EQ(picker->itemText(lavapipe), QString::number(lavapipe + 1) + ": " + name);
    picker->setCurrentIndex(lavapipe);
    EXPECT_EQ(text(&panel, 1404), name);
    EXPECT_EQ(text(&panel, 1405), "CPU");

    panels::VulkanCapsDialog* dialog = panel.showCapsDialog();
    ASSERT_NE(dialog, nullptr);
    const QTreeWidgetItem* limitsBranch = nullptr;
    for (int i = 0; i < dialog->tree()->topLevelItemCount(); ++i)
        if (dialog->tree()->topLevelItem(i)->text(0) == "VkPhysicalDeviceLimits") limitsBranch = dialog->tree()->topLevelItem(i);
    ASSERT_NE(limitsBranch, nullptr);
    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups()) {
        if (std::string(group.name) != "VkPhysicalDeviceLimits") continue;
        ASSERT_EQ(size_t(limitsBranch->childCount()), group.rows.size());
        const void* limits = group.locate(device);
        for (size_t row = 0; row < group.rows.size(); ++row)
            EXPECT_EQ(limitsBranch->child(int(row))->text(0).toStdString(),
                      std::string(group.rows[row].name) + ": " + vulkan::vkFieldText(group.rows[row], limits));
    }
}

}  // namespace
