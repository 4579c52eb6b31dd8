#include "tests/support/fixture_library.h"

#include <cstdlib>

#include "kalidor/library_globals.h"

using namespace Kalidornm;

KalidorSources FixtureLibrary::sourcesFor(const FixtureMachineSources& sources) {
    KalidorSources result;
    result.rootDir = sources.machine.front() == '/' ? sources.machine
                                                    : std::string(SYSFS_FIXTURES) + "/" + sources.machine;
    result.pciIdsFile = std::string(SYSFS_FIXTURES) + "/pci.ids";
    result.eglLibrary = sources.softwareEgl ? FAKE_EGL_SOFTWARE : "";
    result.nvmlLibrary = sources.nvmlSettings.empty() ? "" : FAKE_NVML_LIBRARY;
    result.amdgpuLibrary = FAKE_DRM_AMDGPU;
    return result;
}

FixtureLibrary::FixtureLibrary(const FixtureMachineSources& sources) {
    if (sources.nvmlSettings.empty())
        unsetenv("FAKE_NVML_CONFIG");
    else
        setenv("FAKE_NVML_CONFIG", sources.nvmlSettings.c_str(), 1);
    Kalidor::setSources(sourcesFor(sources));
    m_library = Kalidor::getInstance();
    if (m_library) m_started = m_library->startup(0, 0, 64, 64, 0, 0, true);
}

FixtureLibrary::~FixtureLibrary() {
    stop();
    unsetenv("FAKE_NVML_CONFIG");
}

void FixtureLibrary::stop() {
    Kalidor* library = Kalidor::getInstance();
    if (library && !library->shutdown()) {
        gGlobals.gpus.clear();
        gGlobals.windows.clear();
        gGlobals.mainWindow = nullptr;
        Kalidor::destroyInstance();
    }
    gGlobals.summary = GpuSummary{};
    gGlobals.snapshot.reset();
    gGlobals.gpu_db_index = -1;
    gGlobals.hasDisplayDevice = false;
    Kalidor::setSources(KalidorSources{});
}
