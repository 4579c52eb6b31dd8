#pragma once

#include "panel.h"

namespace panels {

// The "OpenGL" tab: version texts, extension list, memory line and the caps dialog.
class OpenGLPanel : public Panel {
public:
    OpenGLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);
};

}  // namespace panels
