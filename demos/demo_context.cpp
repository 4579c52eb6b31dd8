#include "demos/demo_context.h"

#include <chrono>

namespace {

std::atomic<int32_t> gMouseX{0};
std::atomic<int32_t> gMouseY{0};

}  // namespace

DemoContext& demoContext(DemoId id) {
    // Never destroyed: a demo thread that outlives shutdown's bounded wait still finds its record.
    static DemoContext* const contexts = new DemoContext[kDemoCount];
    return contexts[size_t(id) < kDemoCount ? size_t(id) : 0];
}

DemoStop stopDemo(DemoContext& context) {
    if (!context.thread.joinable()) return DemoStop::NotRunning;
    context.stopRequested = true;
    std::unique_lock<std::mutex> lock(context.aliveLock);
    const bool ended = context.aliveChanged.wait_for(lock, std::chrono::milliseconds(kDemoStopWaitMs), [&] { return !context.threadAlive; });
    lock.unlock();
    if (ended) {
        context.thread.join();
        return DemoStop::Ended;
    }
    context.thread.detach();
    return DemoStop::LeftRunning;
}

int32_t demoMouseX() { return gMouseX; }
int32_t demoMouseY() { return gMouseY; }

void setDemoMouse(int32_t x, int32_t y) {
    gMouseX = x;
    gMouseY = y;
}
