#pragma once

#include <QDialog>

#include "report/online/update_check.h"

namespace panels {

// "Lumenscope - Check for update": names the newer version and offers its download page.
class UpdateDialog : public QDialog {
public:
    UpdateDialog(QWidget* parent, const online::NewerVersionDialog& dialog);
};

// Shows the dialog for a newer version from any thread: handed to the main thread, which shows it without an
// owner and without blocking the main window; the caller does not wait.
void presentNewerVersion(const online::NewerVersionDialog& dialog);

}  // namespace panels
