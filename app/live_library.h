#pragma once

#include "kalidor/machine_snapshot.h"

namespace Kalidornm {
class Kalidor;
}

// The hardware library started live-only for the run's lifetime (the monitor, the metrics); a start that
// fails is told on standard error.
class LiveLibrary {
public:
    LiveLibrary();
    ~LiveLibrary();
    LiveLibrary(const LiveLibrary&) = delete;
    LiveLibrary& operator=(const LiveLibrary&) = delete;

    bool started() const { return m_library != nullptr; }
    // Reads every GPU now (a sleeping one is marked, not read) and gives the machine with the fresh samples.
    const Kalidornm::MachineSnapshot& readLive();

private:
    Kalidornm::Kalidor* m_library = nullptr;
};
