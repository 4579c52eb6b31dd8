#include "app/panels/panel.h"

#include "app/app_state.h"

namespace panels {

Panel::Panel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : QWidget(parent),
      m_state(state),
      m_library(library),
      m_controls(this, DialogUnits(dialogFont()), state.fieldTextColour, state.headerTextColour,
                 state.headerBackColour) {
    setFont(dialogFont());
    setAutoFillBackground(true);
}

}  // namespace panels
