#include "app/panels/opencl_info_dialog.h"

#include <QListWidget>
#include <QPushButton>

#include "app/app_state.h"
#include "base/version.h"
#include "compute/opencl_discovery.h"
#include "app/panels/controls.h"

namespace panels {

namespace {

constexpr int kIdOk = 1;

}  // namespace

OpenClInfoDialog::OpenClInfoDialog(QWidget* parent, const AppState& state) : QDialog(parent) {
    setObjectName(QStringLiteral("id181"));
    setFont(dialogFont());
    setWindowTitle(QString::asprintf("%s - OpenCL Information", lumenscope::kDisplayName));
    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(300, 260));
    ControlBuilder c(this, units, state.fieldTextColour, state.headerTextColour, state.headerBackColour);

    m_lines = new QListWidget(this);
    m_lines->setObjectName(controlName(1225));
    m_lines->setAccessibleName(QStringLiteral("OpenCL information"));
    m_lines->setGeometry(units.toPixels({7, 7, 286, 226}));
    m_lines->setUniformItemSizes(true);
    m_lines->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    QStringList lines;
    for (const std::string& line : compute::clDetailLines(state.clShownPlatform, state.clShownDevice))
        lines << QString::fromUtf8(line.c_str()).replace(QLatin1Char('\t'), QStringLiteral("    "));
    m_lines->addItems(lines);

    auto* ok = c.button(kIdOk, "OK", {243, 240, 50, 14});
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace panels
