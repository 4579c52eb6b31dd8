#include "app/panels/opencl_panel.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <cstdio>
#include <iterator>
#include <string>

#include "app/app_state.h"
#include "app/message_boxes.h"
#include "compute/opencl_device_fields.h"
#include "compute/opencl_discovery.h"
#include "app/panels/opencl_info_dialog.h"
#include "app/panels/web_links.h"

namespace panels {

namespace {

// One number of a panel field: a field row of the OpenCL table, one dimension of it, shifted.
struct ClPart {
    cl_device_info query = 0;
    unsigned shift = 0;
    size_t dimension = 0;
};

// A panel field shows its row's text when `format` is null, else its parts' numbers through `format`.
struct ClPanelField {
    int field;
    const char* caption;
    const char* format;
    ClPart parts[3];
    DuRect labelPlace;
    DuRect fieldPlace;
};

// Two columns, the left one wide enough for sizes in three dimensions; versions take a whole row.
constexpr int kLeftLabel = 14, kLeftField = 62, kRightLabel = 146, kRightField = 202;
constexpr int kLabelWidth = 46, kRightLabelWidth = 54, kLeftWidth = 82, kRightWidth = 34, kFullWidth = 174;
constexpr int kFirstRow = 64, kRowStep = 13;
constexpr DuRect leftLabel(int row) { return {kLeftLabel, kFirstRow + row * kRowStep + 2, kLabelWidth, 8}; }
constexpr DuRect leftField(int row) { return {kLeftField, kFirstRow + row * kRowStep, kLeftWidth, 12}; }
constexpr DuRect fullField(int row) { return {kLeftField, kFirstRow + row * kRowStep, kFullWidth, 12}; }
constexpr DuRect rightLabel(int row) { return {kRightLabel, kFirstRow + row * kRowStep + 2, kRightLabelWidth, 8}; }
constexpr DuRect rightField(int row) { return {kRightField, kFirstRow + row * kRowStep, kRightWidth, 12}; }

constexpr int kTypeField = 1199;

constexpr ClPanelField kFields[] = {
    {kTypeField, "Type", nullptr, {{CL_DEVICE_TYPE}}, leftLabel(0), leftField(0)},
    {1209, "Compute Units", "%llu", {{CL_DEVICE_MAX_COMPUTE_UNITS}}, rightLabel(0), rightField(0)},
    {1211, "Clock", "%lluMHz", {{CL_DEVICE_MAX_CLOCK_FREQUENCY}}, leftLabel(1), leftField(1)},
    {1217, "Max Samplers", "%llu", {{CL_DEVICE_MAX_SAMPLERS}}, rightLabel(1), rightField(1)},
    {1205, "Ver.", nullptr, {{CL_DEVICE_VERSION}}, leftLabel(2), fullField(2)},
    {1207, "Driver", nullptr, {{CL_DRIVER_VERSION}}, leftLabel(3), fullField(3)},
    {1215, "Global Mem.", "%lluMB (Cache: %lluKB)", {{CL_DEVICE_GLOBAL_MEM_SIZE, 20}, {CL_DEVICE_GLOBAL_MEM_CACHE_SIZE, 10}},
     leftLabel(4), fullField(4)},
    {1219, "Local Mem.", "%lluKB", {{CL_DEVICE_LOCAL_MEM_SIZE, 10}}, leftLabel(5), leftField(5)},
    {1221, "Constant buffer", "%lluKB", {{CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE, 10}}, rightLabel(5), rightField(5)},
    {1201, "2D image size", "%llu x %llu", {{CL_DEVICE_IMAGE2D_MAX_WIDTH}, {CL_DEVICE_IMAGE2D_MAX_HEIGHT}},
     leftLabel(6), leftField(6)},
    {1192, "OpenCL extensions", nullptr, {{CL_DEVICE_EXTENSIONS}}, rightLabel(6), rightField(6)},
    {1223, "3D image size", "%llu x %llu x %llu",
     {{CL_DEVICE_IMAGE3D_MAX_WIDTH}, {CL_DEVICE_IMAGE3D_MAX_HEIGHT}, {CL_DEVICE_IMAGE3D_MAX_DEPTH}}, leftLabel(7),
     leftField(7)},
    {1190, "Work group size", "%llu", {{CL_DEVICE_MAX_WORK_GROUP_SIZE}}, rightLabel(7), rightField(7)},
    {1197, "Work Item Sizes", "%llu x %llu x %llu",
     {{CL_DEVICE_MAX_WORK_ITEM_SIZES, 0, 0}, {CL_DEVICE_MAX_WORK_ITEM_SIZES, 0, 1}, {CL_DEVICE_MAX_WORK_ITEM_SIZES, 0, 2}},
     leftLabel(8), leftField(8)},
};
static_assert(std::size(kFields) == 14);

constexpr const char* kOurOpenClPage = "/redirect.php?id=24";
constexpr const char* kStandardOpenClPage = "https://www.khronos.org/opencl/?from=lumenscope";

constexpr uint64_t kCpuTypeBit = 2, kGpuTypeBit = 4;

unsigned long long partNumber(const ClPart& part, const compute::ClDeviceRecord& device) {
    const compute::ClDeviceField* row = compute::findClDeviceField(part.query);
    return row ? (compute::clFieldNumber(*row, device, part.dimension) >> part.shift) : 0;
}

// The text of a field; the type field reads only the two bits it names, and is left alone by others.
bool fieldValue(const ClPanelField& field, const compute::ClDeviceRecord& device, std::string& value) {
    if (field.field == kTypeField) {
        if (device.type & kCpuTypeBit)
            value = "CPU";
        else if (device.type & kGpuTypeBit)
            value = "GPU";
        else
            return false;
        return true;
    }
    if (!field.format) {
        const compute::ClDeviceField* row = compute::findClDeviceField(field.parts[0].query);
        value = row ? compute::clFieldText(*row, device) : std::string();
        return true;
    }
    char text[128];
    std::snprintf(text, sizeof text, field.format, partNumber(field.parts[0], device), partNumber(field.parts[1], device),
                  partNumber(field.parts[2], device));
    value = text;
    return true;
}

QString fromRecord(const std::string& text) { return QString::fromUtf8(text.c_str()); }

void fillDemoCombo(QComboBox* combo, uint32_t count) {
    if (count == 0) {
        combo->setEnabled(false);  // keeps the lines of the platform shown before
        return;
    }
    const QSignalBlocker quiet(combo);
    combo->setEnabled(true);
    combo->clear();
    for (uint32_t ordinal = 0; ordinal < count; ++ordinal) combo->addItem(QString::asprintf("dev %u", ordinal), int(ordinal));
    combo->setCurrentIndex(0);
}

}  // namespace

OpenCLPanel::OpenCLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {
    ControlBuilder& c = controls();
    c.valueLine(1186, {7, 7, 94, 9});
    m_platforms = c.dropDownList(1183, {103, 5, 139, 12}, 80);
    m_platforms->setAccessibleName(QStringLiteral("OpenCL platforms"));
    c.field(1188, c.label(0, "Version/Profile", {7, 23, 54, 8}), {63, 21, 179, 12});
    c.groupBox(1193, "  Devices  ", {7, 37, 235, 148});
    c.valueLine(1195, {14, 50, 88, 9});
    m_devices = c.dropDownList(1194, {104, 48, 132, 12}, 80);
    m_devices->setAccessibleName(QStringLiteral("OpenCL devices"));
    for (const ClPanelField& f : kFields) c.field(f.field, c.label(0, f.caption, f.labelPlace), f.fieldPlace);
    auto* moreInformation = c.button(1144, "More OpenCL information...", {7, 189, 110, 13});

    c.groupBox(1249, "OpenCL demos - Device index selection for the current platform", {7, 205, 235, 30});
    auto* gpuLabel = c.label(0, "GPU", {14, 220, 18, 8});
    m_gpuDemoDevices = c.dropDownList(1237, {34, 218, 60, 12}, 60);
    auto* cpuLabel = c.label(0, "CPU", {110, 220, 18, 8});
    m_cpuDemoDevices = c.dropDownList(1238, {130, 218, 60, 12}, 60);
    for (auto [label, combo] : {std::pair{gpuLabel, m_gpuDemoDevices}, std::pair{cpuLabel, m_cpuDemoDevices}}) {
        combo->setAccessibleName(label->text() + QStringLiteral(" demo device"));
        label->setBuddy(combo);
    }
    auto* ourPage = c.button(1142, "OpenCL @ Orbiscale", {7, 239, 100, 13});
    auto* standardPage = c.button(1143, "OpenCL @ Khronos", {142, 239, 100, 13});

    connect(m_platforms, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (row < 0) return;
        const int platform = m_platforms->itemData(row).toInt();
        m_state.clPlatformIndex = uint32_t(platform);
        showPlatform(platform);
        _fillDemoDeviceCombos(platform);
    });
    connect(m_devices, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (row >= 0) showDevice(m_platforms->currentData().toInt(), m_devices->itemData(row).toInt());
    });
    // Only a pick by the user ends the device index the command line forced, not a refill.
    for (QComboBox* combo : {m_gpuDemoDevices, m_cpuDemoDevices})
        connect(combo, &QComboBox::activated, this, [this] { m_state.demo.clDeviceIndexForced = false; });
    connect(moreInformation, &QPushButton::clicked, this, [this] { openDetailDialog(); });
    connect(ourPage, &QPushButton::clicked, this, [] { openUrl((std::string(kWebHost) + kOurOpenClPage).c_str()); });
    connect(standardPage, &QPushButton::clicked, this, [] { openUrl(kStandardOpenClPage); });
    _fill();
}

void OpenCLPanel::_fill() {
    const auto& platforms = compute::clPlatforms();
    if (auto* line = findControl<QLabel>(this, 1186))
        line->setText(QString::asprintf("Number of CL platforms: %d", int(platforms.size())));
    if (platforms.empty()) {
        m_platforms->setEnabled(false);
        setControlEnabled(this, 1188, false);
        _setDeviceGroupEnabled(false);
        return;
    }
    {
        const QSignalBlocker quiet(m_platforms);
        m_platforms->clear();
        for (size_t i = 0; i < platforms.size(); ++i)
            m_platforms->addItem(QString::asprintf("%d: %s", int(i) + 1, platforms[i].name.c_str()), int(i));
        m_platforms->setCurrentIndex(0);
    }
    m_state.clPlatformIndex = 0;
    showPlatform(0);
    _fillDemoDeviceCombos(0);
}

void OpenCLPanel::_setDeviceGroupEnabled(bool enabled) {
    for (int id : {1193, 1195, 1194, 1144}) setControlEnabled(this, id, enabled);
    for (const ClPanelField& f : kFields) setControlEnabled(this, f.field, enabled);
}

void OpenCLPanel::showPlatform(int platform) {
    const compute::ClPlatformRecord* record = compute::clPlatform(uint32_t(platform));
    if (platform < 0 || !record) return;
    setFieldText(this, 1188, QString::asprintf("%s %s", record->version.c_str(), record->profile.c_str()));
    if (auto* line = findControl<QLabel>(this, 1195))
        line->setText(QString::asprintf("Number of CL devices: %d", int(record->devices.size())));
    const QSignalBlocker quiet(m_devices);
    m_devices->clear();
    for (size_t i = 0; i < record->devices.size(); ++i)
        m_devices->addItem(QString::asprintf("%d: %s", int(i) + 1, record->devices[i].name.c_str()), int(i));
    m_devices->setCurrentIndex(record->devices.empty() ? -1 : 0);
    showDevice(platform, 0);
}

void OpenCLPanel::showDevice(int platform, int device) {
    const compute::ClPlatformRecord* record = platform >= 0 ? compute::clPlatform(uint32_t(platform)) : nullptr;
    if (!record || device < 0 || size_t(device) >= record->devices.size()) return;
    m_state.clShownPlatform = uint32_t(platform);
    m_state.clShownDevice = uint32_t(device);
    const compute::ClDeviceRecord& shown = record->devices[size_t(device)];
    for (const ClPanelField& f : kFields) {
        std::string value;
        if (fieldValue(f, shown, value)) setFieldText(this, f.field, fromRecord(value));
    }
}

void OpenCLPanel::_fillDemoDeviceCombos(int platform) {
    fillDemoCombo(m_gpuDemoDevices, compute::countGpuDevices(uint32_t(platform)));
    fillDemoCombo(m_cpuDemoDevices, compute::countCpuDevices(uint32_t(platform)));
}

ClDemoDeviceChoice OpenCLPanel::demoDeviceChoice() const {
    const auto ordinal = [](const QComboBox* combo) { return combo->currentIndex() < 0 ? -1 : combo->currentData().toInt(); };
    return {ordinal(m_gpuDemoDevices), ordinal(m_cpuDemoDevices)};
}

void OpenCLPanel::openDetailDialog() {
    OpenClInfoDialog dialog(this, m_state);
    dialog.exec();
}

}  // namespace panels
