#include "demos/harness/demo_thread.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

#include "base/log_sink.h"
#include "base/version.h"
#include "demos/harness/bench_result.h"
#include "compute/opencl_discovery.h"
#include "demos/harness/demo_affinity.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_window.h"
#include "demos/harness/frame_capture.h"
#include "demos/gl_utility/image_codec.h"
#include "demos/gl_utility/render_window_gl.h"
#include "kalidor/kalidor.h"
#include "demos/harness/machine_texts.h"

namespace {

std::mutex gDemoLock;
std::atomic<uint32_t> gDemoThreadCounter{0};

const char* rowTitle(const DemoContext& context) { return demoShown(context.id, context.settings.clDeviceType).title; }

void captureLastFrame(RenderWindowGL& renderWindow, const char* resultName) {
    std::vector<uint8_t> rgba;
    const std::string name = capturedFrameName(resultName);
    if (!renderWindow.readLastFrame(rgba) || !writePng(name, rgba, renderWindow.width, renderWindow.height))
        base::logLine("The last frame of %s could not be written to %s", resultName, name.c_str());
}

void runFrameLoop(DemoContext& context, const DemoRow& demo, DemoScene& scene, RenderWindowGL& renderWindow,
                  DemoWindow* window) {
    const bool engine = demo.family == DemoFamily::Engine;
    if (demo.tickTimer)
        demoTickTimer(true);
    else
        context.timer.reset();
    while (!context.stopRequested) {
        if (window) {
            const DemoWindow::Input input = window->poll();
            if (input.pointerMoved) setDemoMouse(input.pointerX, input.pointerY);
            if (input.closeRequested) {
                context.stopRequested = true;
                break;
            }
        }
        const uint32_t now = demo.tickTimer ? demoTickTimer(false) : context.timer.elapsedMs();
        const float dt = float(context.stats.advanceTo(now)) * 0.001f;
        if (benchDurationReached(context.stats, context.settings.benchDurationMs)) break;

        renderWindow.makeCurrent();
        if (engine) {
            std::lock_guard<std::mutex> guard(gDemoLock);
            scene.drawFrame(context, renderWindow, dt);
        } else {
            scene.drawFrame(context, renderWindow, dt);
        }
        renderWindow.present();

        if (context.stats.countPresentedFrame() && window) {
            const std::string title = scene.fpsTitle(context, renderWindow);
            if (!title.empty()) window->setTitle(title.c_str());
        }
        if (const uint32_t throttle = demoThrottleMs()) std::this_thread::sleep_for(std::chrono::milliseconds(throttle));
    }
}

}  // namespace

std::mutex& demoLock() { return gDemoLock; }

std::string demoResultName(const DemoContext& context, const char* detail) {
    return std::string(demoRow(context.id).resultName) + (detail ? detail : "");
}

void writeBenchResult(const DemoContext& context, const char* testName, int msaaSamples) {
    const DemoSettings& settings = context.settings;
    if (!settings.benchLogResults) return;
    BenchResultValues v;
    if (const Kalidornm::Kalidor* library = Kalidornm::Kalidor::getInstance()) {
        v.renderer = demoRendererText(*library);
        v.driver = demoDriverText(*library, settings.selectedGpu);
    }
    v.clTypeCpu = settings.clDeviceType == kClDeviceTypeCpu;
    const compute::ClDeviceRecord* device = v.clTypeCpu ? compute::firstCpuDevice(0) : compute::firstGpuDevice(0);
    if (device) {
        v.hasClDevice = true;
        v.clName = device->name;
        v.clComputeUnits = device->maxComputeUnits;
        v.clClockMhz = device->maxClockMhz;
        v.clDriver = device->driverVersion;
    }
    v.testName = testName ? testName : "";
    v.msaa = msaaSamples;
    v.width = context.clientWidth;
    v.height = context.clientHeight;
    v.clGlInterop = settings.clGlInterop;
    v.clNativeSin = settings.clNativeSin;
    v.clExplicitWorkgroupSize = settings.clExplicitWorkgroupSize;
    v.clLocalMem = settings.clUseLocalMem;
    v.avgFps = context.stats.avgFps;
    v.minFps = context.stats.minFps;
    v.maxFps = context.stats.maxFps;
    appendBenchResultRow(kBenchResultFile, formatBenchResultRow(v));
}

void runDemoThread(DemoContext& context, const DemoRow& demo, std::unique_ptr<DemoScene> scene) {
    const long threadId = long(syscall(SYS_gettid));
    context.threadId = uint32_t(threadId);
    const DemoSettings& settings = context.settings;
    const bool engine = demo.family == DemoFamily::Engine;
    std::unique_lock<std::mutex> engineLock(gDemoLock, std::defer_lock);
    if (engine) {
        engineLock.lock();
        if (demo.setsAffinity) pinCurrentThread(demoAffinityMask(gDemoThreadCounter++, settings.processorCount));
    }

    char text[1024];
    std::snprintf(text, sizeof text, "%s - %s - Initialization in progress...", lumenscope::kDisplayName,
                  rowTitle(context));
    std::unique_ptr<DemoWindow> window = DemoWindow::open(settings.winWidth, settings.winHeight, text);
    context.window = window.get();
    context.clientWidth = window ? window->clientWidth() : settings.winWidth;
    context.clientHeight = window ? window->clientHeight() : settings.winHeight;

    bool loopRan = false;
    bool failureEndsProgram = false;
    {
        RenderWindowGL renderWindow;
        context.renderWindow = &renderWindow;
        const NativeWindow native = window ? window->native() : NativeWindow{};
        if (!scene->checkBeforeContext(context)) {
            if (engineLock.owns_lock()) engineLock.unlock();
            failureEndsProgram = scene->failureEndsProgram();
        } else if (!renderWindow.create(native, context.clientWidth, context.clientHeight,
                                        int(context.msaaSamples), demo.contextKind, settings.captureLastFrame)) {
            if (engineLock.owns_lock()) engineLock.unlock();
            base::logLine("%s: %s", rowTitle(context), demo.windowFailureText);
            demoShowError("%s", demo.windowFailureText);
        } else if (!scene->setUp(context, renderWindow)) {
            scene->release(context);
            renderWindow.release();
            if (engineLock.owns_lock()) engineLock.unlock();
            failureEndsProgram = scene->failureEndsProgram();
        } else {
            if (window) {
                std::snprintf(text, sizeof text, "%s - %s - [ThreadID=%ld]", lumenscope::kDisplayName,
                              rowTitle(context), threadId);
                window->setTitle(text);
            }
            context.ready = true;
            if (engineLock.owns_lock()) engineLock.unlock();

            runFrameLoop(context, demo, *scene, renderWindow, window.get());
            loopRan = true;
            const std::string resultName = demoResultName(context, scene->resultDetail());
            if (settings.captureLastFrame) captureLastFrame(renderWindow, resultName.c_str());
            writeBenchResult(context, resultName.c_str(), renderWindow.samples());
            if (engine) engineLock.lock();
            scene->release(context);
            renderWindow.release();
            if (engineLock.owns_lock()) engineLock.unlock();
            context.finished = true;
        }
        context.renderWindow = nullptr;
    }
    context.window = nullptr;
    window.reset();
    if ((loopRan || failureEndsProgram) && settings.closeAppEndOfDemo) demoCloseMainWindow();
    scene.reset();

    std::lock_guard<std::mutex> guard(context.aliveLock);
    context.threadAlive = false;
    context.aliveChanged.notify_all();
}
