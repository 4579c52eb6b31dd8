#include "opencl_panel.h"

namespace panels {

OpenCLPanel::OpenCLPanel(QWidget* parent, AppState& state) : Panel(parent, state) {}

}  // namespace panels
