#include "app/panels/gl_caps_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include "app/app_state.h"
#include "base/version.h"
#include "app/panels/caps_tree.h"
#include "app/panels/caps_tree_widget.h"
#include "app/panels/controls.h"
#include "kalidor/kalidor.h"

namespace panels {

namespace {

constexpr int kIdOk = 1;

}  // namespace

GlCapsDialog::GlCapsDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : QDialog(parent), m_state(state) {
    setObjectName(QStringLiteral("id192"));
    setFont(dialogFont());
    setModal(false);
    setWindowTitle(QString::asprintf("%s OpenGL Caps List", lumenscope::kDisplayName));

    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(300, 300));
    ControlBuilder c(this, units, state.fieldTextColour, state.headerTextColour, state.headerBackColour);
    auto* rendererLine = c.label(1278, "", {7, 7, 286, 8});
    rendererLine->setText(QString::asprintf("GL_RENDERER: %s", library.snapshot().gl.renderer.c_str()));
    fitLabelText(rendererLine);
    rendererLine->setToolTip(rendererLine->text());

    m_tree = makeCapsTreeWidget(this, 1266, QStringLiteral("OpenGL caps"), units.toPixels({7, 18, 286, 256}),
                                capsTreeBranches(library.snapshot().gl));

    auto* ok = c.button(kIdOk, "OK", {243, 280, 50, 14});
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

GlCapsDialog::~GlCapsDialog() {
    if (m_state.glCapsDialog == this) m_state.glCapsDialog = nullptr;
}

}  // namespace panels
