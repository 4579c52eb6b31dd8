#pragma once

#include <string>

#include "kalidor/kalidor.h"

// The hardware library started on a machine replayed from tests/fixtures/sysfs/<machine>/, without an OpenGL
// context; the fake management library serves it when a setting file for the fake is given, the fake
// libdrm_amdgpu always. Stopping puts
// the library back as a fresh process has it, so machines can follow each other in one test.
struct FixtureMachineSources {
    std::string machine;           // a folder of tests/fixtures/sysfs, or an absolute path
    std::string nvmlSettings;      // a file for the fake management library; empty: no NVIDIA driver library
    bool softwareEgl = false;      // an EGL library that offers a software device
};

class FixtureLibrary {
public:
    explicit FixtureLibrary(const FixtureMachineSources& sources);
    ~FixtureLibrary();
    FixtureLibrary(const FixtureLibrary&) = delete;
    FixtureLibrary& operator=(const FixtureLibrary&) = delete;

    Kalidornm::Kalidor& library() { return *m_library; }
    bool started() const { return m_started; }

    static Kalidornm::KalidorSources sourcesFor(const FixtureMachineSources& sources);
    // Shuts the library down, or takes it apart by hand where no scan ran and shutdown refuses.
    static void stop();

private:
    Kalidornm::Kalidor* m_library = nullptr;
    bool m_started = false;
};
