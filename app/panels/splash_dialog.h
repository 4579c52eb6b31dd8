#pragma once

#include <QFrame>

namespace panels {

// Stands on the screen while start-up scans the machine: the program's name and version and a line asking
// the user to wait. It paints once when shown; the main window closes it when its own start is done.
class SplashDialog : public QFrame {
public:
    SplashDialog();

    // Shows the splash and lets it paint before the long scan blocks the event loop.
    void showAndPaint();
};

}  // namespace panels
