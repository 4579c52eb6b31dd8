#include "validation_panel.h"

namespace panels {

ValidationPanel::ValidationPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {}

}  // namespace panels
