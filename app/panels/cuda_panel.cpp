#include "cuda_panel.h"

namespace panels {

CudaPanel::CudaPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {}

}  // namespace panels
