#include "opengl_panel.h"

namespace panels {

OpenGLPanel::OpenGLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {}

}  // namespace panels
