#pragma once

#include <QPointer>

#include "app/panels/panel.h"
#include "vulkan/vulkan_records.h"

class QComboBox;
class QListWidget;

namespace panels {

class VulkanCapsDialog;

// The "Vulkan" tab: the instance version (or why Vulkan was not read), a device picker, the picked device's
// main properties and driver, its extension list and the caps dialog. Filled once, when it is made, from the
// record of Vulkan discovery, which outlives the window.
class VulkanPanel : public Panel {
public:
    VulkanPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library, const vulkan::VulkanInfo& info);

    // Writes the fields and the extension list of one device; out of range does nothing.
    void showDevice(int device);
    // "More caps...": the caps dialog of the picked device, made anew when another device was picked since.
    VulkanCapsDialog* showCapsDialog();

private:
    void _fill();

    const vulkan::VulkanInfo& m_info;
    QComboBox* m_devices = nullptr;
    QListWidget* m_extensions = nullptr;
    int m_shownDevice = -1;
    QPointer<VulkanCapsDialog> m_capsDialog;
    int m_capsDialogDevice = -1;
};

}  // namespace panels
