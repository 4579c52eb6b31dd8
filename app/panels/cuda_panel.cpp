#include "app/panels/cuda_panel.h"

#include <QComboBox>
#include <QPushButton>
#include <iterator>
#include <string>

#include "app/message_boxes.h"
#include "compute/cuda_device_fields.h"
#include "compute/cuda_discovery.h"
#include "app/panels/web_links.h"

namespace panels {

namespace {

using compute::CudaSource;

// A field shows the line of one row of the CUDA field table (with the rows that continue that line) in the
// panel's own unit.
struct CudaPanelField {
    int field;
    const char* caption;
    CudaSource source;
    compute::CUdevice_attribute attribute;
    const char* unit;
    DuRect labelPlace;
    DuRect fieldPlace;
};

constexpr int kLeftLabel = 14, kLeftField = 78, kRightLabel = 128, kRightField = 192;
constexpr int kLabelWidth = 62, kHalfField = 44, kFullField = 158;

constexpr CudaPanelField kFields[] = {
    {1157, "Name", CudaSource::Name, {}, "", {kLeftLabel, 50, kLabelWidth, 8}, {kLeftField, 48, kFullField, 12}},
    {1155, "Compute Capability", CudaSource::Attribute, compute::kCuAttributeComputeCapabilityMajor, "",
     {kLeftLabel, 64, kLabelWidth, 8}, {kLeftField, 62, kHalfField, 12}},
    {1161, "Shader Clock", CudaSource::Attribute, compute::kCuAttributeClockRate, " MHz",
     {kRightLabel, 64, kLabelWidth, 8}, {kRightField, 62, kHalfField, 12}},
    {1163, "MultiProcessors", CudaSource::Attribute, compute::kCuAttributeMultiprocessorCount, "",
     {kLeftLabel, 78, kLabelWidth, 8}, {kLeftField, 76, kHalfField, 12}},
    {1165, "Warp Size", CudaSource::Attribute, compute::kCuAttributeWarpSize, "", {kRightLabel, 78, kLabelWidth, 8},
     {kRightField, 76, kHalfField, 12}},
    {1167, "Thread / Block", CudaSource::Attribute, compute::kCuAttributeMaxThreadsPerBlock, "",
     {kLeftLabel, 92, kLabelWidth, 8}, {kLeftField, 90, kHalfField, 12}},
    {1175, "Registers / Block", CudaSource::Attribute, compute::kCuAttributeMaxRegistersPerBlock, "",
     {kRightLabel, 92, kLabelWidth, 8}, {kRightField, 90, kHalfField, 12}},
    {1171, "Grid Size", CudaSource::Attribute, compute::kCuAttributeMaxGridDimX, "", {kLeftLabel, 106, kLabelWidth, 8},
     {kLeftField, 104, kFullField, 12}},
    {1169, "Block Dim", CudaSource::Attribute, compute::kCuAttributeMaxBlockDimX, "", {kLeftLabel, 120, kLabelWidth, 8},
     {kLeftField, 118, kFullField, 12}},
    {1159, "Total Memory", CudaSource::TotalMemory, {}, " MB", {kLeftLabel, 156, kLabelWidth, 8},
     {kLeftField, 154, kHalfField, 12}},
    {1173, "Shared Mem / Block", CudaSource::Attribute, compute::kCuAttributeMaxSharedMemoryPerBlock, " KB",
     {kRightLabel, 156, kLabelWidth, 8}, {kRightField, 154, kHalfField, 12}},
    {1180, "Total Constant", CudaSource::Attribute, compute::kCuAttributeTotalConstantMemory, " KB",
     {kLeftLabel, 170, kLabelWidth, 8}, {kLeftField, 168, kHalfField, 12}},
    {1177, "Tex. Alignment", CudaSource::Attribute, compute::kCuAttributeTextureAlignment, " Bytes",
     {kRightLabel, 170, kLabelWidth, 8}, {kRightField, 168, kHalfField, 12}},
};
static_assert(std::size(kFields) == 13);

constexpr const char* kOurCudaPage = "/redirect.php?id=23";
constexpr const char* kVendorCudaPage = "https://www.nvidia.com/object/cuda_home.html?from=lumenscope";

// The value of one panel field: its row's text, the rows that continue its line behind their joins, then
// the panel's unit. Empty when no row of the table holds the value.
std::string fieldValue(const CudaPanelField& field, const compute::CudaDeviceRecord& device) {
    const auto rows = compute::cudaDeviceFields();
    for (size_t i = 0; i < rows.size(); ++i) {
        const compute::CudaDeviceField& row = rows[i];
        if (row.source != field.source || (row.source == CudaSource::Attribute && row.attribute != field.attribute))
            continue;
        std::string value = compute::cudaFieldText(row, device);
        for (size_t next = i + 1; next < rows.size() && rows[next].continuesLine(); ++next)
            value += rows[next].join + compute::cudaFieldText(rows[next], device);
        return value + field.unit;
    }
    return {};
}

}  // namespace

CudaPanel::CudaPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {
    ControlBuilder& c = controls();
    c.valueLine(1178, {7, 5, 170, 9});
    m_devices = c.dropDownList(1153, {7, 17, 235, 12}, 80);
    m_devices->setAccessibleName(QStringLiteral("CUDA devices"));
    c.groupBox(1181, "  Core data  ", {7, 36, 235, 98});
    c.groupBox(1182, "  Memory data  ", {7, 142, 235, 42});
    for (const CudaPanelField& f : kFields) c.field(f.field, c.label(0, f.caption, f.labelPlace), f.fieldPlace);
    auto* ourPage = c.button(1142, "CUDA @ Orbiscale", {7, 192, 100, 14});
    auto* vendorPage = c.button(1143, "CUDA @ NVIDIA", {142, 192, 100, 14});

    connect(m_devices, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (row >= 0) showDevice(m_devices->itemData(row).toInt());
    });
    connect(ourPage, &QPushButton::clicked, this, [] { openUrl((std::string(kWebHost) + kOurCudaPage).c_str()); });
    connect(vendorPage, &QPushButton::clicked, this, [] { openUrl(kVendorCudaPage); });
    _fill();
}

void CudaPanel::_fill() {
    const int count = compute::getCudaDeviceCount();
    const auto& devices = compute::cudaDevices();
    if (auto* line = findControl<QLabel>(this, 1178)) line->setText(QString::asprintf("Number of CUDA devices: %d", count));
    const QSignalBlocker quiet(m_devices);
    m_devices->clear();
    if (count <= 0 || devices.empty()) {
        m_devices->setEnabled(false);
        for (const CudaPanelField& f : kFields) blankField(this, f.field);
        return;
    }
    for (size_t i = 0; i < devices.size(); ++i)
        m_devices->addItem(QString::asprintf("%d: %s", int(i) + 1, devices[i].name.c_str()), int(i));
    m_devices->setCurrentIndex(0);
    showDevice(0);
}

void CudaPanel::showDevice(int device) {
    const auto& devices = compute::cudaDevices();
    if (device < 0 || size_t(device) >= devices.size()) return;
    for (const CudaPanelField& f : kFields)
        setFieldText(this, f.field, QString::fromUtf8(fieldValue(f, devices[size_t(device)]).c_str()));
}

}  // namespace panels
