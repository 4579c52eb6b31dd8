#pragma once

#include "report/report_snapshot.h"

namespace Kalidornm {
class Kalidor;
}

namespace report {

// Reads everything the report prints from the started library and the compute discovery records, once.
// The live values (temperatures, clocks, performance levels) are those of this moment.
void fillReportSnapshot(ReportSnapshot& snapshot, Kalidornm::Kalidor& library);

// What a report knows without the library (part of fillReportSnapshot): the program's banner and the compute
// discovery records.
void fillSnapshotWithoutLibrary(ReportSnapshot& snapshot);

// The OpenCL platforms and CUDA devices from the discovery records (part of fillReportSnapshot).
void fillComputeSnapshot(ReportSnapshot& snapshot);

}  // namespace report
