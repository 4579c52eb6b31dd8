#pragma once

namespace panels {

// Routes the shell's message boxes to QMessageBox and its links to the desktop's URL handler. A box asked for
// from another thread is shown by the main thread, and the asking thread waits until it is closed.
void installQtMessageBoxes();
// Back to standard error and the opener program, before the toolkit goes away.
void removeQtMessageBoxes();

}  // namespace panels
