#include "app/panels/update_dialog.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <string>

#include "app/message_boxes.h"
#include "app/panels/controls.h"

namespace panels {

namespace {

constexpr int kIdOk = 1;

}  // namespace

UpdateDialog::UpdateDialog(QWidget* parent, const online::NewerVersionDialog& dialog) : QDialog(parent) {
    setObjectName(QStringLiteral("id140"));
    setFont(dialogFont());
    setWindowTitle(QString::fromStdString(dialog.title));
    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(186, 54));
    ControlBuilder c(this, units, 0, 0xFFFFFF, 0);
    auto* text = c.label(1082, "", {7, 10, 172, 10});
    text->setText(QString::fromStdString(dialog.text));
    text->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    fitLabelText(text);
    auto* download = c.button(1083, "", {7, 32, 100, 14});
    download->setText(QString::fromStdString(dialog.downloadLabel));
    auto* close = c.button(kIdOk, "", {129, 32, 50, 14});
    close->setText(QString::fromStdString(dialog.closeLabel));
    close->setDefault(true);

    connect(download, &QPushButton::clicked, this, [url = dialog.downloadUrl] { openUrl(url.c_str()); });
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
}

void presentNewerVersion(const online::NewerVersionDialog& dialog) {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app) return;
    QMetaObject::invokeMethod(
        app,
        [dialog] {
            auto* window = new UpdateDialog(nullptr, dialog);
            window->setAttribute(Qt::WA_DeleteOnClose);
            window->show();
        },
        Qt::QueuedConnection);
}

}  // namespace panels
