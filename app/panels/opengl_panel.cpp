#include "opengl_panel.h"

namespace panels {

OpenGLPanel::OpenGLPanel(QWidget* parent, AppState& state) : Panel(parent, state) {}

}  // namespace panels
