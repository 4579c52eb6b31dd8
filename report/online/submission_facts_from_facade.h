#pragma once

#include "submission_facts.h"

namespace Kalidornm {
class Kalidor;
}

namespace online {

// Reads the facts from the started library and the OpenCL discovery records; the live values are those of
// this moment.
SubmissionFacts gatherSubmissionFacts(Kalidornm::Kalidor& library);

}  // namespace online
