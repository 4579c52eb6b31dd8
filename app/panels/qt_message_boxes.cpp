#include "app/panels/qt_message_boxes.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QThread>
#include <QUrl>

#include "app/message_boxes.h"
#include "app/online_check.h"
#include "app/panels/update_dialog.h"

namespace panels {

namespace {

QMessageBox::Icon iconOf(MessageBoxKind kind) {
    switch (kind) {
        case MessageBoxKind::Error: return QMessageBox::Critical;
        case MessageBoxKind::Warning: return QMessageBox::Warning;
        case MessageBoxKind::Info: break;
    }
    return QMessageBox::Information;
}

void presentWithQt(MessageBoxKind kind, const char* title, const char* text) {
    QCoreApplication* app = QCoreApplication::instance();
    // Copied here: the text lives in the shell's shared buffer, which the next box overwrites.
    const QString caption = QString::fromUtf8(title);
    // Line breaks written as "\n\r" pairs show as one break.
    const QString message = QString::fromUtf8(text).remove(QLatin1Char('\r'));
    auto show = [kind, caption, message] {
        QMessageBox box(iconOf(kind), caption, message, QMessageBox::Ok);
        box.exec();
    };
    if (!app || QThread::currentThread() == app->thread())
        show();
    else
        QMetaObject::invokeMethod(app, show, Qt::BlockingQueuedConnection);
}

void openWithDesktopServices(const char* target) {
    QDesktopServices::openUrl(QUrl::fromUserInput(QString::fromUtf8(target)));
}

}  // namespace

void installQtMessageBoxes() {
    setMessageBoxPresenter(presentWithQt);
    setUrlOpener(openWithDesktopServices);
    setNewerVersionPresenter(presentNewerVersion);
}

void removeQtMessageBoxes() {
    setMessageBoxPresenter(nullptr);
    setUrlOpener(nullptr);
    setNewerVersionPresenter(nullptr);
}

}  // namespace panels
