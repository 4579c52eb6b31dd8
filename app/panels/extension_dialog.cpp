#include "app/panels/extension_dialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "app/app_state.h"
#include "app/message_boxes.h"
#include "base/version.h"
#include "app/panels/controls.h"
#include "kalidor/kalidor.h"
#include "kalidor/opengl/extension_link_table.h"

namespace panels {

namespace {

constexpr int kIdOk = 1;

}  // namespace

ExtensionDialog::ExtensionDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library, const char* line)
    : QDialog(parent) {
    setObjectName(QStringLiteral("id136"));
    setFont(dialogFont());
    setWindowTitle(QString::asprintf("%s OpenGL Extension", lumenscope::kDisplayName));
    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(280, 76));
    ControlBuilder c(this, units, state.fieldTextColour, state.headerTextColour, state.headerBackColour);

    const char* renderer = library.getGlRenderer();
    auto* rendererLine = c.label(1278, "", {7, 7, 266, 8});
    rendererLine->setText(QString::asprintf("GL_RENDERER: %s", renderer ? renderer : ""));
    fitLabelText(rendererLine);
    auto* extension = c.field(1048, nullptr, {7, 20, 266, 12});
    extension->setAccessibleName(QStringLiteral("OpenGL extension"));
    extension->setText(QString::fromUtf8(line ? line : ""));
    extension->setCursorPosition(0);
    auto* specification = c.button(1050, "Full specification @ OpenGL Registry", {7, 55, 150, 14});
    auto* ok = c.button(kIdOk, "OK", {223, 55, 50, 14});

    m_linkRow = line ? Kalidornm::findLinkRowInText(line) : -1;
    if (m_linkRow >= 0 && size_t(m_linkRow) < Kalidornm::extensionLinkTable.size()) {
        const char* link = Kalidornm::extensionLinkTable[size_t(m_linkRow)].link;
        m_link = link ? link : "";
    }
    specification->setEnabled(!m_link.empty());

    connect(specification, &QPushButton::clicked, this, [this] { openUrl(m_link.c_str()); });
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace panels
