#pragma once

#include <string>

#include "report/report_snapshot.h"

// The report as JSON for scripts: the same snapshot as the text and XML forms, every value typed, and a
// value the machine did not give written as null, never as 0.
namespace report {

inline constexpr int kJsonReportSchemaVersion = 1;

// The whole document, two-space indented and ending in a line feed; texts that are not UTF-8 have their
// bad bytes replaced. Empty only if the document could not be built.
std::string jsonReportText(const ReportSnapshot& snapshot);

// Writes jsonReportText to `path` through writeReportFile: the file is complete or untouched. False for a
// null path or any failure, with the errno value in `*error` if given.
bool writeJsonReport(const ReportSnapshot& snapshot, const char* path, int* error = nullptr);

}  // namespace report
