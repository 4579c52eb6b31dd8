#include "app/panels/vulkan_panel.h"

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <iterator>

#include "app/panels/vulkan_caps_dialog.h"
#include "app/panels/vulkan_caps_tree.h"
#include "vulkan/vulkan_names.h"
#include "vulkan/vulkan_texts.h"

namespace panels {

namespace {

// A field of the device box and the summary text it shows.
struct VulkanPanelField {
    int field;
    const char* caption;
    std::string VulkanDeviceSummary::*text;
    DuRect labelPlace;
    DuRect fieldPlace;
};

constexpr int kLeftLabel = 14, kLeftField = 64, kRightLabel = 128, kRightField = 180;
constexpr int kLabelWidth = 48, kHalfField = 58, kRightHalfField = 56, kFullField = 172;

constexpr VulkanPanelField kFields[] = {
    {1404, "Name", &VulkanDeviceSummary::name, {kLeftLabel, 46, kLabelWidth, 8}, {kLeftField, 44, kFullField, 12}},
    {1405, "Type", &VulkanDeviceSummary::type, {kLeftLabel, 60, kLabelWidth, 8}, {kLeftField, 58, kHalfField, 12}},
    {1406, "API version", &VulkanDeviceSummary::apiVersion, {kRightLabel, 60, kLabelWidth, 8},
     {kRightField, 58, kRightHalfField, 12}},
    {1407, "Driver", &VulkanDeviceSummary::driver, {kLeftLabel, 74, kLabelWidth, 8}, {kLeftField, 72, kFullField, 12}},
    {1408, "Driver version", &VulkanDeviceSummary::driverVersion, {kLeftLabel, 88, kLabelWidth, 8},
     {kLeftField, 86, kHalfField, 12}},
    {1409, "Conformance", &VulkanDeviceSummary::conformance, {kRightLabel, 88, kLabelWidth, 8},
     {kRightField, 86, kRightHalfField, 12}},
    {1410, "IDs", &VulkanDeviceSummary::ids, {kLeftLabel, 102, kLabelWidth, 8}, {kLeftField, 100, kFullField, 12}},
};
static_assert(std::size(kFields) == 7);

constexpr int kInstanceLine = 1401, kDevicePicker = 1402, kExtensionBox = 1411, kExtensionList = 1412,
              kMoreCaps = 1413;

}  // namespace

VulkanPanel::VulkanPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library,
                         const vulkan::VulkanInfo& info)
    : Panel(parent, state, library), m_info(info) {
    ControlBuilder& c = controls();
    c.valueLine(kInstanceLine, {7, 5, 235, 9});
    m_devices = c.dropDownList(kDevicePicker, {7, 17, 235, 12}, 80);
    m_devices->setAccessibleName(QStringLiteral("Vulkan devices"));
    c.groupBox(1403, "  Vulkan device  ", {7, 34, 235, 84});
    for (const VulkanPanelField& f : kFields) c.field(f.field, c.label(0, f.caption, f.labelPlace), f.fieldPlace);
    c.groupBox(kExtensionBox, "  Device extensions  ", {7, 122, 235, 108});

    m_extensions = new QListWidget(this);
    m_extensions->setObjectName(controlName(kExtensionList));
    m_extensions->setAccessibleName(QStringLiteral("Vulkan device extensions"));
    m_extensions->setGeometry(c.units().toPixels({14, 134, 222, 90}));
    m_extensions->setUniformItemSizes(true);
    m_extensions->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    auto* moreCaps = c.button(kMoreCaps, "More caps...", {7, 236, 80, 14});

    connect(m_devices, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (row >= 0) showDevice(m_devices->itemData(row).toInt());
    });
    connect(moreCaps, &QPushButton::clicked, this, [this] { showCapsDialog(); });
    _fill();
}

void VulkanPanel::_fill() {
    auto* line = findControl<QLabel>(this, kInstanceLine);
    if (m_info.status == vulkan::VulkanStatus::Read && m_info.instanceVersion)
        line->setText(QString::asprintf("Vulkan instance %s, %d device(s)",
                                        vulkan::vkVersionText(*m_info.instanceVersion).c_str(),
                                        int(m_info.devices.size())));
    else
        line->setText(QString::fromUtf8(("Vulkan: " + vulkan::vkStatusLine(m_info)).c_str()));
    line->setToolTip(line->text());

    const QSignalBlocker quiet(m_devices);
    m_devices->clear();
    if (m_info.devices.empty()) {
        m_devices->setEnabled(false);
        for (const VulkanPanelField& f : kFields) blankField(this, f.field);
        setControlEnabled(this, kMoreCaps, false);
        return;
    }
    for (size_t i = 0; i < m_info.devices.size(); ++i)
        m_devices->addItem(QString::fromUtf8(
                               (std::to_string(i + 1) + ": " + vulkanDeviceSummary(m_info.devices[i]).name).c_str()),
                           int(i));
    m_devices->setCurrentIndex(0);
    showDevice(0);
}

void VulkanPanel::showDevice(int device) {
    if (device < 0 || size_t(device) >= m_info.devices.size()) return;
    const vulkan::VulkanDeviceRecord& record = m_info.devices[size_t(device)];
    const VulkanDeviceSummary summary = vulkanDeviceSummary(record);
    for (const VulkanPanelField& f : kFields) {
        const std::string& text = summary.*f.text;
        setFieldText(this, f.field, QString::fromUtf8(text.c_str()));
        setFieldEnabled(this, f.field, !text.empty());
    }
    m_extensions->clear();
    QStringList lines;
    for (const vulkan::VulkanExtension& e : record.extensions)
        lines << QString::asprintf("%s (%u)", e.name.c_str(), e.version);
    m_extensions->addItems(lines);
    if (auto* box = findControl<CaptionBox>(this, kExtensionBox))
        box->setCaption(QString::asprintf("  Device extensions: %d  ", int(record.extensions.size())));
    m_shownDevice = device;
}

VulkanCapsDialog* VulkanPanel::showCapsDialog() {
    // The record may have been emptied since the tab was filled (the run frees it at its end).
    if (m_shownDevice < 0 || size_t(m_shownDevice) >= m_info.devices.size()) return nullptr;
    if (m_capsDialog && m_capsDialogDevice != m_shownDevice) m_capsDialog->deleteLater();
    if (!m_capsDialog || m_capsDialogDevice != m_shownDevice) {
        m_capsDialog = new VulkanCapsDialog(this, m_state, m_info.devices[size_t(m_shownDevice)]);
        m_capsDialogDevice = m_shownDevice;
    }
    m_capsDialog->show();
    m_capsDialog->raise();
    m_capsDialog->activateWindow();
    return m_capsDialog;
}

}  // namespace panels
