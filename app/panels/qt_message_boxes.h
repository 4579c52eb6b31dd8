#pragma once

namespace panels {

// Routes the shell's message boxes to QMessageBox, its links to the desktop's URL handler and the update
// check's newer-version dialog to the main thread. A box asked for from another thread is shown by the main
// thread, and the asking thread waits until it is closed; the update check's dialog does not make it wait.
void installQtMessageBoxes();
// Back to standard error and the opener program, before the toolkit goes away.
void removeQtMessageBoxes();

}  // namespace panels
