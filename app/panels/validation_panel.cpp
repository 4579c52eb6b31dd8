#include "validation_panel.h"

namespace panels {

ValidationPanel::ValidationPanel(QWidget* parent, AppState& state) : Panel(parent, state) {}

}  // namespace panels
