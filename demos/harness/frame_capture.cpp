#include "demos/harness/frame_capture.h"

std::string capturedFrameName(const char* resultName) { return std::string("demo_") + (resultName ? resultName : "") + ".png"; }
