#pragma once

#include "report/report_snapshot.h"

// Whole machines as snapshots, for the golden reports and the edge-case tests.
namespace report_fixtures {

// One GeForce with boost values, one CUDA device, one OpenCL GPU with the NVIDIA attribute extension.
report::ReportSnapshot nvidiaMachine();
// One Radeon whose driver gave a version text but no Catalyst version; an OpenCL CPU device.
report::ReportSnapshot amdMachineWithoutCatalyst();
// No display device at all.
report::ReportSnapshot noDriverMachine();
// An Intel adapter driven by a software rasterizer, with a pocl-like OpenCL platform and a lavapipe-like
// Vulkan device.
report::ReportSnapshot intelSoftwareMachine();

}  // namespace report_fixtures
