#pragma once

#include "panel.h"

namespace panels {

// The "OpenCL" tab: OpenCL platforms, devices and the demo device pickers.
class OpenCLPanel : public Panel {
public:
    OpenCLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);
};

}  // namespace panels
