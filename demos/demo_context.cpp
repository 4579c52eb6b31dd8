#include "demo_context.h"

namespace {
DemoContext gDemoContexts[kDemoSlotCount];
}

DemoContext& demoContext(DemoSlot slot) { return gDemoContexts[slot]; }

void stopDemo(DemoContext& context) {
    if (!context.running) return;
    context.stopRequested = true;
}
