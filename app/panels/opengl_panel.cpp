#include "app/panels/opengl_panel.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <iterator>
#include <string>

#include "app/app_state.h"
#include "app/message_boxes.h"
#include "app/panels/extension_dialog.h"
#include "app/panels/extension_lines.h"
#include "app/panels/gl_caps_dialog.h"
#include "kalidor/kalidor.h"
#include "app/panels/web_links.h"

namespace panels {

namespace {

struct VersionField {
    int field;
    const char* caption;
    const char* (Kalidornm::Kalidor::*text)() const;
    int y;
};

constexpr VersionField kVersionFields[] = {
    {1133, "GL_RENDERER", &Kalidornm::Kalidor::getGlRenderer, 16},
    {1132, "GL_VERSION", &Kalidornm::Kalidor::getGlVersion, 30},
    {1036, "GLSL version", &Kalidornm::Kalidor::getGlslVersion, 44},
};
static_assert(std::size(kVersionFields) == 3);

constexpr const char* kExtensionsPage = "/redirect.php?id=25";

}  // namespace

OpenGLPanel::OpenGLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {
    ControlBuilder& c = controls();
    c.groupBox(1034, "  OpenGL version  ", {7, 4, 235, 58});
    for (const VersionField& f : kVersionFields)
        c.field(f.field, c.label(0, f.caption, {14, f.y + 2, 48, 8}), {64, f.y, 172, 12});
    c.groupBox(1277, "OpenGL memory", {7, 66, 235, 28});
    c.field(1032, nullptr, {14, 78, 222, 12})->setAccessibleName(QStringLiteral("OpenGL memory"));
    c.groupBox(1043, "OpenGL extensions", {7, 98, 235, 132});

    m_extensions = new QListWidget(this);
    m_extensions->setObjectName(controlName(1047));
    m_extensions->setAccessibleName(QStringLiteral("OpenGL extensions"));
    m_extensions->setGeometry(c.units().toPixels({14, 110, 222, 114}));
    m_extensions->setUniformItemSizes(true);  // a few hundred lines of one height lay out at once
    m_extensions->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_extensions->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);

    auto* moreCaps = c.button(1041, "More caps...", {7, 236, 80, 14});
    auto* webLink = c.button(1142, "OpenGL extensions @ Orbiscale", {117, 236, 125, 14});

    connect(moreCaps, &QPushButton::clicked, this, [this] { showCapsDialog(); });
    connect(webLink, &QPushButton::clicked, this, [] { openUrl((std::string(kWebHost) + kExtensionsPage).c_str()); });
    connect(m_extensions, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { openExtensionDialog(item ? item->text() : QString()); });
    _fill();
}

void OpenGLPanel::_fill() {
    for (const VersionField& f : kVersionFields) {
        const char* value = (m_library.*f.text)();
        setFieldText(this, f.field, QString::fromUtf8(value ? value : ""));
    }
    m_extensions->clear();
    QStringList lines;
    for (const std::string& line : sortedExtensionLines(m_library.snapshot().gl)) lines << QString::fromUtf8(line.c_str());
    m_extensions->addItems(lines);
    m_extensions->setCurrentRow(-1);
    m_extensions->clearSelection();
    if (auto* box = findControl<CaptionBox>(this, 1043))
        box->setCaption(QString::fromUtf8(extensionCountCaption(m_library.snapshot().gl).c_str()));
}

GlCapsDialog* OpenGLPanel::showCapsDialog() {
    if (!m_capsDialog) {
        m_capsDialog = new GlCapsDialog(this, m_state, m_library);
        m_state.glCapsDialog = m_capsDialog.data();
    }
    m_capsDialog->show();
    m_capsDialog->raise();
    m_capsDialog->activateWindow();
    return m_capsDialog;
}

void OpenGLPanel::openExtensionDialog(const QString& line) {
    ExtensionDialog dialog(this, m_state, m_library, line.toUtf8().left(int(kExtensionLineSize) - 1).constData());
    dialog.exec();
}

}  // namespace panels
