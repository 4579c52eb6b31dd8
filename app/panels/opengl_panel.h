#pragma once

#include <QPointer>

#include "app/panels/panel.h"

class QListWidget;
class QListWidgetItem;

namespace panels {

class GlCapsDialog;

// The "OpenGL" tab: the version texts, the memory line the refresh timer keeps current, the sorted extension
// list (a double-click opens the extension's dialog) and the caps dialog. Filled once, when it is made.
class OpenGLPanel : public Panel {
public:
    OpenGLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

    // "More caps...": the caps dialog, made on first use and shown again after that.
    GlCapsDialog* showCapsDialog();
    // What a double-click on a line of the list does: the extension dialog for that line, modal.
    void openExtensionDialog(const QString& line);

private:
    void _fill();

    QListWidget* m_extensions = nullptr;
    QPointer<GlCapsDialog> m_capsDialog;
};

}  // namespace panels
