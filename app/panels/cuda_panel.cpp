#include "cuda_panel.h"

namespace panels {

CudaPanel::CudaPanel(QWidget* parent, AppState& state) : Panel(parent, state) {}

}  // namespace panels
