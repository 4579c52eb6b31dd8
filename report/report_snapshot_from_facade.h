#pragma once

#include "report/report_snapshot.h"

namespace Kalidornm {
class Kalidor;
}

namespace report {

// Reads everything the report prints from the started library and the compute discovery records, once.
// The live values (temperatures, clocks, performance levels) are those of this moment.
void fillReportSnapshot(ReportSnapshot& snapshot, Kalidornm::Kalidor& library);

// The OpenCL platforms and CUDA devices from the discovery records (part of fillReportSnapshot).
void fillComputeSnapshot(ReportSnapshot& snapshot);

}  // namespace report
