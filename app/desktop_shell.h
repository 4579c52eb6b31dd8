#pragma once

#include <string>

struct AppState;

namespace Kalidornm {
class Kalidor;
}

// The interactive half of the program, handed to runLumenscope by main: the window toolkit, the splash and
// the main window. A batch run never touches it.
class DesktopShell {
public:
    virtual ~DesktopShell() = default;

    // Opens the window toolkit on the display. False when there is no display to open; `why` then says what
    // was missing or refused, as a phrase that completes "cannot open its window: ".
    virtual bool connect(std::string* why) = 0;
    virtual void showSplash() = 0;
    virtual void closeSplash() = 0;
    // Starts the main window and runs it until the user closes it.
    virtual void runMainDialog(AppState& state, Kalidornm::Kalidor& library) = 0;
    // Lets go of the toolkit; message boxes and links fall back to their plain forms.
    virtual void disconnect() = 0;
};
