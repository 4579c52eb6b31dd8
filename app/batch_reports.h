#pragma once

#include "report/report_snapshot.h"

struct AppState;
namespace Kalidornm {
class Kalidor;
}

inline constexpr const char* kXmlReportFile = "report.xml";
inline constexpr const char* kTextReportFile = "report.txt";
inline constexpr const char* kJsonReportFile = "report.json";

// The batch branch of start-up: writes the report files in the working directory for the export options that
// are set. One snapshot and one generation serve every file. Each file is complete or left as it was; one
// that cannot be written gets one line on stderr naming it and the reason.
void writeBatchReports(AppState& state, Kalidornm::Kalidor& library);

// The snapshot every report of a batch run is written from.
report::ReportSnapshot batchReportSnapshot(const AppState& state, Kalidornm::Kalidor& library);
