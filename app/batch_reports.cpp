#include "batch_reports.h"

#include "app_state.h"
#include "report/json_report.h"
#include "report/report_generator.h"
#include "report/report_snapshot_from_facade.h"

void writeBatchReports(AppState& state, Kalidornm::Kalidor& library) {
    report::ReportSnapshot snapshot;
    report::fillReportSnapshot(snapshot, library);
    // The tools panel never exists in a batch run, so its link tables are never chosen.
    snapshot.links.reset();
    snapshot.system.cpuSpeedMhz = state.cpuSpeedMhz;
    snapshot.system.physxVersion = state.physxVersion;
    snapshot.system.osIsVista = state.osIsVista;

    if (state.exportXmlReport) {
        report::generateReport(state.report, snapshot);
        report::writeXmlReport(state.report, snapshot, "report.xml");
    }
    if (state.exportTxtReport) {
        report::generateReport(state.report, snapshot);
        report::writeTextReport(state.report, "report.txt");
    }
    if (state.exportJsonReport) report::writeJsonReport(snapshot, "report.json");
}
