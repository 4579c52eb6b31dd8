// What the OpenGL side of the window costs the main thread on this machine's own OpenGL driver (llvmpipe on
// the build machine): opening the caps dialog for the first time, its tree built from the whole catalogue and
// painted, and switching the main window to the OpenGL tab, the panel painted with its extension list.
// Run: build/tests/bench_window_opengl (not part of ctest).
#include <QApplication>
#include <QTabBar>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "app/app_state.h"
#include "app/panels/gl_caps_dialog.h"
#include "app/panels/main_dialog.h"
#include "app/panels/opengl_panel.h"
#include "kalidor/kalidor.h"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void printTimes(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    std::printf("%-48s runs %3zu  median %6.2f ms  p90 %6.2f ms  max %6.2f ms\n", what, times.size(),
                times[times.size() / 2], times[times.size() * 9 / 10], times.back());
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform says at each opening that it cannot raise a window; the figures are what counts.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QApplication application(argc, argv);
    Kalidornm::KalidorSources sources;
    sources.nvmlLibrary = "";
    Kalidornm::Kalidor::setSources(sources);
    Kalidornm::Kalidor* library = Kalidornm::Kalidor::getInstance();
    if (!library || !library->startup(0, 0, 64, 64, 4, 5, true) || library->capCount() == 0) {
        std::printf("no OpenGL context on this machine\n");
        return 1;
    }
    AppState state;
    initAppState(state);
    state.gpuCount = library->getGpuCount();
    std::printf("%s | %u extensions | catalogue %d rows\n", library->getGlRenderer(), library->getExtensionCount(),
                int(library->capCount()));

    std::vector<double> tabSwitches;
    std::vector<double> firstCapsOpenings;
    {
        panels::MainDialog dialog(state, *library);
        dialog.start(nullptr);
        dialog.show();
        QApplication::processEvents();
        QTabBar* tabs = dialog.tabBar();
        for (int i = 0; i < 200; ++i) {
            tabs->setCurrentIndex(0);
            QApplication::processEvents();
            const Clock::time_point start = Clock::now();
            tabs->setCurrentIndex(1);
            QApplication::processEvents();  // the panel paints here
            tabSwitches.push_back(millisecondsSince(start));
        }

        // Each panel makes its dialog once; a fresh panel gives a first opening every time.
        for (int i = 0; i < 50; ++i) {
            panels::OpenGLPanel panel(&dialog, state, *library);
            QApplication::processEvents();
            const Clock::time_point start = Clock::now();
            panels::GlCapsDialog* caps = panel.showCapsDialog();
            QApplication::processEvents();  // shown and painted
            firstCapsOpenings.push_back(millisecondsSince(start));
            caps->hide();
        }
    }
    printTimes("switch to the OpenGL tab (with repaint)", tabSwitches);
    printTimes("first opening of the caps dialog (tree + paint)", firstCapsOpenings);
    library->shutdown();
    return 0;
}
