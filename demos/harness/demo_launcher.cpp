#include "demos/harness/demo_launcher.h"

#include <chrono>
#include <exception>

#include "base/log_sink.h"
#include "demos/harness/demo_thread.h"
#include "engine/vantalux.h"

namespace {

// A record whose thread ended by itself still holds the thread until someone joins it; a record whose
// thread was given up on by stopDemo is busy until that thread ends.
bool recordIsFree(DemoContext& context) {
    std::unique_lock<std::mutex> lock(context.aliveLock);
    if (context.threadAlive) return false;
    lock.unlock();
    if (context.thread.joinable()) context.thread.join();
    return true;
}

void resetRecord(DemoContext& context, DemoId id, const DemoSettings& settings, uint32_t deviceType) {
    context.threadId = 0;
    context.objectId = Vantalux_nsp::vxKma::genId();
    context.stopRequested = false;
    context.finished = false;
    context.ready = false;
    context.id = id;
    context.settings = settings;
    if (deviceType != 0) context.settings.clDeviceType = deviceType;
    context.msaaSamples = settings.msaaSamples > 0 ? uint32_t(settings.msaaSamples) : 0;
    context.firstFrame = true;
    context.window = nullptr;
    context.renderWindow = nullptr;
    context.clientWidth = context.clientHeight = 0;
    context.stats = FrameStats{};
    context.timer.reset();
}

// The OpenCL device type a start runs the demo on; 0 for demos without OpenCL.
uint32_t startDeviceType(const DemoRow& demo, const DemoSettings& settings) {
    if (demo.family != DemoFamily::OpenCl) return 0;
    return settings.clDeviceType == kClDeviceTypeCpu ? kClDeviceTypeCpu : kClDeviceTypeGpu;
}

// The record of a demo that may start now, or null.
DemoContext* freeRecordFor(DemoId id, const DemoSettings& settings) {
    if (size_t(id) >= kDemoCount) return nullptr;
    const DemoRow& demo = demoRow(id);
    if (demo.checkBeforeStart && !demo.checkBeforeStart(settings, startDeviceType(demo, settings))) return nullptr;
    DemoContext& context = demoContext(id);
    return recordIsFree(context) ? &context : nullptr;
}

}  // namespace

bool demoMayStart(DemoId id, const DemoSettings& settings) { return freeRecordFor(id, settings) != nullptr; }

bool startDemo(DemoId id, const DemoSettings& settings) {
    DemoContext* record = freeRecordFor(id, settings);
    if (!record) return false;
    const DemoRow& demo = demoRow(id);
    DemoContext& context = *record;

    try {
        std::unique_ptr<DemoScene> scene = demo.makeScene();
        if (!scene) return false;
        resetRecord(context, id, settings, startDeviceType(demo, settings));
        {
            std::lock_guard<std::mutex> guard(context.aliveLock);
            context.threadAlive = true;
        }
        context.thread = std::thread(runDemoThread, std::ref(context), std::cref(demo), std::move(scene));
    } catch (const std::exception& error) {
        std::lock_guard<std::mutex> guard(context.aliveLock);
        context.threadAlive = false;
        base::logLine("The demo thread could not be started: %s", error.what());
        return false;
    }
    return true;
}

bool anyDemoRunning() {
    for (const DemoRow& demo : kDemoRows) {
        DemoContext& context = demoContext(demo.id);
        std::lock_guard<std::mutex> guard(context.aliveLock);
        if (context.threadAlive) return true;
    }
    return false;
}

void waitForDemosToEnd(const std::atomic<bool>* interrupted) {
    bool stopsAsked = false;
    for (const DemoRow& demo : kDemoRows) {
        DemoContext& context = demoContext(demo.id);
        std::unique_lock<std::mutex> lock(context.aliveLock);
        while (context.threadAlive) {
            if (interrupted && *interrupted && !stopsAsked) {
                for (const DemoRow& other : kDemoRows) demoContext(other.id).stopRequested = true;
                stopsAsked = true;
            }
            context.aliveChanged.wait_for(lock, std::chrono::milliseconds(50));
        }
        lock.unlock();
        if (context.thread.joinable()) context.thread.join();
    }
}
