#include "app/panels/vulkan_caps_dialog.h"

#include <QLabel>
#include <QPushButton>

#include "app/app_state.h"
#include "app/panels/caps_tree_widget.h"
#include "app/panels/controls.h"
#include "app/panels/vulkan_caps_tree.h"
#include "base/version.h"

namespace panels {

namespace {

constexpr int kIdOk = 1;

}  // namespace

VulkanCapsDialog::VulkanCapsDialog(QWidget* parent, const AppState& state, const vulkan::VulkanDeviceRecord& device)
    : QDialog(parent) {
    setObjectName(QStringLiteral("id193"));
    setFont(dialogFont());
    setModal(false);
    setWindowTitle(QString::asprintf("%s Vulkan Caps List", lumenscope::kDisplayName));

    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(300, 300));
    ControlBuilder c(this, units, state.fieldTextColour, state.headerTextColour, state.headerBackColour);
    auto* deviceLine = c.label(1420, "", {7, 7, 286, 8});
    deviceLine->setText(QString::fromUtf8(("Vulkan device: " + vulkanDeviceSummary(device).name).c_str()));
    fitLabelText(deviceLine);
    deviceLine->setToolTip(deviceLine->text());

    m_tree = makeCapsTreeWidget(this, 1421, QStringLiteral("Vulkan caps"), units.toPixels({7, 18, 286, 256}),
                                vulkanCapsBranches(device));

    auto* ok = c.button(kIdOk, "OK", {243, 280, 50, 14});
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace panels
