#pragma once

#include <vector>

#include "compute/opencl_records.h"
#include "kalidor/machine_snapshot.h"
#include "report/online/submission_facts.h"

namespace Kalidornm {
class Kalidor;
}

namespace online {

// What a submission sends of this machine, from the library's snapshot and the OpenCL records.
SubmissionFacts submissionFactsFrom(const Kalidornm::MachineSnapshot& machine,
                                    const std::vector<compute::ClPlatformRecord>& clPlatforms);

// The same with the live samples of this moment: refreshes them first.
SubmissionFacts gatherSubmissionFacts(Kalidornm::Kalidor& library);

}  // namespace online
