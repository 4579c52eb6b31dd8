#include "app/panels/splash_dialog.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QScreen>
#include <QThread>
#include <QWindow>

#include "base/version.h"
#include "app/panels/controls.h"
#include "app/panels/vendor_logo.h"

namespace panels {

namespace {
constexpr int kWidth = 180, kHeight = 52;
// How long the splash may wait for the display to show it before the scan starts anyway, milliseconds.
constexpr int kPaintWaitMs = 200;
}  // namespace

SplashDialog::SplashDialog() : QFrame(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("id172"));
    setFont(dialogFont());
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setWindowIcon(applicationIcon());
    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(kWidth, kHeight));

    auto centred = [&](int id, const QString& text, const DuRect& place) {
        auto* label = new QLabel(text, this);
        label->setObjectName(controlName(id));
        label->setAlignment(Qt::AlignCenter);
        label->setGeometry(units.toPixels(place));
    };
    const QString nameAndVersion =
        QString::asprintf("%s %s", lumenscope::kDisplayName, lumenscope::kVersionText);
    // Never shown on the frameless splash, but window lists and screen readers name it by it.
    setWindowTitle(nameAndVersion);
    centred(1144, nameAndVersion, {4, 8, kWidth - 8, 10});
    // The text breaks its line with a line feed and a carriage return; a label wants only the line feed.
    centred(1143, QString::fromLatin1("Scanning graphics hardware in progress.\n\rPlease wait...").remove(QLatin1Char('\r')),
            {4, 22, kWidth - 8, 22});

    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void SplashDialog::showAndPaint() {
    show();
    QElapsedTimer waited;
    waited.start();
    do {
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    } while (!(windowHandle() && windowHandle()->isExposed()) && waited.elapsed() < kPaintWaitMs);
    repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace panels
