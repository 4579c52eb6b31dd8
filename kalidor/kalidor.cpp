#include "kalidor/kalidor.h"

#include <cstring>
#include <mutex>
#include <new>

#include "kalidor/library_globals.h"
#include "kalidor/library_log.h"
#include "kalidor/machine_snapshot_reader.h"
#include "kalidor/platform/display_device_source.h"

namespace Kalidornm {

LibraryGlobals gGlobals;

namespace {
Kalidor* gInstance = nullptr;
KalidorSources gSources;
}  // namespace

Kalidor::Kalidor() = default;
Kalidor::~Kalidor() = default;

Kalidor* Kalidor::getInstance() {
    if (gInstance) return gInstance;
    gInstance = new (std::nothrow) Kalidor();
    if (!gInstance) return nullptr;
    auto window = std::unique_ptr<RenderWindow>(new (std::nothrow) RenderWindow());
    if (window) {
        gGlobals.mainWindow = window.get();
        gGlobals.windows.push_back(std::move(window));
    }
    return gInstance;
}

void Kalidor::destroyInstance() {
    gGlobals.snapshot.reset();
    gGlobals.liveOnly = false;
    delete gInstance;
    gInstance = nullptr;
}

void Kalidor::setSources(const KalidorSources& sources) { gSources = sources; }

std::vector<DisplaySlot> Kalidor::listDisplayDevices() { return Kalidornm::listDisplayDevices(KalidorSources{}); }

HardwareCaps* Kalidor::caps() const { return gGlobals.mainWindow ? gGlobals.mainWindow->caps() : nullptr; }

bool Kalidor::startup(int glMajor, int glMinor) { return startup(2, 2, 2, 2, glMajor, glMinor, true); }

bool Kalidor::startup(int, int, int width, int height, int glMajor, int glMinor, bool debugContext) {
    LibraryLog& trace = generalTrace();
    trace.write("Kalidor::startup()");
    if (gGlobals.started) return true;
    gGlobals.snapshot.reset();
    if (!gGlobals.mainWindow) return false;
    gGlobals.tscAtStartup = readTscAtTime();

    // No window is needed: the OpenGL probe runs in a headless EGL context.
    trace.write("Kalidor::startup() - Kalidor_DummyW");
    if (HardwareCaps* machine = caps()) machine->sources = gSources;
    if (!gGlobals.mainWindow->create(width, height, 32, 24, 8, 0, glMajor, glMinor, debugContext, gGlobals.gpus))
        return false;
    trace.write("Kalidor::startup() - Kalidor_DummyW OK.");

    gGlobals.isVista = std::strstr(gGlobals.summary.osDescription, "Vista") != nullptr;

    // No physics runtime on Linux publishes a version we could read; the values keep their defaults.
    trace.write("Kalidor::startup() - PhysX info");
    trace.write("Kalidor::startup() - PhysX info OK.");

    gGlobals.hasDisplayDevice = caps()->display.primary.m_has_display_device;
    if (!gGlobals.hasDisplayDevice) return true;

    gGlobals.started = true;
    trace.write("Kalidor::startup() - scanGraphicsHardware()");
    const bool scanned = scanGraphicsHardware();
    trace.write("Kalidor::startup() - scanGraphicsHardware() OK.");
    trace.write("Kalidor::startup() OK.");
    return scanned;
}

bool Kalidor::startupLiveOnly() {
    if (gGlobals.started) return gGlobals.liveOnly;
    gGlobals.liveOnly = true;
    // An OpenGL version of 0 creates no probe context.
    return startup(0, 0, 64, 64, 0, 0, false);
}

bool Kalidor::isLiveOnly() const { return gGlobals.liveOnly; }

// A demo thread may ask its first question while the window asks its own.
const MachineSnapshot& heldSnapshot() {
    static std::mutex reading;
    const std::lock_guard<std::mutex> lock(reading);
    if (!gGlobals.snapshot) gGlobals.snapshot = readMachineSnapshot(*gInstance);
    return *gGlobals.snapshot;
}

const MachineSnapshot& Kalidor::snapshot() { return heldSnapshot(); }

void Kalidor::refreshLiveSample() {
    snapshot();
    std::vector<GpuSnapshot>& gpus = gGlobals.snapshot->gpus;
    for (size_t gpu = 0; gpu < gpus.size(); ++gpu) gpus[gpu].live = readLiveSample(*this, int(gpu));
}

bool Kalidor::shutdown() {
    if (!gGlobals.started) return false;
    for (auto& window : gGlobals.windows) {
        window->destroyContext();
        if (HardwareCaps* machine = window->caps()) machine->cleanup();
    }
    gGlobals.gpus.clear();
    gGlobals.snapshot.reset();
    gGlobals.windows.clear();
    gGlobals.mainWindow = nullptr;
    gGlobals.started = false;
    gGlobals.liveOnly = false;
    destroyInstance();
    return true;
}

}  // namespace Kalidornm
