#pragma once

#include <QDialog>
#include <string>

struct AppState;

namespace Kalidornm {
class Kalidor;
}

namespace panels {

// "Lumenscope OpenGL Extension": one line of the extension list, and a button to the extension's document
// in the OpenGL registry, enabled only when the extension table has a link for the line.
class ExtensionDialog : public QDialog {
public:
    ExtensionDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library, const char* line);

    // The extension table's row found in the line; -1 for none.
    int linkRow() const { return m_linkRow; }

private:
    int m_linkRow = -1;
    std::string m_link;
};

}  // namespace panels
