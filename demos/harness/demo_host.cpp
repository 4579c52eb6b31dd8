#include "demos/harness/demo_host.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>

#include "base/log_sink.h"

namespace {

void showOnStandardError(const char* text) {
    std::fprintf(stderr, "%s\n", text);
    base::logLine("%s", text);
}

// Installed once before any demo starts; read by demo threads afterwards.
std::atomic<DemoHost*> gHost{nullptr};

const DemoHost& host() {
    static const DemoHost kNone{};
    const DemoHost* installed = gHost.load();
    return installed ? *installed : kNone;
}

constexpr size_t kTextSize = 32000;

}  // namespace

void setDemoHost(const DemoHost& newHost) {
    static DemoHost stored;
    stored = newHost;
    gHost = &stored;
}

void demoShowError(const char* format, ...) {
    char text[kTextSize];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    (host().showError ? host().showError : showOnStandardError)(text);
}

void demoShowWarning(const char* format, ...) {
    char text[kTextSize];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    (host().showWarning ? host().showWarning : showOnStandardError)(text);
}

void demoCloseMainWindow() {
    if (host().closeMainWindow) host().closeMainWindow();
}

uint32_t demoThrottleMs() { return host().throttleMs ? host().throttleMs() : 0; }
