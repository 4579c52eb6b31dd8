#include "demos/opencl/cl_demo_scene.h"

#include <cstdio>

#include "base/version.h"
#include "demos/opencl/cl_device_choice.h"
#include "compute/opencl_discovery.h"
#include "base/dynamic_library.h"
#include "demos/demo_context.h"
#include "demos/gl_demo_support.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_media.h"
#include "demos/harness/demo_thread.h"

bool ClDemoScene::checkBeforeContext(DemoContext&) {
    if (m_traits.needsPlatformList) {
        if (compute::getClPlatformCount() == 0) {
            demoShowError("Oooooops! No OpenCL plafform found on this system.\n\rBye...");
            return false;
        }
    } else if (!base::DynamicLibrary(compute::kOpenClLibraryName).isLoaded()) {
        demoShowError("Oooooops! OpenCL is not installed on this system.\n\rBye...");
        return false;
    }
    if (m_traits.requiredKernelFile) {
        std::string text;
        if (!readDemoMediaText(m_traits.requiredKernelFile, &text)) {
            demoShowError("Ouch! Where is the OpenCL kernel for Julia demo????\n\rBye...");
            return false;
        }
    }
    if (!compute::hasAnyClDevice()) {
        demoShowError("OpenCL is not supported on this system.\n\rBye...");
        return false;
    }
    return true;
}

bool ClDemoScene::setUp(DemoContext& context, RenderWindowGL& window) {
    m_closeFully = false;
    int major = 0, minor = 0;
    if (!requireGl31(window, &major, &minor)) return false;
    const std::string language = gl3LanguageLine(minor);
    if (!_buildGraphics(context, window, language)) return false;
    m_logo.create(language.c_str());

    const char* type = _typeName(context);
    if (!m_session.open(context.settings, m_traits.platformRule)) {
        m_closeFully = true;
        if (m_session.failure() == ClDemoSession::Failure::NoPlatform) {
            if (m_traits.platformRule == ClDemoSession::PlatformRule::ChosenPlatformOnly)
                demoShowError(
                    "OpenCL %s support not available with the current platform.\n\rSelect another "
                    "platform (if available) in the OpenCL panel.",
                    type);
            else
                demoShowError("Unable to find a OpenCL %s platform. Bye...", type);
        } else {
            demoShowError("OpenCL %s context creation failed (CL error = %d). Bye...", type, int(m_session.clError()));
        }
        return false;
    }

    std::string source;
    if (!_kernelSource(&source)) return false;
    const char* options = m_traits.platformBuildOptions ? demoBuildOptions(m_session.platform()->version) : nullptr;
    if (!m_session.build(source, options)) {
        if (context.settings.startedFromCommandLine)
            writeBenchResult(context, demoResultName(context, "(kernel ERROR)").c_str(), window.samples());
        m_closeFully = true;
        demoShowError("CL kernel compil error: %s", m_session.buildLog().c_str());
        return false;
    }
    return _buildCompute(context, window);
}

bool ClDemoScene::_failCompute(const DemoContext& context, cl_int error) {
    m_closeFully = true;
    demoShowError("OpenCL %s kernel or buffer creation failed (CL error = %d). Bye...", _typeName(context), int(error));
    return false;
}

void ClDemoScene::release(DemoContext&) {
    _releaseCompute();
    m_session.release();
    m_logo.release();
    _releaseGraphics();
}

std::string ClDemoScene::fpsTitle(const DemoContext& context, RenderWindowGL&) const {
    char title[256];
    std::snprintf(title, sizeof title, "%dFPS, OpenCL %s %s - %s", int(context.stats.currentFps), _typeName(context),
                  m_traits.fpsWhat, lumenscope::kDisplayName);
    return title;
}

std::string ClDemoScene::_vertexLanguage(const std::string& languageLine) {
    return languageLine == gl3LanguageLine(0) ? languageLine + "\nprecision highp float;" : languageLine;
}

const char* ClDemoScene::_typeName(const DemoContext& context) {
    return clDeviceTypeName(context.settings.clDeviceType);
}

bool checkOpenClDemoStart(const DemoSettings& settings, uint32_t deviceType) {
    if (chosenPlatformWithDeviceType(compute::clPlatforms(), settings.clPlatformIndex, deviceType) >= 0) return true;
    demoShowError("OpenCL %s not supported on the selected platform.\n\rBye...", clDeviceTypeName(deviceType));
    return false;
}
