#include "app/app_state.h"

#include <cstring>

#include "app/platform/process.h"

AppState gApp;

void resetAppState(AppState& s) {
    s = AppState{};

    s.glMajorVersion = 4;
    s.glMinorVersion = 5;
    s.onlineCheckEnabled = true;
    s.openclSupportEnabled = true;
    s.temperatureRefreshEnabled = true;
    s.fieldTextColour = 0x825046;
    s.headerBrushColour = 0xC8C8C8;
    s.panelBrushColour = 16;  // the system's button-face colour index plus one
}

void initAppState(AppState& s) {
    resetAppState(s);
    const std::string dir = lumenscope::platform::executableDirectory();
    std::strncpy(s.exeDirectory, dir.c_str(), sizeof s.exeDirectory - 1);
    s.demoLock = std::make_unique<std::mutex>();
    s.furArray = std::make_unique<uint32_t[]>(AppState::kFurArrayWords);
    s.report = report::ReportBuffers{};
    s.demo.processorCount = lumenscope::platform::processorCount();
}
