#pragma once

#include <string>

#include "report/report_buffers.h"
#include "report/report_snapshot.h"

// The report of everything the program knows, built once as text and XML from one snapshot.
namespace report {

// Fills the buffers from the snapshot unless they already hold a finished report; a report is generated
// once per run, so a second call keeps the first one's live values.
void generateReport(ReportBuffers& buffers, const ReportSnapshot& snapshot);

// The whole XML file of a generated report: declaration, head comment and the body inside the root element.
std::string xmlReportText(const ReportBuffers& buffers, const ReportSnapshot& snapshot);

// Write the generated text or XML report through writeReportFile: the file is complete or untouched. False
// for a null path or any failure, with the errno value in `*error` if given.
bool writeTextReport(const ReportBuffers& buffers, const char* path, int* error = nullptr);
bool writeXmlReport(const ReportBuffers& buffers, const ReportSnapshot& snapshot, const char* path,
                    int* error = nullptr);

}  // namespace report
