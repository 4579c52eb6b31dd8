#include "opencl_panel.h"

namespace panels {

OpenCLPanel::OpenCLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {}

}  // namespace panels
