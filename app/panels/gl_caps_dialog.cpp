#include "app/panels/gl_caps_dialog.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include "app/app_state.h"
#include "base/version.h"
#include "app/panels/caps_tree.h"
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

    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(controlName(1266));
    m_tree->setAccessibleName(QStringLiteral("OpenGL caps"));
    m_tree->setGeometry(units.toPixels({7, 18, 286, 256}));
    m_tree->setHeaderHidden(true);
    m_tree->setColumnCount(1);
    m_tree->setRootIsDecorated(true);
    m_tree->setUniformRowHeights(true);
    // The widest leaf decides the column, so a long name scrolls rather than being cut.
    m_tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_tree->header()->setStretchLastSection(false);

    QList<QTreeWidgetItem*> roots;
    for (const CapsTreeBranch& branch : capsTreeBranches(library.snapshot().gl)) {
        auto* root = new QTreeWidgetItem(QStringList(QString::fromUtf8(branch.text.c_str())));
        for (const std::string& leaf : branch.leaves)
            root->addChild(new QTreeWidgetItem(QStringList(QString::fromUtf8(leaf.c_str()))));
        roots << root;
    }
    m_tree->addTopLevelItems(roots);
    m_tree->collapseAll();

    auto* ok = c.button(kIdOk, "OK", {243, 280, 50, 14});
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

GlCapsDialog::~GlCapsDialog() {
    if (m_state.glCapsDialog == this) m_state.glCapsDialog = nullptr;
}

}  // namespace panels
