#pragma once

#include "panel.h"

namespace panels {

// The "CUDA" tab: CUDA devices and their limits.
class CudaPanel : public Panel {
public:
    CudaPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);
};

}  // namespace panels
