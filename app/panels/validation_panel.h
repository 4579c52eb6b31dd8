#pragma once

#include "app/panels/panel.h"

class QLineEdit;
class QPushButton;

namespace panels {

// The "Validation" tab: the submission of this machine's data to the online GPU database (once a run), the
// program's about text and links, and the update check.
class ValidationPanel : public Panel {
public:
    ValidationPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

    // The Submit button: one submission with the two fields' texts, then the box and the page the answer
    // asks for. The button stays greyed afterwards, whatever the answer.
    void submit();
    // The "Check for update" button: the check on this thread, then the newer-version dialog or the info box.
    void checkForUpdate();

private:
    QLineEdit* m_screenName = nullptr;
    QLineEdit* m_password = nullptr;
    QPushButton* m_submit = nullptr;
    QPushButton* m_update = nullptr;
};

// The about text: "Lumenscope v1.26.0 (build: <date>@<time>)", the maker's notice and a contact line.
QString aboutText();

}  // namespace panels
