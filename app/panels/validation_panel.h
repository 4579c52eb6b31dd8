#pragma once

#include "panel.h"

namespace panels {

// The "Validation" tab: submission of the report to the online database and the update check.
class ValidationPanel : public Panel {
public:
    ValidationPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);
};

}  // namespace panels
