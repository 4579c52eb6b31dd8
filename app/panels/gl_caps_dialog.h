#pragma once

#include <QDialog>

struct AppState;
class QTreeWidget;

namespace Kalidornm {
class Kalidor;
}

namespace panels {

// "Lumenscope OpenGL Caps List": the renderer and the capability catalogue as a tree under fixed headings,
// collapsed at first. Modeless; closing it only hides it, so the next opening shows the same tree.
class GlCapsDialog : public QDialog {
public:
    GlCapsDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);
    ~GlCapsDialog() override;

    QTreeWidget* tree() const { return m_tree; }

private:
    AppState& m_state;
    QTreeWidget* m_tree = nullptr;
};

}  // namespace panels
