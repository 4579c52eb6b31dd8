#include "demo_launcher.h"

#include <chrono>
#include <exception>

#include "app/app_log.h"
#include "demo_catalogue.h"
#include "demo_thread.h"
#include "engine/vantalux.h"

namespace {

std::atomic<int> gCurrentDemoIndex{0};
std::atomic<DemoTable> gCurrentDemoTable{DemoTable::OpenGl};

// A record whose thread ended by itself still holds the thread until someone joins it; a record whose
// thread was given up on by stopDemo is busy until that thread ends.
bool recordIsFree(DemoContext& context) {
    std::unique_lock<std::mutex> lock(context.aliveLock);
    if (context.threadAlive) return false;
    lock.unlock();
    if (context.thread.joinable()) context.thread.join();
    return true;
}

void resetRecord(DemoContext& context, DemoTable table, int row, const DemoSettings& settings, uint32_t deviceType) {
    context.threadId = 0;
    context.objectId = Vantalux_nsp::vxKma::genId();
    context.stopRequested = false;
    context.finished = false;
    context.ready = false;
    context.table = table;
    context.tableRow = row;
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

// The record of a row that may start now, or null.
DemoContext* freeRecordFor(DemoTable table, int row, const DemoSettings& settings, const DemoEntry** entryOut,
                           uint32_t* deviceTypeOut) {
    DemoSlot slot = kDemoGl4Tessellation;
    uint32_t deviceType = 0;
    if (!demoSlotForRow(table, row, &slot, &deviceType)) return nullptr;
    const DemoEntry& entry = demoEntry(slot);
    if (!entry.makeScene) {
        const DemoDescriptor* descriptor = demoDescriptor(table, row);
        appLog().write("The demo \"%s\" is not part of this build.", descriptor ? descriptor->title : "");
        return nullptr;
    }
    if (entry.checkBeforeStart && !entry.checkBeforeStart(settings, deviceType)) return nullptr;
    DemoContext& context = demoContext(slot);
    if (!recordIsFree(context)) return nullptr;
    *entryOut = &entry;
    *deviceTypeOut = deviceType;
    return &context;
}

}  // namespace

bool demoMayStart(DemoTable table, int row, const DemoSettings& settings) {
    const DemoEntry* entry = nullptr;
    uint32_t deviceType = 0;
    return freeRecordFor(table, row, settings, &entry, &deviceType) != nullptr;
}

bool startDemo(DemoTable table, int row, const DemoSettings& settings) {
    const DemoEntry* found = nullptr;
    uint32_t deviceType = 0;
    DemoContext* record = freeRecordFor(table, row, settings, &found, &deviceType);
    if (!record) return false;
    const DemoEntry& entry = *found;
    DemoContext& context = *record;

    gCurrentDemoIndex = row;
    gCurrentDemoTable = table;
    try {
        std::unique_ptr<DemoScene> scene = entry.makeScene();
        if (!scene) return false;
        resetRecord(context, table, row, settings, deviceType);
        {
            std::lock_guard<std::mutex> guard(context.aliveLock);
            context.threadAlive = true;
        }
        context.thread = std::thread(runDemoThread, std::ref(context), std::cref(entry), std::move(scene));
    } catch (const std::exception& error) {
        std::lock_guard<std::mutex> guard(context.aliveLock);
        context.threadAlive = false;
        appLog().write("The demo thread could not be started: %s", error.what());
        return false;
    }
    return true;
}

int currentDemoIndex() { return gCurrentDemoIndex; }

DemoTable currentDemoTable() { return gCurrentDemoTable; }

bool anyDemoRunning() {
    for (int slot = 0; slot < kDemoSlotCount; ++slot) {
        DemoContext& context = demoContext(DemoSlot(slot));
        std::lock_guard<std::mutex> guard(context.aliveLock);
        if (context.threadAlive) return true;
    }
    return false;
}

void waitForDemosToEnd(const std::atomic<bool>* interrupted) {
    bool stopsAsked = false;
    for (int slot = 0; slot < kDemoSlotCount; ++slot) {
        DemoContext& context = demoContext(DemoSlot(slot));
        std::unique_lock<std::mutex> lock(context.aliveLock);
        while (context.threadAlive) {
            if (interrupted && *interrupted && !stopsAsked) {
                for (int other = 0; other < kDemoSlotCount; ++other) demoContext(DemoSlot(other)).stopRequested = true;
                stopsAsked = true;
            }
            context.aliveChanged.wait_for(lock, std::chrono::milliseconds(50));
        }
        lock.unlock();
        if (context.thread.joinable()) context.thread.join();
    }
}
