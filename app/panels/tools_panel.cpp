#include "app/panels/tools_panel.h"

#include <QComboBox>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <iterator>
#include <string>

#include "app/panels/active_apps_text.h"
#include "app/app_state.h"
#include "app/message_boxes.h"
#include "app/panels/hyperlink.h"
#include "kalidor/kalidor.h"
#include "app/panels/report_dialog.h"
#include "app/panels/web_links.h"

namespace panels {

namespace {

struct LabelledField {
    int field;
    int label;
    const char* caption;
    DuRect labelPlace;
    DuRect fieldPlace;
};

constexpr LabelledField kSystemFields[] = {
    {1026, 0, "System CPU", {14, 20, 41, 8}, {59, 18, 178, 12}},
    {1260, 0, "CPU speed", {14, 34, 41, 8}, {59, 32, 50, 12}},
    {1261, 0, "CPU cores (logical)", {115, 34, 68, 8}, {187, 32, 50, 12}},
    {1029, 0, "OS", {33, 50, 22, 8}, {59, 47, 178, 12}},
    {1030, 1031, "Memory", {24, 62, 31, 11}, {59, 61, 50, 12}},
    {1025, 0, "Current display mode", {14, 76, 66, 8}, {84, 75, 152, 12}},
};
static_assert(std::size(kSystemFields) == 6);

constexpr const char* kSystemInformationTools[] = {"hardinfo2", "hardinfo", "kinfocenter", "cpu-x", "lshw-gtk",
                                                   "gnome-system-monitor"};

std::string webPage(const char* path) { return std::string(kWebHost) + path; }

}  // namespace

const char* const* systemInformationTools(size_t* count) {
    if (count) *count = std::size(kSystemInformationTools);
    return kSystemInformationTools;
}

ToolsPanel::ToolsPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {
    ControlBuilder& c = controls();
    c.groupBox(1245, "  Sytem information  ", {7, 7, 235, 85});
    for (const LabelledField& f : kSystemFields)
        c.field(f.field, c.label(f.label, f.caption, f.labelPlace), f.fieldPlace);
    auto* moreInfo = c.button(1101, ">> More System Information <<", {118, 61, 120, 12});
    auto* activeApps = c.button(1104, "Active 3D Apps", {7, 110, 100, 25});
    auto* exportData = c.button(1070, "Export data", {143, 110, 100, 25});
    c.groupBox(1098, "  Web Links  ", {7, 158, 235, 52});
    auto* nvidiaDrivers = c.label(1262, "[ Latest NVIDIA drivers ]", {52, 168, 77, 8});
    auto* amdDrivers = c.label(1263, "[ Latest AMD drivers ]", {137, 168, 69, 8});
    c.label(1078, "", {14, 181, 212, 8});
    m_reviews = c.dropDownList(1068, {14, 191, 219, 12}, 100);

    makeHyperlink(nvidiaDrivers, [] { openUrl(webPage("/redirect.php?id=20").c_str()); });
    makeHyperlink(amdDrivers, [] { openUrl(webPage("/redirect.php?id=21").c_str()); });
    connect(moreInfo, &QPushButton::clicked, this, [this] { _startSystemInformationTool(); });
    connect(activeApps, &QPushButton::clicked, this, [this] { _showActive3DApps(); });
    connect(exportData, &QPushButton::clicked, this, [this] { _showReportDialog(); });
    connect(m_reviews, &QComboBox::currentIndexChanged, this, [this](int row) { _openSelectedReview(row); });
}

void ToolsPanel::initToolsPanel() {
    const Kalidornm::Kalidor& k = m_library;
    setFieldText(this, 1026, QString::fromUtf8(k.getCpuName() ? k.getCpuName() : ""));
    uint32_t memoryMb = k.getInstalledMemoryMb();
    if (memoryMb == 0) memoryMb = k.getTotalMemoryKb() >> 10;
    setFieldText(this, 1030, QString::asprintf("%d MB", int(memoryMb)));
    setFieldText(this, 1029, QString::fromUtf8(k.getOsDescription() ? k.getOsDescription() : ""));
    const Kalidornm::DisplayModeFacts& mode = m_library.snapshot().displayMode;
    setFieldText(this, 1025, QString::asprintf("%dx%d @ %dHz - %dbpp", mode.width, mode.height, mode.refreshHz,
                                               mode.bitsPerPixel));
    // Measured once at start-up; asking the library again would not change it.
    setFieldText(this, 1260, QString::asprintf("%d MHz", m_state.cpuSpeedMhz));
    setFieldText(this, 1261, QString::asprintf("%d", k.getCpuLogicalCores()));

    const WebLinkTables tables = webLinkTablesFor(k.getPrimaryVendorKind());
    m_state.driverLinkTable = tables.drivers;
    m_state.reviewLinkTable = tables.reviews;
    auto* reviewsLabel = findControl<QLabel>(this, 1078);
    reviewsLabel->setText(QString::fromLatin1(tables.reviewsLabel));
    fitLabelText(reviewsLabel);
    m_reviews->setAccessibleName(reviewsLabel->text());

    const QSignalBlocker quiet(m_reviews);
    m_reviews->clear();
    for (const ReviewLinkRow* row : listedReviewRows(tables.reviews, m_state.cardNameText, k.getGlRenderer()))
        m_reviews->addItem(QString::fromLatin1(row->title));
    if (m_reviews->count() > 0) {
        m_reviews->setCurrentIndex(0);
    } else {
        reviewsLabel->setEnabled(false);
        m_reviews->setEnabled(false);
    }
}

void ToolsPanel::_openSelectedReview(int row) {
    if (row < 0) return;
    const auto rows = listedReviewRows(m_state.reviewLinkTable, m_state.cardNameText,
                                       m_library.snapshot().gl.renderer.c_str());
    if (size_t(row) < rows.size()) openUrl(rows[size_t(row)]->url);
}

void ToolsPanel::_showActive3DApps() {
    const uint32_t count = m_library.queryActive3DApps(0);
    if (count < 1) {
        showInfoBox("%s", kNoActiveAppsText);
        return;
    }
    std::vector<ActiveApp> apps;
    for (uint32_t i = 0; i < count; ++i) {
        const char* name = m_library.getActiveAppName(0, i);
        apps.push_back({name ? name : "", m_library.getActiveAppPid(0, i)});
    }
    showInfoBox("%s", activeAppsText(apps).c_str());
}

void ToolsPanel::_showReportDialog() {
    ReportDialog dialog(this, m_state, m_library);
    dialog.exec();
}

void ToolsPanel::_startSystemInformationTool() {
    for (const char* tool : kSystemInformationTools) {
        const QString path = QStandardPaths::findExecutable(QString::fromLatin1(tool));
        if (path.isEmpty()) continue;
        QProcess::startDetached(path, {});
        return;
    }
}

}  // namespace panels
