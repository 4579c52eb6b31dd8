#include "app/panels/gpu_panel.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <cstring>
#include <iterator>

#include "app/app_state.h"
#include "app/panels/board_names.h"
#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "kalidor/kalidor.h"
#include "app/panels/machine_summary.h"

namespace panels {

namespace {

struct FieldPlace {
    int field;
    int label;  // 0: the label has no number
    const char* caption;
    DuRect labelPlace;
    DuRect fieldPlace;
};

// Left block beside the logo, then full-width rows: identity, live values, machine summary.
constexpr FieldPlace kGpuPanelFields[] = {
    {1005, 0, "GPU", {6, 20, 46, 8}, {54, 18, 124, 12}},
    {1006, 1275, "BIOS", {6, 33, 46, 8}, {54, 31, 124, 12}},
    {1008, 0, "Device ID", {6, 46, 46, 8}, {54, 44, 50, 12}},
    {1036, 1255, "TDP", {110, 46, 22, 8}, {134, 44, 44, 12}},
    {1009, 0, "Subdevice ID", {6, 59, 46, 8}, {54, 57, 124, 12}},
    {1007, 1276, "Config", {6, 78, 46, 8}, {54, 76, 188, 12}},
    {1004, 1274, "VRAM", {6, 91, 46, 8}, {54, 89, 188, 12}},
    {1003, 1273, "Driver", {6, 104, 46, 8}, {54, 102, 188, 12}},
    {1015, 1265, "GPU temp", {6, 119, 46, 8}, {54, 117, 72, 12}},
    {1012, 1135, "Fan speed", {132, 119, 38, 8}, {172, 117, 70, 12}},
    {1013, 1231, "GPU load", {6, 132, 46, 8}, {54, 130, 72, 12}},
    {1129, 1257, "VDDC", {132, 132, 38, 8}, {172, 130, 70, 12}},
    {1137, 1228, "Current clock", {6, 145, 46, 8}, {54, 143, 188, 12}},
    {1140, 1234, "Max clock", {6, 158, 46, 8}, {54, 156, 188, 12}},
    {1014, 1232, "GPU power", {6, 171, 46, 8}, {54, 169, 188, 12}},
    {1035, 1253, "OpenGL", {6, 186, 46, 8}, {54, 184, 188, 12}},
    {1038, 1252, "OpenCL", {6, 199, 46, 8}, {54, 197, 188, 12}},
    {1040, 1254, "CUDA", {6, 212, 46, 8}, {54, 210, 188, 12}},
    {1041, 1269, "PhysX", {6, 225, 46, 8}, {54, 223, 188, 12}},
    {1042, 1270, "Multi-GPU", {6, 238, 46, 8}, {54, 236, 188, 12}},
};
static_assert(std::size(kGpuPanelFields) == 20);

constexpr DuRect kGpuListPlace{6, 4, 172, 12};
constexpr DuRect kLogoPlace{182, 3, 60, 56};
constexpr DuRect kMoreInfoPlace{182, 61, 60, 12};

// The companion tool's start script, looked for in the working directory.
constexpr const char* kCompanionScript = "ferritewatch.sh";

QString text(const char* value) { return value ? QString::fromUtf8(value) : QString(); }

const char* orEmpty(const char* value) { return value ? value : ""; }


// The snapshot's texts, as the panel's formats take them: null where the library found none.
const char* present(const std::optional<std::string>& value) { return value ? value->c_str() : nullptr; }

QString text(const std::optional<std::string>& value) { return text(present(value)); }

PciIds gpuIds(const Kalidornm::GpuSnapshot& gpu) {
    return {gpu.vendorId, gpu.deviceId, gpu.subvendorId, gpu.subdeviceId};
}

QString boardVendorText(uint32_t subvendor, uint32_t subdevice) {
    char buffer[64];
    formatBoardVendor(subvendor, subdevice, buffer, sizeof buffer);
    return QString::fromLatin1(buffer);
}

void showSummaryLine(QWidget* panel, int id, const SummaryLine& line) {
    setFieldText(panel, id, QString::fromUtf8(line.text.c_str()));
    setControlEnabled(panel, id, line.enabled);
}

QString openGlSummary(const Kalidornm::OpenGlFacts& gl) {
    return QString::asprintf("OpenGL %d.%d (%s with %d ext.)", gl.majorVersion, gl.minorVersion,
                             gl.renderer.c_str(), int(gl.extensionCount));
}

}  // namespace

GpuPanel::GpuPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {
    ControlBuilder& c = controls();
    m_gpuList = c.dropDownList(1268, kGpuListPlace, 100);
    m_gpuList->setAccessibleName(QStringLiteral("GPU list"));
    for (const FieldPlace& place : kGpuPanelFields)
        c.field(place.field, c.label(place.label, place.caption, place.labelPlace), place.fieldPlace);
    m_logo = c.label(1271, "", kLogoPlace);
    m_logo->setAlignment(Qt::AlignCenter);
    auto* moreInfo = c.button(1142, "More GPU info...", kMoreInfoPlace);

    connect(m_gpuList, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (row < 0) return;
        m_state.selectedGpu = m_gpuList->itemData(row).toInt();
        selectGpu(m_state.selectedGpu);
    });
    connect(moreInfo, &QPushButton::clicked, this, [this] { _startCompanionTool(); });
}

void GpuPanel::initGpuPanel() {
    if (m_state.noDriverState) return;
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    if (!machine.hasDisplayDevice) {
        _enterNoDriverState();
        return;
    }
    const QSignalBlocker quiet(m_gpuList);
    m_gpuList->clear();
    if (m_state.gpuCount == 0) {
        _showPrimarySummary();
        return;
    }
    for (uint32_t gpu = 0; gpu < m_state.gpuCount && gpu < machine.gpus.size(); ++gpu) {
        const Kalidornm::GpuSnapshot& g = machine.gpus[gpu];
        const int n = int(gpu) + 1;
        const char* boardName = retailBoardName(gpuIds(g));
        QString row;
        if (boardName)
            row = QString::asprintf("GPU %d: %s", n, boardName);
        else if (!g.displayDeviceString.empty())
            row = QString::asprintf("GPU %d: %s", n, g.displayDeviceString.c_str());
        else if (g.name)
            row = QString::asprintf("GPU %d: %s", n, g.name->c_str());
        else
            row = QString::asprintf("GPU %d", n);
        m_gpuList->addItem(row, int(gpu));
    }
    m_gpuList->setCurrentIndex(0);
    m_state.selectedGpu = 0;
    selectGpu(0);
}

void GpuPanel::_enterNoDriverState() {
    _blankLiveFields();
    const char* noDriver = "No graphics driver detected!";
    setFieldText(this, 1003, QString::fromLatin1(noDriver));
    std::snprintf(m_state.driverDisplayText, sizeof m_state.driverDisplayText, "%s", noDriver);
    for (int id : {1008, 1005, 1004, 1006, 1038, 1040, 1015}) setFieldText(this, id, QString());
    const Kalidornm::OpenGlFacts& gl = m_library.snapshot().gl;
    setFieldText(this, 1035, QString::asprintf("Core: %d.%d", gl.majorVersion, gl.minorVersion));
    m_state.temperatureRefreshEnabled = false;
    m_state.noDriverState = true;
    _showVendorLogo();
}

void GpuPanel::_showPrimarySummary() {
    _blankLiveFields();
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    const Kalidornm::PrimaryDeviceFacts& primary = machine.primary;
    if (const char* name = present(primary.gpuName)) {
        m_gpuList->addItem(QString::asprintf("GPU 1: %s", name), 0);
        m_gpuList->setCurrentIndex(0);
    }
    auto textOrBlank = [this](int id, const QString& value) {
        if (value.isEmpty())
            blankField(this, id);
        else {
            setFieldText(this, id, value);
            setControlEnabled(this, id, true);
        }
    };
    setFieldText(this, 1008, QString::asprintf("%.4X - %.4X", primary.vendorId, primary.deviceId));
    setFieldText(this, 1009, boardVendorText(primary.subvendorId, primary.subdeviceId));
    textOrBlank(1005, text(primary.codename));
    const int32_t tdp = primary.tdpWatts;
    textOrBlank(1036, tdp > 0 ? QString::asprintf("%dW", tdp) : QString());
    textOrBlank(1006, text(primary.biosString));
    const uint32_t memory = primary.videoMemoryMb;
    textOrBlank(1004, memory > 0 ? QString::asprintf("%dMB", int(memory)) : QString());
    textOrBlank(1003, text(primary.driverText));
    setFieldText(this, 1035, openGlSummary(machine.gl));
    showSummaryLine(this, 1038, openClLine(compute::clPlatforms(), 0, false));
    blankField(this, 1040);
    blankField(this, 1042);
    textOrBlank(1041, m_state.physxVersion >= 1 ? QString::asprintf("PhysX %d", m_state.physxVersion) : QString());
    _showVendorLogo();
}

void GpuPanel::selectGpu(int gpu) {
    if (m_state.gpuCount == 0 || gpu < 0 || uint32_t(gpu) >= m_state.gpuCount) return;
    const bool awake = !m_library.isGpuSuspended(gpu);
    // Intel's drivers have no temperature on every GPU, and their other live values are there all the same.
    const auto& gpus = m_library.snapshot().gpus;
    if (size_t(gpu) >= gpus.size()) return;
    const bool intel = gpus[size_t(gpu)].vendorId == 0x8086;
    if (awake && (gpus[size_t(gpu)].hasTemperatureSensor || intel)) {
        _setLiveFieldsEnabled(true);
        setControlEnabled(this, 1013, false);
        refreshMachineSummary();
        refreshGpuStatic(gpu);
        refreshOpenGlMemory(m_openglPanel, m_library);
        m_library.refreshLiveSample();
        refreshGpuLive(gpu);
        // A read that succeeds with no value counts as none, as at the ticks that follow.
        const float core = m_library.snapshot().gpus[size_t(gpu)].live.coreTemperatureC.value_or(0.0f);
        const bool read = core > 0.0f;
        setFieldText(this, 1015, read ? temperatureText(core) : QString());
        setControlEnabled(this, 1015, read);
    } else {
        _blankLiveFields();
        refreshMachineSummary();
        refreshGpuStatic(gpu);
    }
    _showVendorLogo();
}

void GpuPanel::refreshGpuStatic(int gpu) {
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    if (gpu < 0 || size_t(gpu) >= machine.gpus.size()) return;
    const Kalidornm::GpuSnapshot& g = machine.gpus[size_t(gpu)];
    const Kalidornm::PrimaryDeviceFacts& primary = machine.primary;
    std::snprintf(m_state.cardNameText, sizeof m_state.cardNameText, "%s", orEmpty(present(primary.gpuName)));
    const PciIds ids = gpuIds(g);

    char driver[sizeof m_state.driverDisplayText] = {};
    if (ids.vendor == 0x10DE) {
        std::snprintf(driver, sizeof driver, "R%.2f (%s) / %s (%s)",
                      double(float(machine.driver.nvDriverVersionNumber) * 0.01f),
                      orEmpty(present(machine.driver.nvDriverBranch)), orEmpty(present(primary.driverVersion)),
                      orEmpty(present(primary.driverDate)));
    } else {
        const char* driverText = present(g.driverVersion);
        if (!driverText) driverText = present(primary.driverText);
        const char* catalyst = ids.vendor == 0x1002 ? present(g.catalystVersion) : nullptr;
        if (driverText && catalyst)
            std::snprintf(driver, sizeof driver, g.isCrimson ? "Crimson %s - %s" : "Catalyst %s - %s", catalyst,
                          driverText);
        else if (driverText)
            std::snprintf(driver, sizeof driver, "%s", driverText);
    }
    std::memcpy(m_state.driverDisplayText, driver, sizeof driver);
    setFieldText(this, 1003, QString::fromUtf8(driver));

    setFieldText(this, 1005, text(g.codename));

    QString config = g.shaderCores != 0 ? QString::asprintf("Cores: %d", g.shaderCores)
                                        : QString::asprintf("%dvp,%dpp", g.vertexPipes, g.pixelPipes);
    if (g.textureUnits) config += QString::asprintf(" - TMUs: %d", g.textureUnits);
    if (g.ropUnits) config += QString::asprintf(" - ROPs: %d", g.ropUnits);
    setFieldText(this, 1007, config);

    if (g.tdpWatts) {
        setFieldText(this, 1036, QString::asprintf("%dW", g.tdpWatts));
        setControlEnabled(this, 1036, true);
    } else {
        blankField(this, 1036);
    }

    QString memory = QString::asprintf("%dMB", int(g.memorySizeMb));
    if ((ids.vendor == 0x10DE || ids.vendor == 0x1002) && g.memoryBusWidthBits) {
        const int busWidth = int(*g.memoryBusWidthBits);
        if (const char* type = present(g.memoryType))
            memory += QString::asprintf(" %s, bus width: %d-bit", type, busWidth);
        else
            memory += QString::asprintf(", bus width: %d-bit", busWidth);
    }
    if (const char* maker = present(g.memoryMaker)) memory += QString::asprintf(", vendor: %s", maker);
    setFieldText(this, 1004, memory);

    setFieldText(this, 1006, g.biosVersion ? QString::fromUtf8(g.biosVersion->c_str()) : QStringLiteral("unknown"));
    setFieldText(this, 1008, QString::asprintf("%.4X - %.4X", ids.vendor, ids.device));
    setFieldText(this, 1009, boardVendorText(ids.subvendor, ids.subdevice));
}

void GpuPanel::refreshMachineSummary() {
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    const char* physxGpu = nullptr;
    MultiGpuFacts multi;
    multi.primaryVendorKind = machine.primary.vendorKind;
    multi.gpuCount = m_state.gpuCount;
    multi.logicalGpuCount = machine.primary.totalGpuCount;
    multi.amdGpuCount = machine.driver.amdGpuCount;
    multi.crossfireGpuCount = machine.driver.amdCrossfireGpuCount;
    for (const Kalidornm::GpuSnapshot& g : machine.gpus) {
        if (g.vendorId == 0x10DE) {
            ++multi.nvidiaGpus;
            if (!physxGpu && g.shaderCores >= 32) physxGpu = g.name ? g.name->c_str() : "";
        }
        if (g.vendorId == 0x1002) ++multi.amdGpus;
    }
    showSummaryLine(this, 1041, physxLine(m_state.physxVersion, physxGpu));
    showSummaryLine(this, 1042, multiGpuLine(multi));
    setFieldText(this, 1035, openGlSummary(machine.gl));
    const uint32_t firstVendor = machine.gpus.empty() ? 0 : machine.gpus.front().vendorId;
    showSummaryLine(this, 1038, openClLine(compute::clPlatforms(), firstVendor, true));
    showSummaryLine(this, 1040, cudaLine(compute::cudaDevices()));
}

void GpuPanel::_blankLiveFields() {
    for (int id : kGpuLiveFields) blankField(this, id);
}

void GpuPanel::_setLiveFieldsEnabled(bool enabled) {
    for (int id : kGpuLiveFields) setControlEnabled(this, id, enabled);
}

void GpuPanel::_startCompanionTool() {
    const QString script = QDir::current().filePath(QString::fromLatin1(kCompanionScript));
    if (!QFileInfo(script).isFile()) return;
    QProcess::startDetached(QStringLiteral("/bin/sh"), {script}, QDir::currentPath());
}

}  // namespace panels
