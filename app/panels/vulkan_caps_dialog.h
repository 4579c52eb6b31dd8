#pragma once

#include <QDialog>

#include "vulkan/vulkan_records.h"

struct AppState;
class QTreeWidget;

namespace panels {

// "Lumenscope Vulkan Caps List": one device's limits, features, properties, memory, queue families and formats
// as a tree, collapsed at first, in the look of the OpenGL caps dialog. Modeless; closing it only hides it.
class VulkanCapsDialog : public QDialog {
public:
    VulkanCapsDialog(QWidget* parent, const AppState& state, const vulkan::VulkanDeviceRecord& device);

    QTreeWidget* tree() const { return m_tree; }

private:
    QTreeWidget* m_tree = nullptr;
};

}  // namespace panels
