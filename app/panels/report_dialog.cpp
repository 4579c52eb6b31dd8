#include "app/panels/report_dialog.h"

#include <QFileDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <cstring>

#include "app/app_state.h"
#include "app/message_boxes.h"
#include "base/version.h"
#include "app/panels/controls.h"
#include "kalidor/kalidor.h"
#include "report/report_generator.h"
#include "report/report_snapshot_from_facade.h"
#include "app/panels/web_links.h"

namespace panels {

namespace {

constexpr int kIdOk = 1, kIdCancel = 2;

struct ExportKind {
    const char* defaultName;
    const char* filter;
    const char* title;
};
constexpr ExportKind kXmlExport{"lumenscope_report.xml", "XML data File (*.xml)", "Export report to XML File (*.xml)"};
constexpr ExportKind kTextExport{"lumenscope_report.txt", "Text File (*.txt)", "Export report to text File (*.txt)"};

}  // namespace

void fillWindowReportSnapshot(report::ReportSnapshot& snapshot, const AppState& state, Kalidornm::Kalidor& library) {
    report::fillReportSnapshot(snapshot, library);
    snapshot.system.cpuSpeedMhz = state.cpuSpeedMhz;
    snapshot.system.physxVersion = state.physxVersion;
    snapshot.system.osIsVista = state.osIsVista;
    if (!state.driverLinkTable || !state.reviewLinkTable) return;
    report::ReportLinks links;
    for (const DriverLinkRow* row = state.driverLinkTable; row->title; ++row) links.drivers.push_back({"", row->url});
    for (const ReviewLinkRow* row = state.reviewLinkTable; row->key; ++row) links.reviews.push_back({row->key, row->url});
    snapshot.links = std::move(links);
}

ReportDialog::ReportDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : QDialog(parent), m_state(state), m_library(library) {
    setObjectName(QStringLiteral("id141"));
    setFont(dialogFont());
    setWindowTitle(QString::asprintf("%s Full Report - %s", lumenscope::kDisplayName,
                                     library.snapshot().gl.renderer.c_str()));

    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(400, 261));
    ControlBuilder c(this, units, state.fieldTextColour, state.headerTextColour, state.headerBackColour);
    auto* text = new QPlainTextEdit(this);
    text->setObjectName(controlName(1090));
    text->setAccessibleName(QStringLiteral("Report"));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setGeometry(units.toPixels({7, 7, 386, 226}));
    auto* exportXml = c.button(1092, "*.XML export", {7, 240, 60, 14});
    auto* exportText = c.button(1093, "*.TXT export", {72, 240, 60, 14});
    auto* ok = c.button(kIdOk, "OK", {284, 240, 50, 14});
    auto* cancel = c.button(kIdCancel, "Cancel", {343, 240, 50, 14});

    report::ReportSnapshot snapshot;
    fillWindowReportSnapshot(snapshot, state, library);
    report::generateReport(state.report, snapshot);
    // The box wants plain line feeds; the stored text keeps the line ends it was made with.
    text->setPlainText(QString::fromStdString(state.report.displayText).remove(QLatin1Char('\r')));

    connect(ok, &QPushButton::clicked, this, [this] { done(kIdOk); });
    connect(cancel, &QPushButton::clicked, this, [this] { done(kIdCancel); });
    connect(exportXml, &QPushButton::clicked, this, [this] { _export(true); });
    connect(exportText, &QPushButton::clicked, this, [this] { _export(false); });
}

void ReportDialog::_export(bool xml) {
    const ExportKind& kind = xml ? kXmlExport : kTextExport;
    QFileDialog chooser(this, QString::fromLatin1(kind.title));
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setFileMode(QFileDialog::AnyFile);
    chooser.setNameFilter(QString::fromLatin1(kind.filter));
    chooser.selectFile(QString::fromLatin1(kind.defaultName));
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) return;
    const QByteArray path = QFile::encodeName(chooser.selectedFiles().constFirst());
    int error = 0;
    bool written = false;
    if (xml) {
        report::ReportSnapshot snapshot;
        fillWindowReportSnapshot(snapshot, m_state, m_library);
        written = report::writeXmlReport(m_state.report, snapshot, path.constData(), &error);
    } else {
        written = report::writeTextReport(m_state.report, path.constData(), &error);
    }
    // The file is complete or as it was; the user learns which, as a script learns it from a batch run.
    if (!written) showWarningBox("Could not write %s: %s", path.constData(), std::strerror(error));
}

}  // namespace panels
