#pragma once

#include <QWidget>

#include "app/panels/controls.h"

struct AppState;

namespace Kalidornm {
class Kalidor;
}

namespace panels {

// One page of the main window's tab control: a child window laid out in dialog units of the dialog font,
// reading the library and the application state whenever it shows something.
class Panel : public QWidget {
public:
    Panel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

protected:
    ControlBuilder& controls() { return m_controls; }
    AppState& m_state;
    Kalidornm::Kalidor& m_library;

private:
    ControlBuilder m_controls;
};

}  // namespace panels
