#pragma once

#include "app/demo_launch.h"

class QWidget;

namespace panels {

// What the OpenCL panel has chosen for the OpenCL demos, read from its controls by their numbers: the
// platform combo (1183) and the two device combos for the demos (1237 GPU, 1238 CPU), each by its current
// item's data. A combo that is missing, empty or without a number counts as 0, so a panel that has not
// filled them yet starts the demos on platform 0, device 0. A greyed combo still counts: it keeps the
// choice made on the platform shown before, as the panel leaves it.
OpenClDemoChoice readOpenClDemoChoice(const QWidget* openclPanel);

}  // namespace panels
