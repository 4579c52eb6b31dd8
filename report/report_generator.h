#pragma once

#include "report_buffers.h"
#include "report_snapshot.h"

// The report of everything the program knows, built once as text and XML from one snapshot.
namespace report {

// Fills the buffers from the snapshot unless they already hold a finished report; a report is generated
// once per run, so a second call keeps the first one's live values.
void generateReport(ReportBuffers& buffers, const ReportSnapshot& snapshot);

// Write the generated text or XML report; false for a null path or a file that cannot be opened.
bool writeTextReport(const ReportBuffers& buffers, const char* path);
bool writeXmlReport(const ReportBuffers& buffers, const ReportSnapshot& snapshot, const char* path);

}  // namespace report
