#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "demos/harness/demo_settings.h"
#include "report/online/reply_parsers.h"
#include "report/online/update_thread.h"
#include "report/report_buffers.h"

struct DriverLinkRow;
struct ReviewLinkRow;
enum class DemoId : uint8_t;  // demos/harness/demo_table.h

// Every run-time option, selection and handle of the application, in one global block. It is reset to its
// start values at entry (resetAppState); nothing here persists between runs. No lock: fields read by demo
// threads are written before those threads start or are single words.
struct AppState {
    static constexpr size_t kExeDirectorySize = 1024;
    static constexpr size_t kFurArrayWords = 10;
    static constexpr size_t kOnlineHostSize = 256;

    // General fields
    void* instanceHandle = nullptr;
    char exeDirectory[kExeDirectorySize] = {};  // ends with '/'
    int32_t glMajorVersion = 0;
    int32_t glMinorVersion = 0;
    bool onlineCheckEnabled = false;
    bool openclSupportEnabled = false;
    bool exportXmlReport = false;
    bool exportTxtReport = false;
    bool exportJsonReport = false;
    std::optional<DemoId> automaticDemo;  // the demo a /start_demo_... option starts at start-up

    uint32_t gpuCount = 0;
    int32_t selectedGpu = 0;
    int32_t physxVersion = 0;
    bool osIsVista = false;
    int32_t cpuSpeedMhz = 0;
    // Shared only so that the state's destructor needs no code of the network layer: a batch run never
    // starts the update check and does not link it.
    std::shared_ptr<online::UpdateThread> updateThread;
    // The update thread was still inside the network library when shutdown let go of it.
    bool updateThreadOutlivedShutdown = false;
    // A demo thread did not stop within shutdown's wait: it may still use OpenCL, the engine, the library and
    // the window toolkit, so none of them was released.
    bool demoThreadOutlivedShutdown = false;
    bool threadOutlivedShutdown() const { return updateThreadOutlivedShutdown || demoThreadOutlivedShutdown; }

    // Online exchange
    char onlineHost[kOnlineHostSize] = {};  // the server of /online_host=; empty: ours
    online::VersionNumber latestVersion = {};  // the numbers the last update check read
    int32_t updateResult = 0;                  // the last result of an update check

    // Window handles, owned by the GUI once it exists.
    void* splashWindow = nullptr;
    void* mainWindow = nullptr;
    void* tabControl = nullptr;
    void* gpuPanel = nullptr;
    void* openglPanel = nullptr;
    void* toolsPanel = nullptr;
    void* cudaPanel = nullptr;
    void* openclPanel = nullptr;
    void* validationPanel = nullptr;
    void* glCapsDialog = nullptr;
    uint32_t refreshTimerId = 0;
    uint32_t demoThrottleMs = 0;  // extra sleep per demo frame, 50 while the main window is minimised
    bool temperatureRefreshEnabled = false;

    // Main window and GPU panel
    int32_t selectedGlDemo = 0;  // rows of the two demo pickers
    int32_t selectedClDemo = 0;
    bool noDriverState = false;
    char driverDisplayText[256] = {};  // the GPU panel's driver text for the selected GPU; benchmark rows print it
    char cardNameText[256] = {};       // the primary card's name, written by the GPU panel
    const DriverLinkRow* driverLinkTable = nullptr;  // chosen by the tools panel; null until it has started
    const ReviewLinkRow* reviewLinkTable = nullptr;

    // Colours as 0x00BBGGRR.
    uint32_t fieldTextColour = 0;
    uint32_t headerTextColour = 0;
    uint32_t headerBackColour = 0;
    uint32_t headerBrushColour = 0;
    uint32_t panelBrushColour = 0;

    std::unique_ptr<std::mutex> demoLock;
    report::ReportBuffers report;  // the report of this run, generated once
    std::unique_ptr<uint32_t[]> furArray;

    // The demos' settings: the command line's, the options dialog's MSAA, and the processor count. A start
    // copies them and adds the GPU shown on the GPU panel; clDeviceIndexForced is cleared when the user picks a
    // device for the demos in the OpenCL panel.
    DemoSettings demo;
    uint32_t clPlatformIndex = 0;  // the OpenCL panel's platform, which the OpenCL demos use
    uint32_t clShownPlatform = 0;  // the platform and device the OpenCL panel shows, for its detail list
    uint32_t clShownDevice = 0;
};

extern AppState gApp;

// Zeroes the state and sets every start value and command-line default. Allocates nothing.
void resetAppState(AppState& state);

// The state the program starts from: the start values of resetAppState, then what later start-up code needs at
// hand: the executable\'s directory, the processor count, the demo lock and the fur demo\'s array.
void initAppState(AppState& state);
