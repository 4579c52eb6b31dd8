#include "app/panels/qt_desktop_shell.h"

#include <QApplication>
#include <cstdlib>
#include <utility>

#include "app/app_state.h"
#include "app/no_display_notice.h"
#include "base/version.h"
#include "app/panels/display_probe.h"
#include "app/panels/main_dialog.h"
#include "app/panels/qt_message_boxes.h"
#include "app/panels/splash_dialog.h"
#include "app/panels/vendor_logo.h"

namespace panels {

namespace {

// Messages of the toolkit while it starts, held back so that a failed start prints one paragraph only.
QStringList gStartMessages;

// Qt ends the process with an abort when its platform cannot start; what the user should read instead is the
// same paragraph as for a missing display, and a plain exit status.
void reportFatalStart(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type != QtFatalMsg) {
        gStartMessages << message;
        return;
    }
    QString why = QStringLiteral("the window toolkit could not start (") + message.section(QLatin1Char('\n'), 0, 0).trimmed();
    for (const QString& earlier : gStartMessages) why += QStringLiteral("; ") + earlier.simplified();
    why += QLatin1Char(')');
    reportNoDisplay(why.toLocal8Bit().constData());
    std::_Exit(1);
}

}  // namespace

QtDesktopShell::QtDesktopShell(int& argc, char** argv) : m_argc(argc), m_argv(argv) {}

QtDesktopShell::~QtDesktopShell() { disconnect(); }

bool QtDesktopShell::connect(std::string* why) {
    const DisplayProbe display = probeDisplay();
    if (!display.found) {
        if (why) *why = display.why;
        return false;
    }
    if (!display.platform.empty()) qputenv("QT_QPA_PLATFORM", display.platform.c_str());

    const QtMessageHandler previous = qInstallMessageHandler(reportFatalStart);
    m_application = std::make_unique<QApplication>(m_argc, m_argv);
    qInstallMessageHandler(previous);
    for (const QString& message : std::exchange(gStartMessages, {})) qWarning("%s", qUtf8Printable(message));

    QApplication::setApplicationName(QString::fromLatin1(lumenscope::kDisplayName));
    QApplication::setApplicationVersion(QString::fromLatin1(lumenscope::kVersionText));
    QApplication::setWindowIcon(applicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    installQtMessageBoxes();
    return true;
}

void QtDesktopShell::showSplash() {
    if (!m_application) return;
    m_splash = std::make_unique<SplashDialog>();
    m_splash->showAndPaint();
}

void QtDesktopShell::closeSplash() {
    if (m_splash) m_splash->close();
    m_splash.reset();
}

void QtDesktopShell::runMainDialog(AppState& state, Kalidornm::Kalidor& library) {
    if (!m_application) return;
    {
        MainDialog dialog(state, library);
        dialog.start(m_splash.get());
        dialog.runUntilClosed();
    }
    closeSplash();
}

void QtDesktopShell::disconnect() {
    if (!m_application) return;
    removeQtMessageBoxes();
    closeSplash();
    m_application.reset();
}

}  // namespace panels
