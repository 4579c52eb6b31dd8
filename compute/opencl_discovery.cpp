#include "opencl_discovery.h"

namespace compute {

// OpenCL discovery lands here; until then no platform is listed.
void discoverOpenCl() {}
void releaseOpenCl() {}
void freeOpenClPlatforms() {}

}  // namespace compute
